// Writes the blank as a Wavefront OBJ file; see the header.
#include "result/obj_writer.hpp"

#include "system/text.hpp"

namespace host {

namespace {

// A file name may hold any byte, but a comment is one line.
std::string onOneLine(std::string text) {
  for (char& c : text)
    if (c == '\n' || c == '\r') c = '?';
  return text;
}

}  // namespace

void writeBlankObj(FileWriter& file, const RunReport& report) {
  file.write("# flat blank of " + onOneLine(report.part.file) + "\n# unit: " + report.unit.name +
             "; nodes in the order of the part\n");
  if (!report.verdict.converged) file.write("# NOT CONVERGED: " + report.verdict.reason + "\n");
  std::string line;
  const auto writeLine = [&](const char* keyword, auto... numbers) {
    line = keyword;
    ((line += ' ', appendDecimal(line, numbers)), ...);
    file.write(line += '\n');
  };
  const std::vector<double>& points = report.results.blankPoints;
  for (std::size_t k = 0; k < points.size(); k += 3) writeLine("v", points[k], points[k + 1], 0);
  const std::vector<std::int32_t>& corners = report.run.corners;
  for (std::size_t k = 0; k < corners.size(); k += 3)
    writeLine("f", corners[k], corners[k + 1], corners[k + 2]);
}

}  // namespace host
