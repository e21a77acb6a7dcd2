// Lines and arcs through a polygon; see the header.
#include "result/curve_fit.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace host {

namespace {

constexpr std::size_t leastChords = 3;    // of an arc: through fewer there is a circle whatever they are
constexpr std::size_t circleCorners = 6;  // of a polygon that may be taken for a circle
constexpr double pi = 3.14159265358979323846;

using Points = std::vector<PlanePoint>;

double distance(const PlanePoint& a, const PlanePoint& b) {
  return std::hypot(b[0] - a[0], b[1] - a[1]);
}

double cross(const PlanePoint& o, const PlanePoint& a, const PlanePoint& b) {
  return (a[0] - o[0]) * (b[1] - o[1]) - (a[1] - o[1]) * (b[0] - o[0]);
}

double distanceToSegment(const PlanePoint& p, const PlanePoint& a, const PlanePoint& b) {
  const double ux = b[0] - a[0], uy = b[1] - a[1], square = ux * ux + uy * uy;
  const double s = square > 0.0 ? ((p[0] - a[0]) * ux + (p[1] - a[1]) * uy) / square : 0.0;
  const double t = std::clamp(s, 0.0, 1.0);
  return distance(p, {a[0] + t * ux, a[1] + t * uy});
}

// Whether corners first..last run round the centre in one sense (turn +1 or -1) and all points of their chords have
// the radius within the tolerance. Then every ray of the arc's range meets the polygon there, and so neither is
// farther from the other.
bool onCircle(const Points& points, std::size_t first, std::size_t last, const PlanePoint& centre,
              double radius, double turn, double tolerance) {
  for (std::size_t k = first; k <= last; ++k)
    if (std::abs(distance(centre, points[k]) - radius) > tolerance) return false;
  for (std::size_t k = first; k < last; ++k) {
    if (!(turn * cross(centre, points[k], points[k + 1]) > 0.0)) return false;
    if (radius - distanceToSegment(centre, points[k], points[k + 1]) > tolerance) return false;
  }
  return true;
}

bool lineHolds(const Points& points, std::size_t first, std::size_t last, double tolerance) {
  for (std::size_t k = first + 1; k < last; ++k)
    if (distanceToSegment(points[k], points[first], points[last]) > tolerance) return false;
  return true;
}

// Circles through both ends, in coordinates along and across the chord from first to last of length L:
// x(x - L) + y^2 = 2 k y with the centre (L/2, k). The k of least squares is sum(y f) / (2 sum(y^2)) with
// f = x(x - L) + y^2. Returns false if it does not hold the tolerance; bulge: out.
bool arcHolds(const Points& points, std::size_t first, std::size_t last, double tolerance, double& bulge) {
  const PlanePoint &a = points[first], &b = points[last];
  const double L = distance(a, b);
  if (!(L > tolerance)) return false;
  const double ux = (b[0] - a[0]) / L, uy = (b[1] - a[1]) / L;
  double sumY = 0.0, sumYF = 0.0, sumYY = 0.0;
  for (std::size_t k = first + 1; k < last; ++k) {
    const double dx = points[k][0] - a[0], dy = points[k][1] - a[1];
    const double x = dx * ux + dy * uy, y = dy * ux - dx * uy;
    sumY += y;
    sumYF += y * (x * (x - L) + y * y);
    sumYY += y * y;
  }
  if (!(sumYY > 0.0)) return false;
  const double k = sumYF / (2.0 * sumYY), radius = std::hypot(0.5 * L, k), left = sumY > 0.0 ? 1.0 : -1.0;
  const double height = left * k + radius;  // of the arc over its chord
  if (!(height > 0.0 && height <= 0.5 * L)) return false;
  const PlanePoint centre{a[0] + 0.5 * L * ux - k * uy, a[1] + 0.5 * L * uy + k * ux};
  bulge = -left * 2.0 * height / L;
  return onCircle(points, first, last, centre, radius, -left, tolerance);
}

// The farthest end that `holds`, looked for by doubling the reach and then halving the rest. first + least is the
// nearest candidate; returns `first` if it does not hold.
template <class Holds>
std::size_t farthestEnd(std::size_t first, std::size_t least, std::size_t limit, Holds holds) {
  if (first + least > limit || !holds(first + least)) return first;
  std::size_t good = first + least, reach = least;
  while (good < limit && holds(std::min(limit, first + 2 * reach))) {
    reach *= 2;
    good = std::min(limit, first + reach);
  }
  std::size_t bad = std::min(limit + 1, first + 2 * reach);
  while (bad > good + 1) {
    const std::size_t middle = good + (bad - good) / 2;
    (holds(middle) ? good : bad) = middle;
  }
  return good;
}

// The polygon's sharpest corner: pieces that begin there do not run across it.
std::size_t sharpestCorner(const Points& loop) {
  std::size_t sharpest = 0;
  double largest = -1.0;
  for (std::size_t k = 0, n = loop.size(); k < n; ++k) {
    const PlanePoint &a = loop[(k + n - 1) % n], &b = loop[k], &c = loop[(k + 1) % n];
    const double along = (b[0] - a[0]) * (c[0] - b[0]) + (b[1] - a[1]) * (c[1] - b[1]);
    const double turn = std::abs(std::atan2(cross(a, b, c), along));
    if (turn > largest) sharpest = k, largest = turn;
  }
  return sharpest;
}

// The least-squares circle of I. Kasa (IEEE Trans. Instrum. Meas. 25 (1976) 8) through the corners; false if the
// polygon is none within the tolerance.
bool wholeCircle(const Points& closed, double tolerance, PlanePoint& centre, double& radius) {
  const std::size_t n = closed.size() - 1;
  PlanePoint mean{0.0, 0.0};
  for (std::size_t k = 0; k < n; ++k) mean[0] += closed[k][0] / n, mean[1] += closed[k][1] / n;
  double xx = 0.0, xy = 0.0, yy = 0.0, xz = 0.0, yz = 0.0, z = 0.0;
  for (std::size_t k = 0; k < n; ++k) {
    const double x = closed[k][0] - mean[0], y = closed[k][1] - mean[1], square = x * x + y * y;
    xx += x * x, xy += x * y, yy += y * y, xz += x * square, yz += y * square, z += square / n;
  }
  const double determinant = xx * yy - xy * xy;
  if (!(determinant > 0.0)) return false;
  const double cx = 0.5 * (xz * yy - yz * xy) / determinant, cy = 0.5 * (yz * xx - xz * xy) / determinant;
  centre = {mean[0] + cx, mean[1] + cy};
  radius = std::sqrt(z + cx * cx + cy * cy);
  if (!(radius > tolerance)) return false;
  const double turn = cross(centre, closed[0], closed[1]) > 0.0 ? 1.0 : -1.0;
  if (!onCircle(closed, 0, n, centre, radius, turn, tolerance)) return false;
  double angle = 0.0;  // a polygon may go round more than once
  for (std::size_t k = 0; k < n; ++k) {
    const PlanePoint &a = closed[k], &b = closed[k + 1];
    angle += std::atan2(cross(centre, a, b),
                        (a[0] - centre[0]) * (b[0] - centre[0]) + (a[1] - centre[1]) * (b[1] - centre[1]));
  }
  return std::abs(std::abs(angle) - 2.0 * pi) < 1.0;
}

std::vector<CurveVertex> halfCircles(const Points& closed, const PlanePoint& centre, double radius) {
  const double scale = radius / distance(centre, closed[0]);
  const double dx = scale * (closed[0][0] - centre[0]), dy = scale * (closed[0][1] - centre[1]);
  const double bulge = cross(centre, closed[0], closed[1]) > 0.0 ? 1.0 : -1.0;
  return {{centre[0] + dx, centre[1] + dy, bulge}, {centre[0] - dx, centre[1] - dy, bulge}};
}

std::vector<CurveVertex> cornersOf(const Points& loop) {
  std::vector<CurveVertex> curve;
  for (const PlanePoint& p : loop) curve.push_back({p[0], p[1], 0.0});
  return curve;
}

}  // namespace

