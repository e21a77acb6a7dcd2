// The smallest rectangle around points of the plane; see the header.
#include "result/smallest_rectangle.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

namespace host {

namespace {

constexpr double equalArea = 1e-9;  // relative: what is rounding of sums of a few coordinates
constexpr double degree = std::numbers::pi / 180.0;

double cross(const PlanePoint& o, const PlanePoint& a, const PlanePoint& b) {
  return (a[0] - o[0]) * (b[1] - o[1]) - (a[1] - o[1]) * (b[0] - o[0]);
}

// Counter-clockwise, without points inside its sides (A. M. Andrew's monotone chain, 1979).
std::vector<PlanePoint> convexHull(std::vector<PlanePoint> points) {
  std::sort(points.begin(), points.end());
  points.erase(std::unique(points.begin(), points.end()), points.end());
  if (points.size() < 3) return points;
  std::vector<PlanePoint> hull;
  const auto take = [&](const PlanePoint& p, std::size_t base) {
    while (hull.size() >= base + 2 && !(cross(hull[hull.size() - 2], hull.back(), p) > 0.0)) hull.pop_back();
    hull.push_back(p);
  };
  for (const PlanePoint& p : points) take(p, 0);
  const std::size_t lower = hull.size() - 1;
  for (std::size_t k = points.size() - 1; k-- > 0;) take(points[k], lower);
  hull.pop_back();  // the first point again
  return hull;
}

double along(const PlanePoint& direction, const PlanePoint& p) {
  return direction[0] * p[0] + direction[1] * p[1];
}

// Goes on from corner `at` of the hull as long as that leads farther along the direction.
std::size_t farthest(const std::vector<PlanePoint>& hull, const PlanePoint& direction, std::size_t at) {
  for (std::size_t steps = 0; steps < hull.size(); ++steps) {
    const std::size_t next = (at + 1) % hull.size();
    if (along(direction, hull[next]) < along(direction, hull[at])) break;
    at = next;
  }
  return at;
}

// From the extents along the direction and across it.
Rectangle standing(const PlanePoint& direction, double extentAlong, double extentAcross) {
  double angle = std::atan2(direction[1], direction[0]) / degree;
  if (extentAcross > extentAlong) angle += 90.0;
  while (angle > 90.0) angle -= 180.0;
  while (angle <= -90.0) angle += 180.0;
  return {std::max(extentAlong, extentAcross), std::min(extentAlong, extentAcross), angle};
}

bool better(const Rectangle& a, const Rectangle& b) {
  const double areaA = a.length * a.width, areaB = b.length * b.width;
  if (std::abs(areaA - areaB) > equalArea * areaB) return areaA < areaB;
  return std::abs(a.angle) < std::abs(b.angle);
}

}  // namespace

Rectangle smallestRectangle(std::vector<PlanePoint> points) {
  const std::vector<PlanePoint> hull = convexHull(std::move(points));
  if (hull.size() < 2) return {};
  Rectangle best;
  std::size_t right = 0, top = 0, left = 0;
  for (std::size_t k = 0; k < hull.size(); ++k) {
    const PlanePoint &from = hull[k], &to = hull[(k + 1) % hull.size()];
    const double side = std::hypot(to[0] - from[0], to[1] - from[1]);
    const PlanePoint x{(to[0] - from[0]) / side, (to[1] - from[1]) / side}, y{-x[1], x[0]},
        back{-x[0], -x[1]};
    right = farthest(hull, x, k == 0 ? 1 : right);
    top = farthest(hull, y, k == 0 ? right : top);
    left = farthest(hull, back, k == 0 ? top : left);
    const Rectangle rectangle =
        standing(x, along(x, hull[right]) - along(x, hull[left]), along(y, hull[top]) - along(y, from));
    if (k == 0 || better(rectangle, best)) best = rectangle;
  }
  return best;
}

}  // namespace host
