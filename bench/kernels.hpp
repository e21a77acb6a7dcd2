// The dense kernels alone, over the size of the front.
#pragma once

#include "machine.hpp"
#include "report.hpp"

namespace bench {

/// Half of a front's columns eliminated, for fronts of 8 to 2048 rows and every kernel table that this
/// processor can run: GFLOP/s against the measured peak.
void timeKernels(const Machine& machine, Report& report);

}  // namespace bench
