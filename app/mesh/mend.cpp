// Mends what a mesh commonly has wrong; see the header.
#include "mesh/mend.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <unordered_map>
#include <utility>

#include "mesh/edges.hpp"
#include "mesh/submesh.hpp"
#include "mesh/triangle_shape.hpp"
#include "system/text.hpp"
#include "system/vector.hpp"

namespace host {

namespace {

constexpr double seamRatio = 1e-3;        // of the edges around: nodes closer than that are meant to be one
constexpr double coincidentRatio = 1e-6;  // of the median edge: tolerance proposed where they coincide
constexpr double needleAngle = 5.0;       // degrees
constexpr double noAngle = 1e-7;          // degrees; a triangle without area is refused, not meshed anew
constexpr std::size_t mostInCell = 64;    // of the search grid; more nodes at one place are noise

double distanceOf(const Mesh& mesh, std::size_t a, std::size_t b) {
  return std::hypot(mesh.points[3 * a] - mesh.points[3 * b], mesh.points[3 * a + 1] - mesh.points[3 * b + 1],
                    mesh.points[3 * a + 2] - mesh.points[3 * b + 2]);
}

// --- border ------------------------------------------------------------------------------------------------

struct Border {
  std::vector<std::size_t> nodes;  // from 0, ascending
  std::vector<double> edge;        // per node of the mesh: the shortest of its border edges; 0 inside
  double longest = 0.0;            // of edge
};

Border borderOf(const Mesh& mesh) {
  Border border;
  border.edge.assign(mesh.nodes(), 0.0);
  forEachEdge(sidesOf(mesh)->sides, [&](const Side* first, const Side* last) {
    if (last - first != 1 || first->low == first->high) return;
    const std::size_t a = static_cast<std::size_t>(first->low) - 1,
                      b = static_cast<std::size_t>(first->high) - 1;
    const double length = distanceOf(mesh, a, b);
    for (const std::size_t node : {a, b})
      border.edge[node] = border.edge[node] > 0.0 ? std::min(border.edge[node], length) : length;
  });
  for (std::size_t node = 0; node < border.edge.size(); ++node) {
    if (border.edge[node] > 0.0) border.nodes.push_back(node);
    border.longest = std::max(border.longest, border.edge[node]);
  }
  return border;
}

// Finds nodes by place: cells of the width of the search.
class CellGrid {
 public:
  CellGrid(const Mesh& mesh, double width) : mesh_(mesh), width_(width) {}
  void add(std::size_t node) {
    std::vector<std::size_t>& cell = cells_[cellOf(node, 0, 0, 0)];
    if (cell.size() < mostInCell) cell.push_back(node);
  }
  // Calls visit(other) for the nodes in the cell of `node` and those around it.
  template <class Visit>
  void around(std::size_t node, Visit visit) const {
    for (int dx = -1; dx <= 1; ++dx)
      for (int dy = -1; dy <= 1; ++dy)
        for (int dz = -1; dz <= 1; ++dz) {
          const auto cell = cells_.find(cellOf(node, dx, dy, dz));
          if (cell == cells_.end()) continue;
          for (const std::size_t other : cell->second) visit(other);
        }
  }

