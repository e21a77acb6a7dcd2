// The forming-limit diagram as a picture; see the header.
#include "result/fld_picture.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <utility>

#include "result/svg_writer.hpp"
#include "result/utf8.hpp"
#include "system/text.hpp"

namespace host {

namespace {

constexpr double cell = 0.5;   // percent
constexpr double scale = 5.0;  // picture units per percent
constexpr double captionSize = 10.0;
constexpr double border = 60.0;   // picture units around the diagram
constexpr double widest = 300.0;  // percent: what lies beyond is drawn at the rim
constexpr std::array<const char*, limitZones> colors{"#2e7d32", "#f9a825", "#c62828", "#1565c0"};

struct Frame {
  double left = -40.0, right = 40.0, top = 60.0;  // percent, multiples of ten; the bottom is 0
  double x(double minor) const { return border + scale * (std::clamp(minor, left, right) - left); }
  double y(double major) const { return border + scale * (top - std::clamp(major, 0.0, top)); }
};

Frame frameAround(const std::vector<double>& major, const std::vector<double>& minor,
                  const LimitCurve& curve) {
  Frame frame;
  const auto widen = [&](double e2, double e1) {
    frame.left = std::min(frame.left, std::max(-widest, 10.0 * std::floor(e2 / 10.0)));
    frame.right = std::max(frame.right, std::min(widest, 10.0 * std::ceil(e2 / 10.0)));
    frame.top = std::max(frame.top, std::min(widest, 10.0 * std::ceil(e1 / 10.0)));
  };
  for (std::size_t e = 0; e < major.size(); ++e)
    if (std::isfinite(major[e]) && std::isfinite(minor[e]))
      widen(engineeringPercent(minor[e]), engineeringPercent(major[e]));
  widen(0.0, engineeringPercent(limitAt(curve, 0.0)) + 10.0);
  return frame;
}

std::string text(double x, double y, const std::string& content, const std::string& anchor) {
  return "<text x=\"" + svgNumber(x) + "\" y=\"" + svgNumber(y) + "\" text-anchor=\"" + anchor + "\">" +
         xmlText(content) + "</text>\n";
}

std::string grid(const Frame& frame) {
  std::string svg = "<g stroke=\"#ddd\">\n";
  std::string labels = "<g fill=\"#444\" font-size=\"12\">\n";
  for (double e2 = frame.left; e2 <= frame.right; e2 += 10.0) {
    svg += "<path d=\"M" + svgNumber(frame.x(e2)) + " " + svgNumber(frame.y(0)) + "V" + svgNumber(border) +
           "\"/>\n";
    labels += text(frame.x(e2), frame.y(0) + 18, svgNumber(e2), "middle");
  }
  for (double e1 = 0.0; e1 <= frame.top; e1 += 10.0) {
    svg += "<path d=\"M" + svgNumber(border) + " " + svgNumber(frame.y(e1)) + "H" +
           svgNumber(frame.x(frame.right)) + "\"/>\n";
    labels += text(border - 8, frame.y(e1) + 4, svgNumber(e1), "end");
  }
  labels += text(0.5 * (frame.x(frame.left) + frame.x(frame.right)), frame.y(0) + 40,
                 "minor strain, engineering, %", "middle");
  labels += text(border, border - 12, "major strain, engineering, %", "start");
  return svg + "<path stroke=\"#888\" d=\"M" + svgNumber(frame.x(0)) + " " + svgNumber(frame.y(0)) + "V" +
         svgNumber(border) + "\"/>\n</g>\n" + labels + "</g>\n";
}

std::string limitPath(const Frame& frame, const LimitCurve& curve, double below, const char* style) {
  std::string path;
  for (double e2 = frame.left; e2 <= frame.right + 1e-9; e2 += 0.5) {
    const double e1 = engineeringPercent(limitAt(curve, std::log1p(std::max(-0.99, 0.01 * e2)))) - below;
    if (e1 > frame.top || e1 < 0.0) continue;
    path += (path.empty() ? "M" : "L") + svgNumber(frame.x(e2)) + " " + svgNumber(frame.y(e1));
  }
  return "<path fill=\"none\" " + std::string(style) + " d=\"" + path + "\"/>\n";
}

// Lines of about so many bytes, broken at blanks alone, so that no character and no word is torn.
std::vector<std::string> wrapped(std::string text, std::size_t longest) {
  std::vector<std::string> lines;
  while (text.size() > longest) {
    std::size_t blank = text.rfind(' ', longest);
    if (blank == std::string::npos) blank = text.find(' ', longest);
    if (blank == std::string::npos) break;
    lines.push_back(text.substr(0, blank));
    text.erase(0, blank + 1);
  }
  lines.push_back(text);
  return lines;
}

}  // namespace

std::string fldPicture(const std::vector<double>& major, const std::vector<double>& minor,
                       const LimitResult& result, const LimitCurve& curve, double margin,
                       const std::string& title) {
  const Frame frame = frameAround(major, minor, curve);
  const double width = frame.x(frame.right) + border;
  const std::vector<std::string> caption =
      wrapped(curve.basis + "; margin " + decimal(margin) + " %",
              static_cast<std::size_t>((width - border) / (0.6 * captionSize)));
  const double height =
      frame.y(0) + border + 20.0 * limitZones + 1.4 * captionSize * static_cast<double>(caption.size());
  std::string svg =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " +
      svgNumber(width) + " " + svgNumber(height) +
      "\" font-family=\"sans-serif\" font-size=\"14\">\n<rect width=\"100%\" height=\"100%\" "
      "fill=\"white\"/>\n<title>" +
      xmlText(title) + "</title>\n" + grid(frame);
  std::array<std::set<std::pair<int, int>>, limitZones> cells;
  for (std::size_t e = 0; e < major.size(); ++e) {
    if (result.zone[e] < 0) continue;
    const double e2 = std::clamp(engineeringPercent(minor[e]), frame.left, frame.right),
                 e1 = std::clamp(engineeringPercent(major[e]), 0.0, frame.top);
    cells[static_cast<std::size_t>(result.zone[e])].insert(
        {static_cast<int>(std::lround(e2 / cell)), static_cast<int>(std::lround(e1 / cell))});
  }
  const double side = scale * cell;
  for (const LimitZone zone :
       {LimitZone::safe, LimitZone::wrinkling, LimitZone::marginal, LimitZone::split}) {
    const auto z = static_cast<std::size_t>(zone);
    std::string path;
    for (const auto& [i, j] : cells[z])
      path += "M" + svgNumber(frame.x(cell * i) - 0.5 * side) + " " +
              svgNumber(frame.y(cell * j) - 0.5 * side) + "h" + svgNumber(side) + "v" + svgNumber(side) +
              "h" + svgNumber(-side) + "z";
    if (!path.empty()) svg += "<path fill=\"" + std::string(colors[z]) + "\" d=\"" + path + "\"/>\n";
  }
  svg += limitPath(frame, curve, 0.0, "stroke=\"#c62828\" stroke-width=\"2\"");
  svg += limitPath(frame, curve, margin, "stroke=\"#f9a825\" stroke-width=\"2\" stroke-dasharray=\"6 4\"");
  svg += "<g font-size=\"" + svgNumber(captionSize) + "\">\n";
  double below = frame.y(0) + border + 20.0 * limitZones;
  for (const std::string& line : caption) {
    svg += text(border, below, line, "start");
    below += 1.4 * captionSize;
  }
  svg += "</g>\n";
  for (std::size_t z = 0; z < limitZones; ++z) {
    const double y = frame.y(0) + border + 20.0 * static_cast<double>(z);
    svg += "<rect x=\"" + svgNumber(border) + "\" y=\"" + svgNumber(y - 11) +
           "\" width=\"12\" height=\"12\" fill=\"" + colors[z] + "\"/>\n" +
           text(border + 20, y, std::string(limitZoneNames[z]) + ": " + counted(result.count[z], "triangle"),
                "start");
  }
  return svg + "</svg>\n";
}

}  // namespace host
