// The command `tornwalzen solve`.
#pragma once

#include "command/arguments.hpp"

namespace host {

// Runs the part and leaves the results in the output folder. Returns the exit status; throws Failure when
// nothing could be run or written.
int solve(const SolveOptions& options);

}  // namespace host