 private:
  using Cell = std::array<double, 3>;
  struct CellHash {
    std::size_t operator()(const Cell& cell) const {
      std::uint64_t hash = 0;
      for (const double c : cell) {
        hash ^= std::bit_cast<std::uint64_t>(c + 0.0);  // + 0.0 turns -0 into 0
        hash *= 0x9E3779B97F4A7C15u;                    // 2^64 / golden ratio: spreads the bits
        hash ^= hash >> 32;
      }
      return static_cast<std::size_t>(hash);
    }
  };
  Cell cellOf(std::size_t node, int dx, int dy, int dz) const {
    return {std::floor(mesh_.points[3 * node] / width_) + dx,
            std::floor(mesh_.points[3 * node + 1] / width_) + dy,
            std::floor(mesh_.points[3 * node + 2] / width_) + dz};
  }
  const Mesh& mesh_;
  double width_;
  std::unordered_map<Cell, std::vector<std::size_t>, CellHash> cells_;
};

// --- duplicates and welds ----------------------------------------------------------------------------------

void leaveOut(const std::vector<std::size_t>& triangles, Mesh& mesh) {
  std::vector<bool> keep(mesh.elements(), true);
  for (const std::size_t e : triangles) keep[e] = false;
  keepTriangles(keep, mesh);
}

// The triangles (from 0, ascending) with the three nodes of an earlier one. Such triangles share the edge between the
// lower two.
std::vector<std::size_t> duplicatesIn(const Mesh& mesh) {
  std::vector<std::size_t> duplicates;
  std::vector<std::pair<std::int64_t, std::int32_t>> highest;  // of a triangle at the edge, and its number
  forEachEdge(sidesOf(mesh)->sides, [&](const Side* first, const Side* last) {
    if (last - first < 2) return;
    highest.clear();
    for (const Side* side = first; side != last; ++side) {
      const std::int64_t* corner = &mesh.corners[3 * static_cast<std::size_t>(side->element) - 3];
      const std::int64_t third = corner[0] + corner[1] + corner[2] - side->low - side->high;
      const bool again = !highest.empty() && highest.back().second == side->element;  // it names a node twice
      if (third >= side->high && !again) highest.push_back({third, side->element});
    }
    std::sort(highest.begin(), highest.end());
    for (std::size_t k = 1; k < highest.size(); ++k)
      if (highest[k].first == highest[k - 1].first)
        duplicates.push_back(static_cast<std::size_t>(highest[k].second) - 1);
  });
  std::sort(duplicates.begin(), duplicates.end());
  return duplicates;
}

void leaveOutDuplicates(Mesh& mesh) {
  const std::vector<std::size_t> duplicates = duplicatesIn(mesh);
  if (duplicates.empty()) return;
  mesh.remarks.push_back("left out " + counted(static_cast<std::int64_t>(duplicates.size()), "triangle") +
                         " with the three nodes of another (" + firstElements(mesh, duplicates) + ")");
  leaveOut(duplicates, mesh);
}

void weld(double tolerance, Mesh& mesh) {
  const Border border = borderOf(mesh);
  CellGrid grid(mesh, tolerance);
  std::vector<std::size_t> becomes(mesh.nodes());
  for (std::size_t n = 0; n < becomes.size(); ++n) becomes[n] = n;
  std::int64_t welded = 0;
  for (const std::size_t node : border.nodes) {
    std::size_t first = node;
    grid.around(node, [&](std::size_t other) {
      if (distanceOf(mesh, node, other) <= tolerance) first = std::min(first, other);
    });
    if (first == node)
      grid.add(node);  // only those that stay are found: a chain of close nodes does not become one
    else
      ++welded;
    becomes[node] = first;
  }
  if (welded == 0) {
    mesh.remarks.push_back("--weld " + decimal(tolerance) + ": no border nodes lie that close together");
    return;
  }
  std::vector<std::size_t> collapsed;
  for (std::size_t e = 0; e < mesh.elements(); ++e) {
    std::int64_t* corner = &mesh.corners[3 * e];
    for (int k = 0; k < 3; ++k)
      corner[k] = static_cast<std::int64_t>(becomes[static_cast<std::size_t>(corner[k]) - 1]) + 1;
    if (corner[0] == corner[1] || corner[1] == corner[2] || corner[2] == corner[0]) collapsed.push_back(e);
  }
  mesh.remarks.push_back(
      "welded " + counted(welded, "node") + " of the border to others within " + decimal(tolerance) +
      (collapsed.empty() ? std::string()
                         : "; left out " + counted(static_cast<std::int64_t>(collapsed.size()), "triangle") +
                               " that collapsed by it (" + firstElements(mesh, collapsed) + ")"));
  leaveOut(collapsed, mesh);
}

// --- proposals ---------------------------------------------------------------------------------------------

double medianEdge(const Mesh& mesh) {
  std::vector<double> lengths;
  forEachEdge(sidesOf(mesh)->sides, [&](const Side* first, const Side*) {
    lengths.push_back(distanceOf(mesh, static_cast<std::size_t>(first->low) - 1,
                                 static_cast<std::size_t>(first->high) - 1));
  });
  const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
  std::nth_element(lengths.begin(), middle, lengths.end());
  return *middle;
}

// The next number above `value` (> 0) with one digit, as people write tolerances.
std::string roundedUp(double value) {
  const double power = std::pow(10.0, std::floor(std::log10(value)));
  return decimal(std::stod(decimal(std::ceil(value / power)) + "e" + decimal(std::log10(power))));
}

// Three digits are enough for the eye.
std::string shortText(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3g", value);
  return text;
}

void proposeWeld(const Mesh& mesh, std::vector<std::string>& remarks) {
  const Border border = borderOf(mesh);
  if (border.nodes.empty()) return;
  CellGrid grid(mesh, seamRatio * border.longest);
  std::int64_t pairs = 0;
  double widest = 0.0;
  std::array<std::size_t, 2> firstPair{};
  for (const std::size_t node : border.nodes) {
    bool close = false;
    grid.around(node, [&](std::size_t other) {
      const double gap = distanceOf(mesh, node, other);
      if (close || gap > seamRatio * std::min(border.edge[node], border.edge[other])) return;
      close = true;
      if (pairs++ == 0) firstPair = {other, node};
      widest = std::max(widest, gap);
    });
    grid.add(node);
  }
  if (pairs == 0) return;
  const double tolerance = std::max(widest, coincidentRatio * medianEdge(mesh));
  remarks.push_back(
      counted(pairs, "pair") + " of border nodes lie closer together than a thousandth of their edges " +
      "(first nodes " + nodeNumber(mesh, firstPair[0]) + " and " + nodeNumber(mesh, firstPair[1]) + ", " +
      shortText(distanceOf(mesh, firstPair[0], firstPair[1])) + " apart); --weld " + roundedUp(tolerance) +
      " joins such seams");
}

// Of an equilateral triangle with the mean area.
double meanEdge(const Mesh& mesh) {
  double sum = 0.0;
  for (std::size_t e = 0; e < mesh.elements(); ++e) {
    const auto node = [&](std::size_t c) { return static_cast<std::size_t>(mesh.corners[3 * e + c]) - 1; };
    const double a = distanceOf(mesh, node(0), node(1)), b = distanceOf(mesh, node(1), node(2)),
                 c = distanceOf(mesh, node(2), node(0)), s = (a + b + c) / 2.0;
    sum += std::sqrt(std::max(s * (s - a) * (s - b) * (s - c), 0.0));
  }
  return std::sqrt(sum / static_cast<double>(mesh.elements()) * 4.0 / std::sqrt(3.0));
}

// Whether no corner of the triangle can be a needle's, by an estimate that is safe and quick: with the longest side L
// twice the area is at most L^2 times the sine of the smallest angle.
bool isBlunt(const Mesh& mesh, std::size_t element) {
  static const double least = std::sin((needleAngle + 0.1) * std::acos(-1.0) / 180.0);
  const Vector a = cornerOf(mesh, element, 0), b = minus(cornerOf(mesh, element, 1), a),
               c = minus(cornerOf(mesh, element, 2), a), d = minus(c, b), n = cross(b, c);
  const double longest = std::max({dot(b, b), dot(c, c), dot(d, d)});
  return dot(n, n) > least * least * longest * longest;
}

void proposeRemesh(const Mesh& mesh, std::vector<std::string>& remarks) {
  const std::vector<std::size_t> needles = needlesOf(mesh);
  if (needles.empty()) return;
  const double size = meanEdge(mesh);
  remarks.push_back(counted(static_cast<std::int64_t>(needles.size()), "triangle") +
                    (needles.size() == 1 ? " has" : " have") + " a corner below " + decimal(needleAngle) +
                    " degrees (" + firstElements(mesh, needles) + ")" +
                    (size > 0.0 ? "; --remesh " + roundedUp(size) + " meshes the part anew" : std::string()));
}

}  // namespace

double smallestAngle(const Mesh& mesh, std::size_t element) {
  double smallest = 180.0;
  for (std::size_t k = 0; k < 3; ++k) {
    const auto node = [&](std::size_t c) {
      return static_cast<std::size_t>(mesh.corners[3 * element + c % 3]) - 1;
    };
    const double a = distanceOf(mesh, node(k), node(k + 1)), b = distanceOf(mesh, node(k), node(k + 2)),
                 c = distanceOf(mesh, node(k + 1), node(k + 2));
    // Kahan 2000: the angle between a and b opposite c, accurate for needles; sides in any order
    const double longer = std::max(a, b), shorter = std::min(a, b);
    const double height = shorter >= c ? c - (longer - shorter) : shorter - (longer - c);
    const double above = ((longer - shorter) + c) * std::max(height, 0.0);
    const double below = (longer + (shorter + c)) * ((longer - c) + shorter);
    smallest = std::min(smallest, 2.0 * std::atan2(std::sqrt(above), std::sqrt(std::max(below, 0.0))) *
                                      180.0 / std::acos(-1.0));
  }
  return smallest;
}

std::vector<std::size_t> needlesOf(const Mesh& mesh) {
  std::vector<std::size_t> needles;
  for (std::size_t e = 0; e < mesh.elements(); ++e)
    if (isBlunt(mesh, e))
      continue;
    else if (const double angle = smallestAngle(mesh, e); angle < needleAngle && angle > noAngle)
      needles.push_back(e);
  return needles;
}

void mendMesh(const ReadOptions& options, Mesh& mesh) {
  leaveOutDuplicates(mesh);
  if (options.weld <= 0.0) return;
  weld(options.weld, mesh);
  leaveOutDuplicates(mesh);
}

void proposeMending(const ReadOptions& options, Mesh& mesh) {
  std::vector<std::string> remarks;
  if (options.weld <= 0.0) proposeWeld(mesh, remarks);
  if (options.remesh <= 0.0) proposeRemesh(mesh, remarks);
  mesh.remarks.insert(mesh.remarks.end(), remarks.begin(), remarks.end());
}

}  // namespace host
