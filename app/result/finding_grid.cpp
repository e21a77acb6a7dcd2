// What a check found on a mesh; see the header.
#include "result/finding_grid.hpp"

#include <utility>

#include "result/vtu_file.hpp"

namespace host {

void writeFindingGrid(FileWriter& writer, const FindingGrid& grid) {
  const std::size_t elements = grid.corners.size() / 3;
  VtuFile file("", false);
  file.add("<Piece NumberOfPoints=\"" + std::to_string(grid.points.size() / 3) + "\" NumberOfCells=\"" +
           std::to_string(elements) + "\">\n<Points>\n");
  file.array("position_" + grid.unit, grid.points, "NumberOfComponents=\"3\" ");
  file.add("</Points>\n");
  file.triangles(grid.corners);
  file.add("<CellData>\n");
  std::vector<std::uint8_t> any(elements, 0);
  for (const FindingMark& mark : grid.marks) {
    std::vector<std::uint8_t> selected(elements, 0);
    for (const std::int32_t element : mark.elements)
      selected[static_cast<std::size_t>(element) - 1] = any[static_cast<std::size_t>(element) - 1] = 1;
    file.keepArray(mark.kind, std::move(selected));
  }
  file.keepArray("any_finding", std::move(any));
  file.array("piece", grid.piece);
  std::vector<std::int32_t> number;
  for (std::size_t e = 0; e < elements; ++e) number.push_back(static_cast<std::int32_t>(e) + 1);
  file.keepArray("element_number_in_file", std::move(number));
  if (!grid.elementId.empty()) file.array("element_id", grid.elementId);
  file.add("</CellData>\n</Piece>\n");
  file.write(writer);
}

}  // namespace host
