// Writes part or blank with the results as a VTK unstructured grid (XML, extension .vtu), as ParaView reads
// it.
//
// Numbers stand in the file as base64 of a 64-bit byte count followed by the values, in the byte order of
// this machine, which the file names.
#pragma once

#include <string>
#include <string_view>

#include "result/result_files.hpp"
#include "result/run_report.hpp"

namespace host {

enum class Shape { part, blank };

// All nodes of the part's file and the triangles of the run. Per triangle and per node results carry formula
// and unit in their names; where the part's file has numbers of its own, node_id, element_id and part_id carry
// them; a field "converged" (1 or 0) and, if it is 0, a comment tell what the results are
// worth.
void writeVtu(FileWriter& file, const RunReport& report, Shape shape);

// Base64 of `bytes` (RFC 4648, with padding).
std::string base64(std::string_view bytes);

}  // namespace host
