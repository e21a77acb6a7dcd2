// What the program adds to a run: reading and checking the part, writing the results.
#pragma once

#include <cstdint>

#include "report.hpp"

namespace bench {

/// The drawn square cup with so many triangles as an OBJ file through the program, on one thread and on two in turns:
/// the share of the stages in the wall time of the process. Throws std::runtime_error where a run fails.
void timeProgram(std::int32_t triangles, Report& report);

}  // namespace bench
