// The files for the workshop; see the header.
#include "result/shop_files.hpp"

#include "result/dxf_writer.hpp"
#include "result/fld_picture.hpp"
#include "result/result_tables.hpp"
#include "result/strip_picture.hpp"
#include "result/svg_writer.hpp"
#include "system/text.hpp"

namespace host {

std::vector<std::string> shopFileNames(const ShopReport& shop, bool tables) {
  std::vector<std::string> names{"blank.dxf", "blank.svg"};
  if (shop.limitCurve) names.push_back("fld.svg");
  if (shop.web) names.push_back("strip.svg");
  if (tables) names.insert(names.end(), {"triangles.csv", "nodes.csv"});
  return names;
}

std::vector<std::string> shapeWarnings(const RunReport& report) {
  std::vector<std::string> warnings;
  if (!report.results.developed)
    warnings.push_back("NO BLANK: this is what the development left");
  else if (!report.verdict.converged)
    warnings.push_back("NOT CONVERGED: " + report.verdict.reason);
  if (report.results.folded > 0)
    warnings.push_back("FOLDED: " + counted(report.results.folded, "triangle") +
                       " of the blank lie upside down");
  if (report.shop.shape.outline.crossings > 0)
    warnings.push_back("DO NOT CUT: the outline crosses itself in " +
                       counted(report.shop.shape.outline.crossings, "place"));
  return warnings;
}

Drawing drawingOf(const RunReport& report) {
  const BlankShape& shape = report.shop.shape;
  Drawing drawing{shape.curves, shape.bends, shapeWarnings(report), {}};
  if (report.verdict.converged && report.verdict.worth != Worth::good)
    for (const std::string& why : report.verdict.why)
      drawing.notes.push_back((report.verdict.worth == Worth::doubtful ? "DOUBTFUL: " : "NOT A BLANK: ") +
                              why);
  drawing.warnings = drawing.notes;
  const double mm = report.unit.millimetres;
  const Rectangle& rectangle = report.results.blankRectangle;
  drawing.notes.push_back(report.part.file);
  drawing.notes.push_back("rectangle " + fixedDecimal(rectangle.length * mm, 2) + " x " +
                          fixedDecimal(rectangle.width * mm, 2) + " mm, area " +
                          fixedDecimal(report.results.blankAreaTotal * mm * mm, 1) + " mm2");
  if (report.shop.thickness > 0.0)
    drawing.notes.push_back("sheet " + decimal(report.shop.thickness) + " mm" +
                            (report.shop.material.name.empty() ? "" : ", " + report.shop.material.name));
  return drawing;
}

void addShopFiles(ResultFiles& files, const RunReport& report, bool tables) {
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
  if (shop.strip)
    files.add("strip.svg", [&](FileWriter& file) {
      file.write(stripPicture(shop.shape.outline.loops, {shop.strip->single, shop.strip->paired}, *shop.web,
                              "strip for " + report.part.file));
    });
  if (!tables) return;
  files.add("triangles.csv", [&](FileWriter& file) { writeTriangleTable(file, report); });
  files.add("nodes.csv", [&](FileWriter& file) { writeNodeTable(file, report); });
}

}  // namespace host
