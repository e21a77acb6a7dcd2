// How a run of solve ended, as a file: also where it was refused and there is no summary.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "command/arguments.hpp"

namespace host {

inline constexpr const char* outcomeName = "outcome.json";  // that a study gives it

struct Outcome {
  int status = 0;                      // exit status
  std::string reason;                  // the sentence of a refusal or failure; empty: none
  std::vector<std::string> arguments;  // of solve, as they were given
  std::string folder;                  // of the results, as it was given
};

// solve, and where options.outcome names a file the outcome in it, whatever the end but a signal; an outcome of before
// is removed first. Returns and throws what solve does; throws Failure where the file cannot be written.
int solveWithOutcome(const SolveOptions& options);

// The outcome in a file's bytes; nothing where they are not of this program's making.
std::optional<Outcome> outcomeIn(const std::string& content);

// The outcome in a file; nothing where there is none or it is not of this program's making.
std::optional<Outcome> readOutcome(const std::string& path);

}  // namespace host
