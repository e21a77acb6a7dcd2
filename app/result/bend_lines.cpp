// Where the part is bent, as lines on its blank; see the header.
#include "result/bend_lines.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <numeric>

#include "result/bend_zones.hpp"
#include "result/line_on_sheet.hpp"
#include "result/sheet_bending.hpp"
#include "system/vector.hpp"

namespace host {

namespace {

constexpr double degree = std::numbers::pi / 180.0;
const double onBlank = std::sin(3.0 * degree);        // largest spread of rulings there, root mean square
const double onPart = std::sin(2.5 * degree);         // of a crease's edges
const double goingOnCosine = std::cos(5.0 * degree);  // from edge to edge of a crease
constexpr double creaseReach = 0.1;                   // of its edges' mean length

using Lines = std::vector<std::array<PlanePoint, 2>>;

// The part and its blank by corners and nodes.
struct Sheet {
  const std::vector<std::int32_t>& corners;
  const std::vector<double>&part, &blank;
  const std::vector<OutlineLoop>& loops;

  Vector onPart(std::int32_t node) const {
    const auto n = 3 * static_cast<std::size_t>(node) - 3;
    return {part[n], part[n + 1], part[n + 2]};
  }
  PlanePoint onBlank(std::int32_t node) const {
    const auto n = 2 * static_cast<std::size_t>(node) - 2;
    return {blank[n], blank[n + 1]};
  }
  PlanePoint middle(const InnerEdge& edge) const {
    const PlanePoint a = onBlank(edge.nodes[0]), b = onBlank(edge.nodes[1]);
    return {0.5 * (a[0] + b[0]), 0.5 * (a[1] + b[1])};
  }
};

double length(const PlanePoint& a) {
  return std::hypot(a[0], a[1]);
}

// Vectors of one sense and their weights: their mean direction and how far they spread about it.
class Directions {
 public:
  void add(const PlanePoint& vector, double weight) {
    const double l = length(vector);
    if (!(l > 0.0) || !(weight > 0.0)) return;
    const double turned = sum_[0] * vector[0] + sum_[1] * vector[1] < 0.0 ? -weight / l : weight / l;
    members_.push_back({turned * vector[0], turned * vector[1]});
    for (std::size_t k = 0; k < 2; ++k) sum_[k] += members_.back()[k];
  }
  bool any() const { return length(sum_) > 0.0; }
  PlanePoint mean() const { return {sum_[0] / length(sum_), sum_[1] / length(sum_)}; }
  double spread() const {  // root mean square of the sines
    double squares = 0.0, weights = 0.0;
    for (const PlanePoint& member : members_) {
      const double across = member[0] * mean()[1] - member[1] * mean()[0], weight = length(member);
      squares += across * across / weight;
      weights += weight;
    }
    return std::sqrt(squares / weights);
  }

