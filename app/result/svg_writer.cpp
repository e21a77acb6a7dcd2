// Writes the drawing of the blank as SVG; see the header.
#include "result/svg_writer.hpp"

#include <algorithm>
#include <cmath>

#include "result/utf8.hpp"
#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {

void addCurves(std::string& svg, const Drawing& drawing, bool outer) {
  svg += std::string("<g id=\"") + (outer ? "OUTER" : "INNER") + "\" stroke=\"" + (outer ? "black" : "red") +
         "\">\n";
  for (const DrawnCurve& curve : drawing.curves)
    if (curve.outer == outer) svg += "<path d=\"" + svgPath(curve.vertices) + "\"/>\n";
  svg += "</g>\n";
}

}  // namespace

std::string svgNumber(double value) {
  if (!std::isfinite(value)) throw Failure("no SVG of the blank: a coordinate is not finite");
  return shortDecimal(value, 6);
}

std::string svgPath(const std::vector<CurveVertex>& curve) {
  std::string path;
  for (std::size_t k = 0, n = curve.size(); k < n; ++k) {
    const CurveVertex &a = curve[k], &b = curve[(k + 1) % n];
    if (k == 0) path += "M" + svgNumber(a.x) + " " + svgNumber(-a.y);
    if (a.bulge == 0.0) {
      if (k + 1 < n) path += "L" + svgNumber(b.x) + " " + svgNumber(-b.y);
      continue;
    }
    const double chord = std::hypot(b.x - a.x, b.y - a.y), angle = 4.0 * std::atan(std::abs(a.bulge));
    const std::string radius = svgNumber(0.5 * chord / std::sin(0.5 * angle));
    path += "A" + radius + " " + radius + " 0 0 " + (a.bulge > 0.0 ? "0 " : "1 ") + svgNumber(b.x) + " " +
            svgNumber(-b.y);
  }
  return path + "Z";
}

std::string svgText(const Drawing& drawing, const std::string& title) {
  const DrawingBox box = boxAround(drawing.curves);
  const double height = letterHeight(box), line = 2.0 * height;
  std::size_t longest = 0;
  for (const std::string& note : drawing.notes) longest = std::max(longest, decodeUtf8(note).size());
  const double around = 0.1 * height;  // the width of a line, half of which lies outside the blank
  // letters of a sans-serif font are about 0.6 of their size wide
  const double width =
      std::max(box.right - box.left, 0.6 * height * static_cast<double>(longest)) + 2.0 * around;
  const double tall =
      box.top - box.bottom + line * static_cast<double>(drawing.notes.size() + 1) + 2.0 * around;
  std::string svg = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  svg += "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + svgNumber(width) + "mm\" height=\"" +
         svgNumber(tall) + "mm\" viewBox=\"" + svgNumber(box.left - around) + " " +
         svgNumber(-box.top - around) + " " + svgNumber(width) + " " + svgNumber(tall) +
         "\" fill=\"none\" stroke-width=\"" + svgNumber(around) + "\">\n<title>" + xmlText(title) +
         "</title>\n";
  for (const std::string& warning : drawing.warnings) svg += "<desc>" + xmlText(warning) + "</desc>\n";
  addCurves(svg, drawing, true);
  addCurves(svg, drawing, false);
  if (!drawing.bends.empty()) {
    svg += "<g id=\"BEND\" stroke=\"green\">\n";
    for (const auto& [from, to] : drawing.bends)
      svg += "<path d=\"M" + svgNumber(from[0]) + " " + svgNumber(-from[1]) + "L" + svgNumber(to[0]) + " " +
             svgNumber(-to[1]) + "\"/>\n";
    svg += "</g>\n";
  }
  svg += "<g id=\"TEXT\" fill=\"gray\" font-family=\"sans-serif\" font-size=\"" + svgNumber(height) + "\">\n";
  double y = -box.bottom;
  for (std::size_t k = 0; k < drawing.notes.size(); ++k)
    svg += "<text x=\"" + svgNumber(box.left) + "\" y=\"" + svgNumber(y += line) + "\"" +
           (k < drawing.warnings.size() ? " fill=\"red\"" : "") + ">" + xmlText(drawing.notes[k]) +
           "</text>\n";
  return svg + "</g>\n</svg>\n";
}

}  // namespace host
