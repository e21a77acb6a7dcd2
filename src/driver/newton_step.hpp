// One Newton iteration on the blank positions, and the total energy.
#pragma once

#include "ground/analysis.hpp"
#include "ground/driver_arrays.hpp"

namespace tornwalzen {

/// Assembles, factorizes, solves and applies the correction; the list of steps is the function itself.
///
/// EN: out, total potential at the accepted point (mm²). a: all arrays but KNG and KNA, in and out. FC: in,
/// flow curve, 50 × 7. Run state: maxgrad and lsfak of the line search. A degenerate element: `ierrel` = -1
/// and an immediate return. A failed solver leaves a zero correction, which the line search answers with
/// lsfak = 0; `ierrso` is for the host.
void newtonStep(Analysis& run, double& EN, const DriverArrays& a);

/// Decouples the unknowns with flag 0: unit diagonal, zero residual, zeros in their rows and columns.
/// a.ARFA, a.COLS, a.ROWI: in. a.SYSM, a.RR: inout.
void imposeHeldUnknowns(Analysis& run, const DriverArrays& a);

}  // namespace tornwalzen
