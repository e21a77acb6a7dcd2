// What a check found on a mesh, as a VTK unstructured grid (.vtu): one array of 0 and 1 per kind of finding, by which a
// viewer selects its triangles.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "result/result_files.hpp"

namespace host {

struct FindingMark {
  std::string kind;                    // name of the array
  std::vector<std::int32_t> elements;  // from 1
};

struct FindingGrid {
  std::string unit;                     // of the points, in the name of their array
  std::vector<double> points;           // x, y, z per node
  std::vector<std::int32_t> corners;    // three nodes from 1 per triangle, in range
  std::vector<std::int32_t> piece;      // per triangle
  std::vector<std::int64_t> elementId;  // what the file calls the triangles; may be empty
  std::vector<FindingMark> marks;       // elements in range
};

// Throws Failure where it cannot be written.
void writeFindingGrid(FileWriter& writer, const FindingGrid& grid);

}  // namespace host
