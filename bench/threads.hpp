// What a second thread brings: wall times on two threads over those on one, taken in turns in the same process, medians
// of those that no other work disturbed. The parts take all cores that the machine grants, whatever the process was bound to.
#pragma once

#include <cstdint>

#include "report.hpp"

namespace bench {

/// `ratio numeric SIZE t2` and `ratio solve SIZE t2` of the membrane on so many nodes.
void threadsOfSolver(std::int32_t nodes, Report& report);

/// `ratio elements SIZE t2`: tangent and residual of the fixed path's potential over the elements of that mesh.
void threadsOfElements(std::int32_t nodes, Report& report);

/// `ratio sure SIZE t2`: a whole run of square_cup by the sure path. Throws std::runtime_error where the two differ by a
/// bit.
void threadsOfSureRun(std::int32_t triangles, Report& report);

/// Largest resident size of the process in that run on 1, 2, 4 and 8 threads, and what the analysis tells of it.
void memoryOverThreads(std::int32_t triangles, Report& report);

}  // namespace bench
