// Line search of the Newton iteration: how much of a correction is applied to the blank.
#pragma once

#include "ground/analysis.hpp"
#include "ground/driver_arrays.hpp"

namespace tornwalzen {

/// Applies a fraction of a.RB to a.RX. Starting at the full step it halves towards the old point as long as
/// that lowers the largest free residual component, then goes back to the better point; while elements are
/// degenerate it halves on, until the step no longer changes a.RX.
///
/// LSMAX: in, halvings after which an improving search is given up, ≥ 0. a.RB: in, correction (mm), neq.
/// a.RX: inout, blank positions (mm), neq. a.RR: out, residual at the accepted point. FC: in, flow curve, 50
/// × 7. The other arrays as for assemble. Run state: lsfak = accepted fraction, 1 or a power of ½; 0 where
/// the step was taken back (still improving after LSMAX halvings, no difference between two points, or
/// degenerate all the way); maxgrad at the accepted point; `ierrel` as the evaluation there left it.
void lineSearch(Analysis& run, Int LSMAX, const DriverArrays& a);

}  // namespace tornwalzen
