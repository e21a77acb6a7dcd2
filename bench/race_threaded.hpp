// Two threads against CHOLMOD on a BLAS of two threads, in turns in one process.
#pragma once

#include <cstdint>

#include "report.hpp"

namespace bench {

/// `ratio numeric-cholmod SIZE t2` and `ratio numeric-metis SIZE t2`: wall times of a repeated factorization of the
/// membrane on so many nodes. OpenBLAS with threads has the name of the serial one that this process runs on; so a second
/// process of this program does the work and finds it in its own folder. Says so where it is left out.
void raceThreadedBlas(std::int32_t nodes, Report& report);

/// The second process: prints a line `WHO WALL UNDISTURBED` for each contender (s, runs), and `blas CORE`. Returns the
/// status to exit with.
int raceInThreadedBlas(std::int32_t nodes);

}  // namespace bench
