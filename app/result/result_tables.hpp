// The results per triangle and per node as tables.
#pragma once

#include "result/result_files.hpp"
#include "result/run_report.hpp"

namespace host {

// A line per triangle of the run, with its number and its nodes' numbers in the part's file. Headings carry the units;
// a thickness in mm stands there if that of the sheet is known.
void writeTriangleTable(FileWriter& file, const RunReport& report);

// A line per node of the part's file.
void writeNodeTable(FileWriter& file, const RunReport& report);

}  // namespace host
