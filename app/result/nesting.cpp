// How blanks are cut from a strip of sheet; see the header.
#include "result/nesting.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>
#include <polyclipping/clipper.hpp>
#include <tuple>
#include <utility>

namespace host {

namespace {

using ClipperLib::cInt;
using ClipperLib::IntPoint;
using ClipperLib::Path;
using ClipperLib::Paths;

constexpr double unitsPerMm = 1000.0;     // of the polygon library's integers
constexpr double finest = 0.0002;         // of the outline's size: what simplifying may move
constexpr std::size_t mostCorners = 120;  // of the polygon that is nested: the sums grow with their square
constexpr double degree = std::numbers::pi / 180.0;

double distanceToLine(const PlanePoint& p, const PlanePoint& a, const PlanePoint& b) {
  const double ux = b[0] - a[0], uy = b[1] - a[1], length = std::hypot(ux, uy);
  if (!(length > 0.0)) return std::hypot(p[0] - a[0], p[1] - a[1]);
  return std::abs((p[0] - a[0]) * uy - (p[1] - a[1]) * ux) / length;
}

// Marks the corners that stay between two that do (D. H. Douglas, T. K. Peucker, 1973), with a stack of its own: outlines
// may have any number of corners.
void markKept(const std::vector<PlanePoint>& points, double tolerance, std::vector<bool>& kept) {
  std::vector<std::pair<std::size_t, std::size_t>> open{{0, points.size() - 1}};
  while (!open.empty()) {
    const auto [first, last] = open.back();
    open.pop_back();
    double largest = tolerance;
    std::size_t farthest = first;
    for (std::size_t k = first + 1; k < last; ++k)
      if (const double d = distanceToLine(points[k], points[first], points[last]); d > largest)
        largest = d, farthest = k;
    if (farthest == first) continue;
    kept[farthest] = true;
    open.push_back({first, farthest});
    open.push_back({farthest, last});
  }
}

// The closed outline with fewer corners, none of the left out ones farther than the tolerance from it.
std::vector<PlanePoint> simplified(const std::vector<PlanePoint>& outline, double tolerance) {
  const auto far =
      std::max_element(outline.begin(), outline.end(), [&](const PlanePoint& a, const PlanePoint& b) {
        return std::hypot(a[0] - outline[0][0], a[1] - outline[0][1]) <
               std::hypot(b[0] - outline[0][0], b[1] - outline[0][1]);
      });
  std::vector<PlanePoint> closed = outline;
  closed.push_back(outline.front());
  std::vector<bool> kept(closed.size(), false);
  const auto turn = static_cast<std::size_t>(far - outline.begin());
  kept.front() = kept[turn] = true;
  std::vector<bool> half(turn + 1, false);
  markKept({closed.begin(), closed.begin() + static_cast<std::ptrdiff_t>(turn) + 1}, tolerance, half);
  for (std::size_t k = 0; k <= turn; ++k) kept[k] = kept[k] || half[k];
  half.assign(closed.size() - turn, false);
  markKept({closed.begin() + static_cast<std::ptrdiff_t>(turn), closed.end()}, tolerance, half);
  for (std::size_t k = turn; k < closed.size(); ++k) kept[k] = kept[k] || half[k - turn];
  std::vector<PlanePoint> few;
  for (std::size_t k = 0; k < outline.size(); ++k)
    if (kept[k]) few.push_back(outline[k]);
  return few;
}

double sizeOf(const std::vector<PlanePoint>& outline) {
  double low[2], high[2];
  for (std::size_t axis = 0; axis < 2; ++axis) {
    low[axis] = high[axis] = outline[0][axis];
    for (const PlanePoint& p : outline) {
      low[axis] = std::min(low[axis], p[axis]);
      high[axis] = std::max(high[axis], p[axis]);
    }
  }
  return std::max(high[0] - low[0], high[1] - low[1]);
}

Path integers(const std::vector<PlanePoint>& points) {
  Path path;
  for (const PlanePoint& p : points)
    path.push_back(IntPoint(std::llround(p[0] * unitsPerMm), std::llround(p[1] * unitsPerMm)));
  return path;
}

std::vector<PlanePoint> millimetres(const Path& path) {
  std::vector<PlanePoint> points;
  for (const IntPoint& p : path)
    points.push_back({static_cast<double>(p.X) / unitsPerMm, static_cast<double>(p.Y) / unitsPerMm});
  return points;
}

// The outline widened by a distance (mm), with arcs around its corners; for one whose corners are all one, a square.
Path widened(const std::vector<PlanePoint>& outline, double distance, double arcTolerance) {
  ClipperLib::ClipperOffset offset(2.0, arcTolerance * unitsPerMm);
  offset.AddPath(integers(outline), ClipperLib::jtRound, ClipperLib::etClosedPolygon);
  Paths around;
  offset.Execute(around, distance * unitsPerMm);
  const auto largest = std::max_element(around.begin(), around.end(), [](const Path& a, const Path& b) {
    return std::abs(ClipperLib::Area(a)) < std::abs(ClipperLib::Area(b));
  });
  if (largest != around.end()) return *largest;
  const double x = outline[0][0], y = outline[0][1], d = distance;
  return integers({{x - d, y - d}, {x + d, y - d}, {x + d, y + d}, {x - d, y + d}});
}

// A polygon around the outline, everywhere at least so far from it (mm): widened, then simplified.
Path hullAround(const std::vector<PlanePoint>& outline, double distance) {
  for (double tolerance = std::max(0.01, finest * sizeOf(outline));; tolerance *= 1.5) {
    // chords stand in for the arcs, inside them by a tolerance; simplifying takes another; two units of rounding
    const double around = distance + 2.0 * tolerance + 2.0 / unitsPerMm;
    const Path path = integers(simplified(millimetres(widened(outline, around, tolerance)), tolerance));
    if (path.size() <= mostCorners) return path;
  }
}

Path negative(const Path& path) {
  Path turned;
  for (const IntPoint& p : path) turned.push_back(IntPoint(-p.X, -p.Y));
  return turned;
}

using Points = std::vector<PlanePoint>;

// In mm, turned by -angle: the strip's length becomes x.
std::vector<Points> turnedBack(const Paths& paths, double angle) {
  const double c = std::cos(angle * degree), s = std::sin(angle * degree);
  std::vector<Points> turned;
  for (const Path& path : paths) {
    turned.emplace_back();
    for (const IntPoint& p : path) {
      const double x = static_cast<double>(p.X) / unitsPerMm, y = static_cast<double>(p.Y) / unitsPerMm;
      turned.back().push_back({c * x + s * y, c * y - s * x});
    }
  }
  return turned;
}

struct Range {
  double low = std::numeric_limits<double>::infinity(), high = -low;
  void take(double value) {
    low = std::min(low, value);
    high = std::max(high, value);
  }
};

Range rangeOf(const std::vector<Points>& paths, std::size_t axis) {
  Range range;
  for (const Points& path : paths)
    for (const PlanePoint& p : path) range.take(p[axis]);
  return range;
}

// The blank with half the web around it and its two no-fit polygons: with itself, and with itself turned by 180 degrees.
struct Nest {
  Paths blank, same, turned;
  double area, web;
};

// The largest x at which the no-fit polygon meets the x axis.
double pitchOf(const std::vector<Points>& same) {
  double pitch = 0.0;
  for (const Points& path : same)
    for (std::size_t k = 0; k < path.size(); ++k) {
      const PlanePoint &a = path[k], &b = path[(k + 1) % path.size()];
      if ((a[1] > 0.0) == (b[1] > 0.0)) continue;
      pitch = std::max(pitch, a[0] - a[1] * (b[0] - a[0]) / (b[1] - a[1]));
    }
  return pitch;
}

StripLayout singleRow(const Nest& nest, double angle) {
  StripLayout layout;
  layout.angle = angle;
  layout.pitch = pitchOf(turnedBack(nest.same, angle));
  const Range y = rangeOf(turnedBack(nest.blank, angle), 1);
  layout.width = y.high - y.low + nest.web;
  layout.utilisation = nest.area / (layout.pitch * layout.width);
  return layout;
}

// The height nearest to `level` at which the second row may stand at `x`: outside the no-fit polygons and all their
// copies shifted by whole pitches.
double freeHeight(const std::vector<Points>& noFit, double pitch, double x, double level) {
  struct Cut {
    std::size_t path;
    double copy, y;
    bool operator<(const Cut& other) const {
      return std::tie(path, copy, y) < std::tie(other.path, other.copy, other.y);
    }
  };
  std::vector<Cut> cuts;  // of the line at x with the borders
  for (std::size_t n = 0; n < noFit.size(); ++n)
    for (std::size_t k = 0, corners = noFit[n].size(); k < corners; ++k) {
      PlanePoint a = noFit[n][k], b = noFit[n][(k + 1) % corners];
      if (a[0] > b[0]) std::swap(a, b);
      // Copies in which the line runs through the edge, its left end counted in and its right end out: so a corner counts
      // once, and since both its edges compare it with the same number, rounding does not change that.
      for (double copy = std::floor((x - b[0]) / pitch); a[0] <= x - copy * pitch; copy += 1.0)
        if (const double at = x - copy * pitch; at < b[0])
          cuts.push_back({n, copy, a[1] + (at - a[0]) / (b[0] - a[0]) * (b[1] - a[1])});
    }
  std::sort(cuts.begin(), cuts.end());
  std::vector<std::pair<double, double>> inside;  // pairs of cuts with one border
  for (std::size_t k = 0; k + 1 < cuts.size(); k += 2) inside.push_back({cuts[k].y, cuts[k + 1].y});
  std::sort(inside.begin(), inside.end());
  double below = level, above = level;  // nearest free heights to both sides
  for (const auto& [low, high] : inside)
    if (low < above && high > above) above = high;
  std::sort(inside.begin(), inside.end(), [](const auto& a, const auto& b) { return a.second > b.second; });
  for (const auto& [low, high] : inside)
    if (low < below && high > below) below = low;
  return above - level <= level - below ? above : below;
}

// Two rows of the pitch: the second stands where both together are lowest. At the height `level` it would stand beside
// the first.
StripLayout twoRows(const Nest& nest, double angle, double pitch) {
  constexpr int columns = 96, rounds = 4, within = 6;
  const std::vector<Points> noFit = turnedBack(nest.turned, angle);
  const Range x = rangeOf(noFit, 0), y = rangeOf(turnedBack(nest.blank, angle), 1);
  const double level = y.low + y.high;
  PlanePoint place{x.low, std::numeric_limits<double>::infinity()};
  const auto tryColumn = [&](double at) {
    const double height = freeHeight(noFit, pitch, at, level);
    if (std::abs(height - level) < std::abs(place[1] - level)) place = {at, height};
  };
  double step = pitch / columns;
  for (int k = 0; k < columns; ++k) tryColumn(x.low + step * k);
  for (int round = 0; round < rounds; ++round) {
    const double around = place[0];
    for (int k = -within; k <= within; ++k) tryColumn(around + step * k / within);
    step /= within;
  }
  StripLayout layout;
  layout.rows = 2;
  layout.angle = angle;
  layout.pitch = pitch;
  const double middle = 0.5 * (x.low + x.high);
  layout.along = place[0] - pitch * std::round((place[0] - middle) / pitch);  // beside the first blank
  layout.across = place[1];
  layout.width = y.high - y.low + std::abs(place[1] - level) + nest.web;
  layout.utilisation = 2.0 * nest.area / (layout.pitch * layout.width);
  return layout;
}

double wrapped(double angle) {
  return angle - 180.0 * std::floor(angle / 180.0);
}

StripLayout bestSingle(const Nest& nest) {
  StripLayout best;
  const auto tryAngle = [&](double angle) {
    const StripLayout layout = singleRow(nest, wrapped(angle));
    if (layout.utilisation > best.utilisation) best = layout;
  };
  for (int k = 0; k < 180; ++k) tryAngle(k);
  const Path& blank = nest.blank[0];  // the strip is narrow where a side lies along it or across
  for (std::size_t k = 0; k < blank.size(); ++k) {
    const IntPoint &a = blank[k], &b = blank[(k + 1) % blank.size()];
    const double angle = std::atan2(static_cast<double>(b.Y - a.Y), static_cast<double>(b.X - a.X)) / degree;
    tryAngle(angle);
    tryAngle(angle + 90.0);
  }
  for (const double step : {0.1, 0.01}) {
    const double around = best.angle;
    for (int k = -10; k <= 10; ++k) tryAngle(around + step * k);
  }
  return best;
}

// begin: the best single row, where two rows may begin.
StripLayout bestPaired(const Nest& nest, const StripLayout& begin) {
  StripLayout best;
  double bestStretch = 1.0;
  const auto tryRows = [&](double angle, double stretch) {
    angle = wrapped(angle);
    const double pitch = stretch * pitchOf(turnedBack(nest.same, angle));
    const StripLayout layout = twoRows(nest, angle, pitch);
    if (layout.utilisation > best.utilisation) best = layout, bestStretch = stretch;
  };
  for (int k = 0; k < 36; ++k)
    for (int j = 0; j <= 10; ++j) tryRows(begin.angle + 5.0 * k, 1.0 + 0.1 * j);
  for (const double step : {1.0, 0.2, 0.04}) {
    const double angle = best.angle, stretch = bestStretch;
    for (int k = -4; k <= 4; ++k)
      for (int j = -4; j <= 4; ++j) tryRows(angle + step * k, std::max(1.0, stretch + 0.02 * step * j));
  }
  return best;
}

// The outer borders of the sum. Holes would be places where one blank lies in a hollow of the other that it cannot leave;
// most are none at all but places where both borders coincide, as for a disc on itself.
Paths noFitPolygon(const Path& blank, const Path& other) {
  Paths sum, outer;
  ClipperLib::MinkowskiSum(blank, other, sum, true);
  for (Path& path : sum)
    if (ClipperLib::Orientation(path)) outer.push_back(std::move(path));
  return outer;
}

}  // namespace

StripFigures nestOnStrip(const std::vector<PlanePoint>& outline, double area, double web) {
  Nest nest{{hullAround(outline, 0.5 * web)}, {}, {}, area, web};
  const Path &blank = nest.blank[0], reversed = negative(blank);
  nest.same = noFitPolygon(blank, reversed);
  nest.turned = noFitPolygon(blank, blank);
  StripFigures figures;
  figures.single = bestSingle(nest);
  figures.paired = bestPaired(nest, figures.single);
  return figures;
}

}  // namespace host
