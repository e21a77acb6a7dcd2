// What a mesh consists of; see the header.
#include "mesh/mesh_census.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <numeric>
#include <tuple>

#include "mesh/edges.hpp"
#include "mesh/mend.hpp"
#include "mesh/pieces.hpp"
#include "mesh/triangle_shape.hpp"

namespace host {

namespace {

double distanceOf(const Mesh& mesh, std::int32_t a, std::int32_t b) {
  const double *p = &mesh.points[3 * static_cast<std::size_t>(a) - 3],
               *q = &mesh.points[3 * static_cast<std::size_t>(b) - 3];
  return std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]);
}

// Pieces numbered by their triangles, the most first.
void numberPieces(const std::vector<Side>& sides, MeshCensus& census) {
  census.piece = findPieces(sides);
  std::map<std::int32_t, std::int64_t> triangles;
  for (const std::int32_t p : census.piece) ++triangles[p];
  std::vector<std::pair<std::int64_t, std::int32_t>> order;  // negative count, first element
  for (const auto& [first, count] : triangles) order.push_back({-count, first});
  std::sort(order.begin(), order.end());
  std::map<std::int32_t, std::int32_t> number;
  for (const auto& [count, first] : order) number[first] = static_cast<std::int32_t>(number.size()) + 1;
  for (std::int32_t& p : census.piece) p = number[p];
  census.pieces = static_cast<std::int64_t>(order.size());
}

std::vector<std::size_t> sortedOnce(std::vector<std::size_t> triangles) {
  std::sort(triangles.begin(), triangles.end());
  triangles.erase(std::unique(triangles.begin(), triangles.end()), triangles.end());
  return triangles;
}

// Border, crowded and opposed edges with their triangles; the border edges are returned.
std::vector<Side> lookAtEdges(const std::vector<Side>& sides, MeshCensus& census) {
  std::vector<Side> border;
  const auto note = [](std::vector<std::size_t>& list, const Side* first, const Side* last) {
    for (const Side* side = first; side != last; ++side)
      list.push_back(static_cast<std::size_t>(side->element) - 1);
  };
  forEachEdge(sides, [&](const Side* first, const Side* last) {
    if (last - first == 1) {
      border.push_back(*first);
      note(census.border, first, last);
    } else if (last - first > 2) {
      ++census.crowdedEdges;
      note(census.crowded, first, last);
    } else if (first[0].rising == first[1].rising) {
      note(census.opposed, first, last);
    }
  });
  for (auto* list : {&census.border, &census.crowded, &census.opposed}) *list = sortedOnce(*list);
  return border;
}

void traceLoops(const Mesh& mesh, const std::vector<Side>& border, MeshCensus& census) {
  std::vector<std::int32_t> parent(mesh.nodes() + 1);
  std::iota(parent.begin(), parent.end(), 0);
  const auto root = [&](std::int32_t n) {
    while (parent[static_cast<std::size_t>(n)] != n) {
      auto& up = parent[static_cast<std::size_t>(n)];
      n = up = parent[static_cast<std::size_t>(up)];
    }
    return n;
  };
  for (const Side& side : border) {
    const std::int32_t a = root(side.low), b = root(side.high);
    parent[static_cast<std::size_t>(std::max(a, b))] = std::min(a, b);
  }
  std::map<std::int32_t, BorderLoop> loops;
  for (const Side& side : border) {
    BorderLoop& loop = loops[root(side.low)];
    loop.length += distanceOf(mesh, side.low, side.high);
    ++loop.edges;
    loop.firstNode = root(side.low);
  }
  for (const auto& [node, loop] : loops) census.loops.push_back(loop);
  std::stable_sort(census.loops.begin(), census.loops.end(),
                   [](const BorderLoop& a, const BorderLoop& b) { return a.length > b.length; });
}

void lookAtTriangles(const Mesh& mesh, MeshCensus& census) {
  for (int axis = 0; axis < 3; ++axis) {
    census.low[axis] = std::numeric_limits<double>::infinity();
    census.high[axis] = -census.low[axis];
  }
  for (std::size_t e = 0; e < mesh.elements(); ++e) {
    if (hasNoArea(cornerOf(mesh, e, 0), cornerOf(mesh, e, 1), cornerOf(mesh, e, 2)))
      census.arealess.push_back(e);
    if (const double angle = smallestAngle(mesh, e); angle < census.smallestAngle)
      census.smallestAngle = angle, census.sharpest = e;
    for (std::size_t k = 3 * e; k < 3 * e + 3; ++k)
      for (std::size_t axis = 0; axis < 3; ++axis) {
        const double x = mesh.points[3 * static_cast<std::size_t>(mesh.corners[k]) - 3 + axis];
        census.low[axis] = std::min(census.low[axis], x);
        census.high[axis] = std::max(census.high[axis], x);
      }
  }
  census.needles = needlesOf(mesh);
}

}  // namespace

MeshCensus censusOf(const Mesh& mesh) {
  MeshCensus census;
  const std::shared_ptr<const SortedSides> sorted = sidesOf(mesh);
  numberPieces(sorted->sides, census);
  traceLoops(mesh, lookAtEdges(sorted->sides, census), census);
  lookAtTriangles(mesh, census);
  return census;
}

}  // namespace host
