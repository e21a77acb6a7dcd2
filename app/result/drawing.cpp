// The flat blank as a drawing; see the header.
#include "result/drawing.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace host {

namespace {

constexpr double degree = std::numbers::pi / 180.0;

// The farthest points of an arc along the axes, where it passes them.
void widenByArc(DrawingBox& box, const CurveVertex& a, const CurveVertex& b) {
  // the centre lies on the chord's perpendicular, (1 - bulge^2)/(4 bulge) chords to its left
  const double offset = (1.0 - a.bulge * a.bulge) / (4.0 * a.bulge);
  const double x = 0.5 * (a.x + b.x) - offset * (b.y - a.y), y = 0.5 * (a.y + b.y) + offset * (b.x - a.x);
  const double radius = std::hypot(a.x - x, a.y - y);
  const double from = std::atan2(a.y - y, a.x - x), sweep = 4.0 * std::atan(a.bulge);
  for (int quarter = 0; quarter < 4; ++quarter) {
    double turn = 0.5 * std::numbers::pi * quarter - from;
    turn = sweep > 0.0 ? turn - 2.0 * std::numbers::pi * std::floor(turn / (2.0 * std::numbers::pi))
                       : turn - 2.0 * std::numbers::pi * std::ceil(turn / (2.0 * std::numbers::pi));
    if (std::abs(turn) > std::abs(sweep)) continue;
    if (quarter == 0) box.right = std::max(box.right, x + radius);
    if (quarter == 1) box.top = std::max(box.top, y + radius);
    if (quarter == 2) box.left = std::min(box.left, x - radius);
    if (quarter == 3) box.bottom = std::min(box.bottom, y - radius);
  }
}

}  // namespace

PlanePoint placed(const PlanePoint& point, const Placement& placement) {
  const double c = std::cos(placement.angle * degree), s = std::sin(placement.angle * degree);
  return {c * point[0] - s * point[1] + placement.shiftX, s * point[0] + c * point[1] + placement.shiftY};
}

Placement squarePlacement(const std::vector<OutlineLoop>& loops) {
  std::vector<PlanePoint> points;
  for (const OutlineLoop& loop : loops) points.insert(points.end(), loop.points.begin(), loop.points.end());
  Placement placement{-smallestRectangle(points).angle, 0.0, 0.0};
  double left = std::numeric_limits<double>::infinity(), bottom = left;
  for (const PlanePoint& point : points) {
    const PlanePoint turned = placed(point, placement);
    left = std::min(left, turned[0]);
    bottom = std::min(bottom, turned[1]);
  }
  if (points.empty()) return {};
  placement.shiftX = -left;
  placement.shiftY = -bottom;
  return placement;
}

std::vector<DrawnCurve> drawnCurves(const std::vector<OutlineLoop>& loops, const Placement& placement,
                                    double tolerance) {
  std::vector<DrawnCurve> curves;
  for (const OutlineLoop& loop : loops) {
    std::vector<PlanePoint> points;
    for (const PlanePoint& point : loop.points) points.push_back(placed(point, placement));
    curves.push_back({curves.empty(), fitCurve(points, tolerance)});
  }
  return curves;
}

DrawingBox boxAround(const std::vector<DrawnCurve>& curves) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  DrawingBox box{infinity, infinity, -infinity, -infinity};
  for (const DrawnCurve& curve : curves)
    for (std::size_t k = 0, n = curve.vertices.size(); k < n; ++k) {
      const CurveVertex& vertex = curve.vertices[k];
      box.left = std::min(box.left, vertex.x);
      box.right = std::max(box.right, vertex.x);
      box.bottom = std::min(box.bottom, vertex.y);
      box.top = std::max(box.top, vertex.y);
      if (vertex.bulge != 0.0) widenByArc(box, vertex, curve.vertices[(k + 1) % n]);
    }
  return box.left <= box.right ? box : DrawingBox{};
}

double letterHeight(const DrawingBox& box) {
  return std::max(1.0, 0.02 * std::max(box.right - box.left, box.top - box.bottom));
}

}  // namespace host
