// What the result of a run is worth, by whichever path it was found: figures and places, no verdict.
#pragma once

#include "ground/analysis.hpp"
#include "ground/driver_arrays.hpp"

namespace tornwalzen {

/// Record: the figures of the blank (develop/blank_checks.hpp), the largest equivalent strain, the potential where the
/// path has not left it, and whether the last exact tangent was positive definite. a.INTA, a.KNG, a.RX: in. Own memory,
/// freed on return; where it cannot be had, `checked` stays false and the run is none the worse.
void checkResult(Analysis& run, const DriverArrays& a);

}  // namespace tornwalzen
