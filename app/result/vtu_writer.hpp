// Writes part or blank with the results as a VTK unstructured grid (XML, extension .vtu), as ParaView reads
// it.
#pragma once

#include "result/result_files.hpp"
#include "result/run_report.hpp"

namespace host {

enum class Shape { part, blank };

// All nodes of the part's file and the triangles of the run. Per triangle and per node results carry formula
// and unit in their names; where the part's file has numbers of its own, node_id, element_id and part_id carry
// them; a field "converged" (1 or 0) and, if it is 0, a comment tell what the results are worth. compressed: about half
// the size, in more time. Throws Failure where it cannot be written.
void writeVtu(FileWriter& writer, const RunReport& report, Shape shape, bool compressed);

}  // namespace host