 private:
  std::vector<PlanePoint> members_;
  PlanePoint sum_{};
};

// The line of that direction with the least weighed squares of distances from the edges' middles.
PlaneLine lineThrough(const Sheet& sheet, const SheetBending& bending, const std::vector<std::size_t>& edges,
                      const PlanePoint& direction) {
  PlanePoint sum{};
  double weights = 0.0;
  for (const std::size_t e : edges) {
    const InnerEdge& edge = bending.edges[e];
    const double weight =
        std::abs(edge.angle) * norm(minus(sheet.onPart(edge.nodes[1]), sheet.onPart(edge.nodes[0])));
    const PlanePoint middle = sheet.middle(edge);
    sum = {sum[0] + weight * middle[0], sum[1] + weight * middle[1]};
    weights += weight;
  }
  return {{sum[0] / weights, sum[1] / weights}, direction};
}

// The part's direction `axis`, seen from above the triangle, as it lies on the blank; 0 where the triangle has no area.
PlanePoint carriedOver(const Sheet& sheet, std::size_t triangle, const Vector& axis, double& area) {
  const std::int32_t* node = &sheet.corners[3 * triangle];
  const Vector u = minus(sheet.onPart(node[1]), sheet.onPart(node[0]));
  const Vector v = minus(sheet.onPart(node[2]), sheet.onPart(node[0]));
  const double uu = dot(u, u), uv = dot(u, v), vv = dot(v, v), det = uu * vv - uv * uv;
  area = 0.5 * std::sqrt(std::max(det, 0.0));
  if (!(det > 0.0)) return {};
  const double au = dot(axis, u), av = dot(axis, v);
  const double p = (vv * au - uv * av) / det, q = (uu * av - uv * au) / det;  // axis = p u + q v in the plane
  const PlanePoint a = sheet.onBlank(node[0]), b = sheet.onBlank(node[1]), c = sheet.onBlank(node[2]);
  return {p * (b[0] - a[0]) + q * (c[0] - a[0]), p * (b[1] - a[1]) + q * (c[1] - a[1])};
}

// Where the line passes through a triangle: from, to; empty where it does not.
std::vector<double> throughTriangle(const Sheet& sheet, const PlaneLine& line, std::size_t triangle) {
  OutlineLoop loop;
  for (std::size_t k = 0; k < 3; ++k) loop.points.push_back(sheet.onBlank(sheet.corners[3 * triangle + k]));
  return crossings(line, {loop});
}

// The lines of a bend; none: it is not straight on the blank.
Lines linesOf(const Sheet& sheet, const SheetBending& bending, const StraightBend& bend) {
  Directions directions;
  double reach = 0.0;
  for (const std::size_t t : bend.triangles) {
    double area = 0.0;
    const PlanePoint carried = carriedOver(sheet, t, bend.axis, area);
    directions.add(carried, area);
    for (std::size_t k = 0; k < 3; ++k) {
      const PlanePoint a = sheet.onBlank(sheet.corners[3 * t + k]),
                       b = sheet.onBlank(sheet.corners[3 * t + (k + 1) % 3]);
      reach = std::max(reach, length({b[0] - a[0], b[1] - a[1]}));
    }
  }
  if (!directions.any() || bend.edges.empty() || directions.spread() > onBlank) return {};
  const PlaneLine line = lineThrough(sheet, bending, bend.edges, directions.mean());
  std::vector<std::array<double, 2>> covered;
  for (const std::size_t t : bend.triangles)
    if (const std::vector<double> places = throughTriangle(sheet, line, t); places.size() == 2)
      covered.push_back({places[0], places[1]});
  return coveredPieces(line, sheet.loops, covered, reach);
}

// Edges of creases in groups that go on from node to node in about one direction, each group ascending.
std::vector<std::vector<std::size_t>> creaseGroups(const Sheet& sheet, const SheetBending& bending) {
  std::vector<std::size_t> parent(bending.edges.size());
  std::iota(parent.begin(), parent.end(), std::size_t{0});
  const auto root = [&](std::size_t e) {
    while (parent[e] != e) e = parent[e] = parent[parent[e]];
    return e;
  };
  std::vector<std::vector<std::size_t>> at(sheet.part.size() / 3 + 1);  // creases at each node
  for (std::size_t e = 0; e < bending.edges.size(); ++e) {
    if (!bending.edges[e].crease) continue;
    const auto directionOf = [&](std::size_t edge) {
      const auto& nodes = bending.edges[edge].nodes;
      return unit(minus(sheet.onPart(nodes[1]), sheet.onPart(nodes[0])));
    };
    for (const std::int32_t node : bending.edges[e].nodes) {
      for (const std::size_t other : at[static_cast<std::size_t>(node)]) {
        if (std::abs(dot(directionOf(e), directionOf(other))) < goingOnCosine) continue;
        const std::size_t a = root(e), b = root(other);
        parent[std::max(a, b)] = std::min(a, b);
      }
      at[static_cast<std::size_t>(node)].push_back(e);
    }
  }
  std::vector<std::vector<std::size_t>> members(bending.edges.size()), groups;
  for (std::size_t e = 0; e < bending.edges.size(); ++e)
    if (bending.edges[e].crease) members[root(e)].push_back(e);
  for (std::vector<std::size_t>& group : members)
    if (!group.empty()) groups.push_back(std::move(group));
  return groups;
}

// The lines of a crease; none: it is not straight.
Lines linesOf(const Sheet& sheet, const SheetBending& bending, const std::vector<std::size_t>& crease) {
  Directions directions;
  Vector sum{};
  std::vector<Vector> edges;
  double total = 0.0;
  for (const std::size_t e : crease) {
    const auto& nodes = bending.edges[e].nodes;
    const PlanePoint a = sheet.onBlank(nodes[0]), b = sheet.onBlank(nodes[1]);
    directions.add({b[0] - a[0], b[1] - a[1]}, length({b[0] - a[0], b[1] - a[1]}));
    edges.push_back(minus(sheet.onPart(nodes[1]), sheet.onPart(nodes[0])));
    const double sense = dot(sum, edges.back()) < 0.0 ? -1.0 : 1.0;
    for (std::size_t k = 0; k < 3; ++k) sum[k] += sense * edges.back()[k];
    total += length({b[0] - a[0], b[1] - a[1]});
  }
  double squares = 0.0, lengths = 0.0;
  for (const Vector& edge : edges) {
    const double l = norm(edge), across = norm(cross(edge, unit(sum)));
    squares += l > 0.0 ? across * across / l : 0.0;
    lengths += l;
  }
  if (!directions.any() || directions.spread() > onBlank || std::sqrt(squares / lengths) > onPart) return {};
  const PlaneLine line = lineThrough(sheet, bending, crease, directions.mean());
  std::vector<std::array<double, 2>> covered;
  for (const std::size_t e : crease) {
    const double a = line.along(sheet.onBlank(bending.edges[e].nodes[0]));
    const double b = line.along(sheet.onBlank(bending.edges[e].nodes[1]));
    covered.push_back({std::min(a, b), std::max(a, b)});
  }
  return coveredPieces(line, sheet.loops, covered, creaseReach * total / static_cast<double>(crease.size()));
}

}  // namespace

std::vector<std::array<PlanePoint, 2>> bendLines(const std::vector<std::int32_t>& corners,
                                                 const std::vector<double>& part,
                                                 const std::vector<double>& blank,
                                                 const std::vector<OutlineLoop>& loops, double radius) {
  const Sheet sheet{corners, part, blank, loops};
  const SheetBending bending = bendingOf(corners, part, radius);
  std::vector<bool> straight(bending.bent.size()), drawn(bending.edges.size());
  Lines lines;
  for (const StraightBend& bend : straightBends(bending, corners, part)) {
    const Lines found = linesOf(sheet, bending, bend);
    lines.insert(lines.end(), found.begin(), found.end());
    if (found.empty()) continue;
    for (const std::size_t t : bend.triangles) straight[t] = true;
  }
  for (const std::vector<std::size_t>& crease : creaseGroups(sheet, bending)) {
    const Lines found = linesOf(sheet, bending, crease);
    lines.insert(lines.end(), found.begin(), found.end());
    for (const std::size_t e : crease) drawn[e] = !found.empty();
  }
  for (std::size_t e = 0; e < bending.edges.size(); ++e) {
    const InnerEdge& edge = bending.edges[e];
    const auto [s, t] = edge.triangles;
    const bool border = bending.bent[s] != bending.bent[t] && !straight[s] && !straight[t];
    if (edge.crease ? !drawn[e] : border)
      lines.push_back({sheet.onBlank(edge.nodes[0]), sheet.onBlank(edge.nodes[1])});
  }
  return lines;
}

}  // namespace host