std::vector<CurveVertex> fitCurve(const std::vector<PlanePoint>& loop, double tolerance) {
  if (loop.size() < 3) return cornersOf(loop);
  Points closed = loop;
  std::rotate(closed.begin(), closed.begin() + static_cast<std::ptrdiff_t>(sharpestCorner(loop)),
              closed.end());
  closed.push_back(closed.front());
  PlanePoint centre{};
  double radius = 0.0;
  if (loop.size() >= circleCorners && wholeCircle(closed, tolerance, centre, radius))
    return halfCircles(closed, centre, radius);

  std::vector<CurveVertex> curve;
  for (std::size_t at = 0; at < loop.size();) {
    const std::size_t limit = std::min(loop.size(), at + std::max<std::size_t>(1, loop.size() / 2));
    double bulge = 0.0, tried = 0.0;
    std::size_t end =
        farthestEnd(at, 1, limit, [&](std::size_t last) { return lineHolds(closed, at, last, tolerance); });
    const std::size_t arcEnd = farthestEnd(at, leastChords, limit, [&](std::size_t last) {
      return arcHolds(closed, at, last, tolerance, tried);
    });
    if (arcEnd > end && arcHolds(closed, at, arcEnd, tolerance, bulge)) end = arcEnd;
    curve.push_back({closed[at][0], closed[at][1], bulge});
    at = end;
  }
  const bool onlyLines =
      std::all_of(curve.begin(), curve.end(), [](const CurveVertex& v) { return v.bulge == 0.0; });
  return curve.size() < 2 || (curve.size() == 2 && onlyLines) ? cornersOf(loop) : curve;
}

double areaInside(const std::vector<CurveVertex>& curve) {
  double area = 0.0;
  for (std::size_t k = 0, n = curve.size(); k < n; ++k) {
    const CurveVertex &a = curve[k], &b = curve[(k + 1) % n], &o = curve[0];
    area += 0.5 * ((a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x));
    if (a.bulge == 0.0) continue;
    const double angle = 4.0 * std::atan(a.bulge), chord = std::hypot(b.x - a.x, b.y - a.y);
    const double radius = 0.5 * chord / std::sin(0.5 * std::abs(angle));
    area += 0.5 * radius * radius * (angle - std::sin(angle));  // between the arc and its chord
  }
  return area;
}

}  // namespace host
