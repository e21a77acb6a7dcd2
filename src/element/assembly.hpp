// The total potential, its residual and its tangent, as sums over one list of terms.
#pragma once

#include "ground/analysis.hpp"
#include "ground/driver_arrays.hpp"

namespace tornwalzen {

constexpr Int residualAndMatrix = 1;  // assembly mode: everything
constexpr Int residualOnly = 0;       // assembly mode: SYSM and TEMP stay as they are

/// One pass over all terms, each over its triangles in order.
///
/// mode: in, residualAndMatrix or residualOnly. a.INTA, a.ARFA, a.COLS, a.ROWI, a.RX, a.KNZ, and the flow curve
/// of the state: in.
/// a.RR: out, neq, minus the gradient of the total potential. a.SYSM: out in mode 1, its Hessian, lower
/// triangle in the pattern of COLS, ROWI. a.TEMP: scratch in mode 1, all zero afterwards. Run state: maxgrad
/// = largest |RR(i)| over the unknowns with ARFA(i) = 1, NaN if one of them is NaN.
///
/// Stops at the first degenerate element with `ierrel` = -1; RR and SYSM are then partly assembled and
/// maxgrad keeps its old value.
void assemble(Analysis& run, Int mode, const DriverArrays& a);

/// The total potential, which also writes columns 1 and 2 of a.ELG. EN: out (mm²). a.INTA, a.RX, a.KNZ and the
/// flow curve of the state: in. At a degenerate element `ierrel` = -1 and EN keeps the sum so far.
void energySum(Analysis& run, double& EN, const DriverArrays& a);

}  // namespace tornwalzen
