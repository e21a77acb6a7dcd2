// The summary of a run: a file for programs, a table for people. Both carry the units.
#pragma once

#include <string>

#include "result/run_report.hpp"

namespace host {

// Where the summary notes which part it belongs to.
inline constexpr const char* partPathKey = "part_path";
inline constexpr const char* partHashKey = "part_hash";

// A text as it reads back from a summary: bytes that are not UTF-8 become the replacement character.
std::string inSummary(const std::string& text);

// summary.json: the unit of a quantity ends its key (_mm, _mm2, _s, _deg); keys without one are dimensionless
// or counts. A quantity that the run did not give is null.
std::string summaryJson(const RunReport& report);

// The table that ends the run on the screen.
std::string summaryTable(const RunReport& report);

}  // namespace host
