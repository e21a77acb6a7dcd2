// Writes the blank as a Wavefront OBJ file.
#pragma once

#include "result/result_files.hpp"
#include "result/run_report.hpp"

namespace host {

// The blank (in the part's unit, z = 0) with all nodes of the part's file in their order, in the shortest decimals that read
// back to the same bits, and the triangles of the run. An unconverged blank says so in its head.
void writeBlankObj(FileWriter& file, const RunReport& report);

}  // namespace host
