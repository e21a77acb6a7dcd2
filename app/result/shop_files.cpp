// The files for the workshop; see the header.
#include "result/shop_files.hpp"

#include <algorithm>
#include <array>

#include "result/dxf_writer.hpp"
#include "result/fld_picture.hpp"
#include "result/result_tables.hpp"
#include "result/strip_picture.hpp"
#include "result/svg_writer.hpp"
#include "system/path.hpp"
#include "system/text.hpp"

namespace host {

namespace {
constexpr double atPlane = 1e-3;  // of the part's extent: what lies so near to a plane of symmetry lies in it
constexpr std::array<const char*, 4> drawingFiles{"blank.dxf", "blank.svg", "fld.svg", "strip.svg"};
}  // namespace

std::vector<std::string> shopFileNames(bool tables) {
  std::vector<std::string> names{drawingFiles.begin(), drawingFiles.end()};
  if (tables) names.insert(names.end(), {"triangles.csv", "nodes.csv"});
  return names;
}

std::string whyNoDrawing(const RunReport& report) {
  const Verdict& verdict = report.verdict;
  const std::int64_t crossings = report.shop.shape.outline.crossings;
  if (!report.results.developed) return "there is no blank";
  if (!verdict.converged) return "the run did not converge";
  if (verdict.worth == Worth::notABlank)
    return "no sheet can be cut so" + (verdict.why.empty() ? "" : ": " + verdict.why.front());
  if (report.results.folded > 0)
    return "no sheet can be cut so: " + counted(report.results.folded, "triangle") +
           " of the blank turned over";
  if (crossings > 0)
    return "no sheet can be cut so: its outline crosses itself in " + counted(crossings, "place");
  return "";
}

std::string partOfBlank(const RunReport& report) {
  const std::vector<double>& points = report.part.points;
  std::string planes;
  int halves = 0;
  for (std::size_t axis = 0; axis < 2; ++axis) {
    const std::string plane = axis == 0 ? "x" : "y";
    if (report.holdRule != plane + "0" && report.holdRule != "x0,y0" && report.holdRule != "y0,x0") continue;
    double low = 0.0, high = 0.0;
    for (std::size_t n = 0; n < report.part.inTriangle.size(); ++n) {
      if (!report.part.inTriangle[n]) continue;
      low = std::min(low, points[3 * n + axis]);
      high = std::max(high, points[3 * n + axis]);
    }
    if (std::min(high, -low) > atPlane * (high - low)) continue;  // the part goes on behind the plane
    planes += (halves == 0 ? "" : " and ") + plane + " = 0";
    ++halves;
  }
  if (halves == 0) return "";
  return std::string(halves == 2 ? "A QUARTER" : "A HALF") + " of the blank, up to the symmetry " +
         (halves == 2 ? "planes " : "plane ") + planes;
}

std::string whyNoStrip(const RunReport& report) {
  if (std::string why = whyNoDrawing(report); !why.empty()) return why;
  if (!partOfBlank(report).empty())
    return "a strip wants the whole blank, and the part ends at its symmetry plane";
  return report.shop.whyNoStrip;
}

Drawing drawingOf(const RunReport& report) {
  const BlankShape& shape = report.shop.shape;
  Drawing drawing{shape.curves, shape.bends, {}, {}};
  if (report.verdict.worth == Worth::doubtful)
    for (const std::string& why : report.verdict.why) drawing.notes.push_back("DOUBTFUL: " + why);
  if (const std::string share = partOfBlank(report); !share.empty()) drawing.notes.push_back(share);
  drawing.warnings = drawing.notes;
  const double mm = report.unit.millimetres;
  const Rectangle& rectangle = report.results.blankRectangle;
  drawing.notes.push_back(pathText(pathOf(report.part.file).filename()));
  drawing.notes.push_back("rectangle " + fixedDecimal(rectangle.length * mm, 2) + " x " +
                          fixedDecimal(rectangle.width * mm, 2) + " mm, area " +
                          fixedDecimal(report.results.blankAreaTotal * mm * mm, 1) + " mm2");
  if (report.shop.thickness > 0.0) drawing.notes.push_back("sheet " + sheetText(report.shop));
  return drawing;
}

void addShopFiles(ResultFiles& files, const RunReport& report, bool tables) {
  for (const char* name : drawingFiles) files.withdraw(name);
  if (tables) {
    files.add("triangles.csv", [&](FileWriter& file) { writeTriangleTable(file, report); });
    files.add("nodes.csv", [&](FileWriter& file) { writeNodeTable(file, report); });
  }
  if (!whyNoDrawing(report).empty()) return;
  const Drawing drawing = drawingOf(report);
  files.add("blank.dxf",
            [&](FileWriter& file) { file.write(dxfText(drawing, report.shop.drawing.release)); });
  files.add("blank.svg", [&](FileWriter& file) { file.write(svgText(drawing, report.part.file)); });
  const ShopReport& shop = report.shop;
  if (shop.limitCurve)
    files.add("fld.svg", [&](FileWriter& file) {
      file.write(fldPicture(shop.major, shop.minor, shop.limit, *shop.limitCurve, shop.limitMargin,
                            "forming-limit diagram of " + report.part.file));
    });
  if (shop.strip && whyNoStrip(report).empty())
    files.add("strip.svg", [&](FileWriter& file) {
      file.write(stripPicture(shop.shape.outline.loops, {shop.strip->single, shop.strip->paired}, *shop.web,
                              "strip for " + report.part.file));
    });
}

}  // namespace host
