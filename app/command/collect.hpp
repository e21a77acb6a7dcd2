// The command `tornwalzen collect`: the results of many runs in one table and one page.
#pragma once

#include <string>
#include <vector>

#include "command/study_arguments.hpp"
#include "result/overview.hpp"

namespace host {

// The run whose results lie in a folder: what outcome.json and summary.json tell. A run that was refused or failed has
// its reason; one with neither file, or with a summary that cannot be read, did not end.
OverviewRow rowOf(const std::string& folder);

// Verdict, reason and figures of a summary's bytes, objects in objects to a depth of five, into the row; false, and the row
// as it was, where they are no summary.
bool takeSummary(const std::string& content, OverviewRow& row);

// The folders of runs: each of `folders` that holds one, else those directly below it that do, by name. Throws Failure: a
// folder that is none, or with no run in or below it.
std::vector<std::string> runFolders(const std::vector<std::string>& folders);

// Writes collected.csv and overview.html, and says how many runs of which verdict there are. Returns 0; throws Failure
// as runFolders, where files of those names are of another make (without --force), and where they cannot be written.
int collect(const CollectOptions& options);

}  // namespace host
