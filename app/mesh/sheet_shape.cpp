// What the shape of a sheet tells before it is run; see the header.
#include "mesh/sheet_shape.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "mesh/edges.hpp"
#include "mesh/part_geometry.hpp"
#include "system/vector.hpp"

namespace host {

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr double planeTolerance = 1e-6;  // of the part's size, as for --hold
constexpr double shortestEdge = 0.05;    // of the part's size: a shorter edge in a plane is chance
constexpr double curvedShare = 0.01;  // of its length that the edge leaves its chord by, to be called curved
constexpr double mostOff = 8.0;       // degrees: a facet beside the plane leans by half its turn over a bend
constexpr double shareThatHolds = 0.95;  // of the length; a corner of the outline may stand askew

struct PlaneEdge {
  double length;
  double off;  // degrees off the right angle
};

Vector turned(const Part& part, const Side& side) {
  return unit(areaVector(part, side.element));
}

// The largest distance of the points from the line through the two that lie farthest apart, seen in the plane.
double bowOf(const std::vector<std::array<double, 2>>& points) {
  // From any point the farthest one is an end of a straight row, and the farthest from that the other.
  const auto farthest = [&](const std::array<double, 2>& from) {
    return *std::max_element(points.begin(), points.end(), [&](const auto& a, const auto& b) {
      return std::hypot(a[0] - from[0], a[1] - from[1]) < std::hypot(b[0] - from[0], b[1] - from[1]);
    });
  };
  const auto a = farthest(points.front()), b = farthest(a);
  const double length = std::hypot(b[0] - a[0], b[1] - a[1]);
  double bow = 0.0;
  for (const auto& p : points)
    bow = std::max(bow, std::fabs((b[0] - a[0]) * (p[1] - a[1]) - (b[1] - a[1]) * (p[0] - a[0])) /
                            std::max(length, 1e-300));
  return bow;
}

// axis: 0 or 1. place: of the plane across it.
bool mirrorEdgeAt(const Part& part, const std::vector<Side>& border, std::size_t axis, double place,
                  MirrorEdge& found) {
  const auto onPlane = [&](std::int32_t node) {
    return std::fabs(pointOf(part, node)[axis] - place) <= planeTolerance * part.size;
  };
  std::vector<PlaneEdge> edges;
  std::vector<std::array<double, 2>> points;
  double length = 0.0;
  for (const Side& side : border) {
    if (!onPlane(side.low) || !onPlane(side.high)) continue;
    const Vector a = pointOf(part, side.low), b = pointOf(part, side.high);
    const double sine = std::min(1.0, std::fabs(turned(part, side)[axis]));
    edges.push_back({norm(minus(b, a)), std::asin(sine) * 180.0 / pi});
    length += edges.back().length;
    for (const Vector& p : {a, b}) points.push_back({p[1 - axis], p[2]});
  }
  if (length < shortestEdge * part.size || bowOf(points) < curvedShare * length) return false;
  std::sort(edges.begin(), edges.end(), [](const PlaneEdge& a, const PlaneEdge& b) { return a.off < b.off; });
  double held = 0.0, off = 0.0;
  for (const PlaneEdge& edge : edges) {
    if (held >= shareThatHolds * length) break;
    held += edge.length;
    off = edge.off;
  }
  found = {axis == 0 ? 'x' : 'y', place, length, off};
  return off <= mostOff;
}

}  // namespace

std::vector<std::int32_t> foldedElements(const Part& part, double degrees) {
  const double cosine = std::cos(degrees * pi / 180.0);
  std::set<std::int32_t> folded;
  forEachEdge(sortedSides(part.corners), [&](const Side* first, const Side* last) {
    if (last - first != 2 || dot(turned(part, first[0]), turned(part, first[1])) >= cosine) return;
    folded.insert(first[0].element);
    folded.insert(first[1].element);
  });
  return {folded.begin(), folded.end()};
}

std::vector<MirrorEdge> mirrorEdges(const Part& part) {
  std::vector<Side> border;
  forEachEdge(sortedSides(part.corners), [&](const Side* first, const Side* last) {
    if (last - first == 1) border.push_back(*first);
  });
  std::vector<MirrorEdge> edges;
  for (const std::size_t axis : {std::size_t{0}, std::size_t{1}}) {
    double low = std::numeric_limits<double>::infinity(), high = -low;
    for (const Side& side : border)
      for (const std::int32_t node : {side.low, side.high}) {
        low = std::min(low, pointOf(part, node)[axis]);
        high = std::max(high, pointOf(part, node)[axis]);
      }
    for (const double place : {low, high})
      if (MirrorEdge found; mirrorEdgeAt(part, border, axis, place, found)) edges.push_back(found);
  }
  return edges;
}

}  // namespace host
