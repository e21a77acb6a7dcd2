// The increment-controlled Newton iteration from the flat blank (progress 0) to the part (progress 1).
#pragma once

#include "ground/analysis.hpp"
#include "ground/driver_arrays.hpp"

namespace tornwalzen {

/// Runs the whole analysis: development, increments, results.
///
/// a: all seventeen arrays, in and out as tornwalzen.h states. EVAL: out, 5 per element, element by element, the
/// element table of the last converged increment.
///
/// Failure: `ierrel` = -1 after a development without convergence and after the minimum-step abort; `ierrso` = -1
/// if the solver failed in any step (the driver does not test it).
void inverseDriver(Analysis& run, const DriverArrays& a, Vector<double> EVAL);

}  // namespace tornwalzen
