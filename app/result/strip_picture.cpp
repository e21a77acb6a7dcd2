// A strip of sheet with its blanks as a picture; see the header.
#include "result/strip_picture.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "result/svg_writer.hpp"
#include "result/utf8.hpp"
#include "system/text.hpp"

namespace host {

namespace {

constexpr int pitches = 4;

struct Drawn {
  std::string svg;
  double width = 0.0, height = 0.0;  // mm
};

// One strip with its upper edge at y = top.
Drawn drawStrip(const std::vector<OutlineLoop>& loops, const StripLayout& layout, double web, double top,
                double letter) {
  double left = std::numeric_limits<double>::infinity(), right = -left, bottom = left, low = left,
         high = right;
  std::vector<std::vector<PlanePoint>> all;
  for (int row = 0; row < layout.rows; ++row)
    for (int k = 0; k < pitches; ++k)
      for (auto& loop : inStrip(loops, layout, row, k)) all.push_back(std::move(loop));
  for (const auto& loop : all)
    for (const PlanePoint& p : loop) {
      left = std::min(left, p[0]);
      right = std::max(right, p[0]);
      low = std::min(low, p[1]);
      high = std::max(high, p[1]);
    }
  // what the simplified outline was wider is shared by both edges
  bottom = 0.5 * (low + high) - 0.5 * layout.width;
  Drawn drawn{"", right - left + 2.0 * web, layout.width + 2.5 * letter};
  drawn.svg = "<rect x=\"0\" y=\"" + svgNumber(top) + "\" width=\"" + svgNumber(drawn.width) +
              "\" height=\"" + svgNumber(layout.width) +
              "\" fill=\"#eee\" stroke=\"#888\"/>\n<path fill=\"#9bd\" fill-rule=\"evenodd\" "
              "stroke=\"#246\" d=\"";
  for (const auto& loop : all) {
    for (std::size_t k = 0; k < loop.size(); ++k)
      drawn.svg += (k == 0 ? "M" : "L") + svgNumber(loop[k][0] - left + web) + " " +
                   svgNumber(top + layout.width - (loop[k][1] - bottom));
    drawn.svg += "Z";
  }
  drawn.svg += "\"/>\n<text x=\"0\" y=\"" + svgNumber(top + layout.width + 1.5 * letter) + "\">" +
               xmlText(stripText(layout)) + "</text>\n";
  return drawn;
}

}  // namespace

std::string stripText(const StripLayout& layout) {
  return std::string(layout.rows == 1 ? "one row" : "two rows turned by 180 degrees") + ": " +
         stripFigures(layout);
}

std::string stripFigures(const StripLayout& layout) {
  return fixedDecimal(100.0 * layout.utilisation, 1) + " %, pitch " + fixedDecimal(layout.pitch, 2) +
         " mm, width " + fixedDecimal(layout.width, 2) + " mm, strip at " + fixedDecimal(layout.angle, 2) +
         " degrees to the blank's x";
}

std::vector<std::vector<PlanePoint>> inStrip(const std::vector<OutlineLoop>& loops, const StripLayout& layout,
                                             int row, int k) {
  const double angle = layout.angle * std::numbers::pi / 180.0, c = std::cos(angle), s = std::sin(angle);
  const double sign = row == 0 ? 1.0 : -1.0;
  const double x = k * layout.pitch + (row == 0 ? 0.0 : layout.along), y = row == 0 ? 0.0 : layout.across;
  std::vector<std::vector<PlanePoint>> placed;
  for (const OutlineLoop& loop : loops) {
    placed.emplace_back();
    for (const PlanePoint& p : loop.points)
      placed.back().push_back({sign * (c * p[0] + s * p[1]) + x, sign * (c * p[1] - s * p[0]) + y});
  }
  return placed;
}

std::string stripPicture(const std::vector<OutlineLoop>& loops, const std::vector<StripLayout>& layouts,
                         double web, const std::string& title) {
  double widest = 0.0;
  for (const StripLayout& layout : layouts) widest = std::max(widest, layout.width + pitches * layout.pitch);
  const double letter = std::max(2.0, 0.02 * widest);
  std::string body;
  double width = 0.0, height = 0.0;
  for (const StripLayout& layout : layouts) {
    const Drawn drawn = drawStrip(loops, layout, web, height, letter);
    body += drawn.svg;
    width = std::max({width, drawn.width, 0.6 * letter * static_cast<double>(stripText(layout).size())});
    height += drawn.height;
  }
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
         svgNumber(width) + "mm\" height=\"" + svgNumber(height) + "mm\" viewBox=\"0 0 " + svgNumber(width) +
         " " + svgNumber(height) + "\" font-family=\"sans-serif\" font-size=\"" + svgNumber(letter) +
         "\" stroke-width=\"" + svgNumber(0.05 * letter) + "\">\n<title>" + xmlText(title) + "</title>\n" +
         body + "</svg>\n";
}

}  // namespace host
