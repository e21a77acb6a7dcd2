// What a check found on a mesh; see the header.
#include "result/finding_grid.hpp"

#include "result/vtu_array.hpp"

namespace host {

void writeFindingGrid(FileWriter& file, const FindingGrid& grid) {
  const std::size_t elements = grid.corners.size() / 3;
  file.write("<?xml version=\"1.0\"?>\n" + vtuOpening() + "<Piece NumberOfPoints=\"" +
             std::to_string(grid.points.size() / 3) + "\" NumberOfCells=\"" + std::to_string(elements) +
             "\">\n<Points>\n");
  writeArray(file, "position_" + grid.unit, grid.points, "NumberOfComponents=\"3\" ");
  file.write("</Points>\n");
  writeTriangles(file, grid.corners);
  file.write("<CellData>\n");
  std::vector<std::uint8_t> any(elements, 0);
  for (const FindingMark& mark : grid.marks) {
    std::vector<std::uint8_t> selected(elements, 0);
    for (const std::int32_t element : mark.elements)
      selected[static_cast<std::size_t>(element) - 1] = any[static_cast<std::size_t>(element) - 1] = 1;
    writeArray(file, mark.kind, selected);
  }
  writeArray(file, "any_finding", any);
  writeArray(file, "piece", grid.piece);
  std::vector<std::int32_t> number;
  for (std::size_t e = 0; e < elements; ++e) number.push_back(static_cast<std::int32_t>(e) + 1);
  writeArray(file, "element_number_in_file", number);
  if (!grid.elementId.empty()) writeArray(file, "element_id", grid.elementId);
  file.write("</CellData>\n</Piece>\n</UnstructuredGrid>\n</VTKFile>\n");
}

}  // namespace host
