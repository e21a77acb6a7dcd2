// The pull of free edges.
//
// Varying the blank under a fixed part lets material through the edge: beside the traction, ∂Π/∂x holds the work per
// volume times the thickness as a pull along the edge's normal in the blank (J. D. Eshelby, The elastic energy-momentum
// tensor, 1975). Taken away, what is left is the equilibrium of the sheet itself, pulled back by Fᵀ, and a free edge is
// free of traction: for each free edge a → b, counter-clockwise in its triangle,
//   R_a, R_b -= ½·t0·ψ·(v_b - v_a, -(u_b - u_a)).
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// PLANE: out, neq: 1 where an unknown is held because its node lies in a plane of symmetry across that axis: both nodes
/// of an edge that has one triangle alone are held along it. ARFA: in, neq, 0 held. TWIN: in, 3 × NE: in (k, e) the half
/// edge 3·(f - 1) + m of the triangle f across the side from corner k to k + 1 of triangle e, 0 without one.
void symmetryPlanes(Table<const Int> INTA, Table<const Int> TWIN, Vector<const Int> ARFA, Vector<Int> PLANE);

/// The triangle across a side, 0 without one.
inline Int acrossSide(Table<const Int> TWIN, Int e, Int k) {
  return (TWIN(k, e) + 2) / 3;
}

/// Is the side from corner k to k + 1 of triangle e a free edge? Not where both nodes lie in one plane of symmetry.
bool freeSide(Table<const Int> INTA, Table<const Int> TWIN, Vector<const Int> PLANE, Int e, Int k);

/// Adds the loads, minus the terms above over ½·t0·σ0, to LOAD, neq (mm). WORK: in, NE, ψ/σ0 (dimensionless).
void addEdgeLoads(Table<const Int> INTA, Table<const Int> TWIN, Vector<const Int> PLANE,
                  Vector<const double> WORK, Vector<const double> RX, Vector<double> LOAD);

}  // namespace tornwalzen
