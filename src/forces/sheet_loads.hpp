// What the tools do to the sheet, as loads on the blank.
//
// A tangential force f of the tools on a triangle of the part (N, in the triangle's own axes) enters the equilibrium of
// the blank, R = ∂Π/∂x = 0, as R_i += ⅓·Fᵀ·f: when the blank moves by dx under a part that stays where it is, the sheet
// slides over the part by -F·dx. LOAD is minus that, over ½·t0·σ0, like the residual of the potential (mm).
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// The sheet at one blank: views of arrays that the driver fills.
struct SheetView {
  Table<const Int> INTA;          // NE × 3
  Table<const double> MAPS;       // 4 × NE: J11, J12, J21, J22 from the triangle's axes to the blank's
  Table<const double> AXES;       // 6 × NE: the triangle's two axes in space
  Vector<const double> AREA;      // NE: of the part's triangle (mm²)
  Table<const double> CURVATURE;  // 3 × NE: κ11, κ22, κ12 in the triangle's axes (1/mm)
  Table<const double> FORCES;     // 3 × NE: N11, N22, N12 likewise (N/mm)
  Table<const double> SLIP;       // 2 × NE: way of the sheet over the tools in the triangle's axes (mm)
  double thickness;               // t0 (mm)
};

/// Adds the loads of the tangential forces to LOAD, neq (mm). FORCE: in, 2 × NE (N); scale: in, ½·t0·σ0 (N/mm).
void addToolLoads(const SheetView& sheet, Table<const double> FORCE, double scale, Vector<double> LOAD);

/// Which rigid moves of the blank nothing holds.
struct FreeMoves {
  bool u, v, turn;
};

/// The nodes' share of the part, for the sums over a blank. WEIGHT: out, NN: a third of the area of each node's triangles
/// (mm²).
void nodeWeights(const SheetView& sheet, Vector<double> WEIGHT);

/// SLIP: out, 2 × NE (mm): what the middle of each triangle has moved from its place in the blank, seen along the drawing
/// direction, tangential part. VIEW: in, the directions in space that u and v stand for. A blank that moves freely is
/// first laid on the part as the least sum of squares has it: only then do the moves mean anything.
/// KNG: in, NN × 3 (mm); RX: in (mm); WEIGHT: in, of nodeWeights.
void slipOfSheet(const SheetView& sheet, Table<const double> KNG, const double (&VIEW)[2][3],
                 const FreeMoves& moves, Vector<const double> WEIGHT, Vector<const double> RX,
                 Table<double> SLIP);

/// Takes what would move the whole blank out of LOAD (mm), spread as WEIGHT says: equilibrium leaves nothing there but
/// what the mesh is too coarse for, and a single node that holds the blank would have to bear it.
void balanceLoads(const FreeMoves& moves, Vector<const double> WEIGHT, Vector<const double> RX,
                  Vector<double> LOAD);

}  // namespace tornwalzen
