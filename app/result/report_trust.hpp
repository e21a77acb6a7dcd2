// What a run's result is worth, in words.
#pragma once

#include "result/report_data.hpp"
#include "result/run_report.hpp"

namespace host {

// Degrees: below, a triangle's strains hang on the digits of its nodes.
inline constexpr double sharpCorner = 5.0;

// The level is the verdict's worth; its reasons are findings of that level, what else is to be known are notes.
ReportTrust trustOf(const RunReport& report);

}  // namespace host
