// The seams between the pieces of a mesh; see the header.
//
// The border nodes are sorted along a direction. A node is compared with those behind it as long as they are nearer
// along it than the nearest pair so far (M. I. Shamos, D. Hoey, Closest-point problems, 1975, with a sweep for
// their division). The direction has no ratio of small integers, so that few nodes of a regular mesh lie level.
#include "mesh/seam.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

#include "mesh/edges.hpp"

namespace host {

namespace {

constexpr double weldedBelow = 0.1;  // of the shortest border edge: what is nearer was meant to be one node

constexpr double sweep[3] = {0.75487766624669, 0.56984029099805, 0.32471795724475};  // at most of length 1

struct BorderNode {
  double along;  // place on the sweep
  std::int32_t node, piece;
};

const double* pointOf(const std::vector<double>& points, std::int32_t node) {
  return &points[3 * static_cast<std::size_t>(node) - 3];
}

double distance(const std::vector<double>& points, std::int32_t a, std::int32_t b) {
  const double *p = pointOf(points, a), *q = pointOf(points, b);
  return std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]);
}

// The nodes of the edges that one triangle has alone, each once, with their piece. seam: out, the shortest of the
// edges, and a node that two pieces share.
std::vector<BorderNode> borderNodes(const std::vector<double>& points,
                                    const std::vector<std::int32_t>& corners,
                                    const std::vector<std::int32_t>& piece, Seam& seam) {
  std::vector<std::int32_t> pieceOfNode(points.size() / 3, -1);
  seam.shortestBorder = std::numeric_limits<double>::infinity();
  const std::vector<Side> sides = sortedSides(corners);
  forEachEdge(sides, [&](const Side* first, const Side* last) {
    if (last - first != 1) return;
    const double length = distance(points, first->low, first->high);
    if (length > 0.0) seam.shortestBorder = std::min(seam.shortestBorder, length);
    for (const std::int32_t node : {first->low, first->high}) {
      std::int32_t& of = pieceOfNode[static_cast<std::size_t>(node) - 1];
      const std::int32_t own = piece[static_cast<std::size_t>(first->element) - 1];
      if (of < 0) of = own;
      if (of != own && seam.node == 0) seam.node = seam.other = node;
    }
  });
  std::vector<BorderNode> nodes;
  for (std::size_t n = 0; n < pieceOfNode.size(); ++n)
    if (pieceOfNode[n] >= 0) nodes.push_back({0.0, static_cast<std::int32_t>(n) + 1, pieceOfNode[n]});
  return nodes;
}

double alongSweep(const double* point) {
  return sweep[0] * point[0] + sweep[1] * point[1] + sweep[2] * point[2];
}

}  // namespace

Seam nearestSeam(const std::vector<double>& points, const std::vector<std::int32_t>& corners,
                 const std::vector<std::int32_t>& piece) {
  Seam seam;
  std::vector<BorderNode> nodes = borderNodes(points, corners, piece, seam);
  if (seam.node != 0) return seam;
  for (BorderNode& node : nodes) node.along = alongSweep(pointOf(points, node.node));
  std::sort(nodes.begin(), nodes.end(), [](const BorderNode& a, const BorderNode& b) {
    return std::tie(a.along, a.node) < std::tie(b.along, b.node);
  });
  seam.gap = std::numeric_limits<double>::infinity();
  for (std::size_t i = 0; i < nodes.size(); ++i)
    for (std::size_t k = i + 1; k < nodes.size() && nodes[k].along - nodes[i].along < seam.gap; ++k) {
      if (nodes[k].piece == nodes[i].piece) continue;
      const double gap = distance(points, nodes[i].node, nodes[k].node);
      if (!(gap < seam.gap)) continue;
      seam.gap = gap;
      seam.node = std::min(nodes[i].node, nodes[k].node);
      seam.other = std::max(nodes[i].node, nodes[k].node);
    }
  return seam;
}

bool isUnwelded(const Seam& seam) {
  return seam.node != seam.other && std::isfinite(seam.shortestBorder) &&
         seam.gap < weldedBelow * seam.shortestBorder;
}

}  // namespace host
