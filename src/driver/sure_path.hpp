// The sure path: from the part straight to the equilibrium, by rotations of the triangles, one Poisson solve and
// Newton's method at the full part. Opt-in beside the path of load increments.
#pragma once

#include "ground/analysis.hpp"
#include "ground/driver_arrays.hpp"

namespace tornwalzen {

/// Runs the whole analysis: start, Newton iteration, results.
///
/// a: all seventeen arrays, in and out as tornwalzen.h states; a.WORK and a.RWORK as step 13 of the solver left them;
/// a.KNA: out, the blank that the Newton iteration starts from; a.KNZ: out, the part. EVAL: out, 5 per element, the
/// element table of the blank found. Held unknowns stand at the projection of the part. Memory of its own, about 20
/// reals per node and 12 per triangle beside a factor of one equation per node, is freed at the end.
///
/// A path that gives up leaves the record's end and a sentence, and RX at the last blank; the element error word is
/// not touched. `ierrso` = -1 where memory cannot be had.
void surePath(Analysis& run, const DriverArrays& a, Vector<double> EVAL, const PressArrays& marks = {});

}  // namespace tornwalzen
