// From the skin to the neutral fibre; see the header.
//
// Along an edge of length c, with the end normals n1, n2 and the unit vector e, the surface turns by
// theta = (n2 - n1) . e, positive on the outside of a bend.
#include "mesh/fibre.hpp"

#include <algorithm>
#include <cmath>

#include "mesh/edges.hpp"
#include "system/vector.hpp"

namespace host {

namespace {

constexpr double leastTurn = 0.01;  // rad, root of the sum over a node's edges; below, the sheet is flat
constexpr int sweeps = 200;  // of the smoothing: a change of side spreads over about twice its root, 30 edges

struct Edge {
  std::size_t a, b;  // nodes from 0
};

std::vector<Edge> edgesOf(const Mesh& mesh) {
  const std::vector<std::int32_t> corners(mesh.corners.begin(), mesh.corners.end());
  std::vector<Edge> edges;
  forEachEdge(sortedSides(corners), [&](const Side* first, const Side*) {
    edges.push_back({static_cast<std::size_t>(first->low) - 1, static_cast<std::size_t>(first->high) - 1});
  });
  return edges;
}

struct Turn {
  double length, angle;  // file's unit; rad
};

Turn turnAlong(const Edge& edge, const std::vector<double>& points, const std::vector<double>& normals) {
  double square = 0.0, change = 0.0;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const double d = points[3 * edge.b + axis] - points[3 * edge.a + axis];
    square += d * d;
    change += d * (normals[3 * edge.b + axis] - normals[3 * edge.a + axis]);
  }
  const double length = std::sqrt(square);
  return {length, length > 0.0 ? change / length : 0.0};
}

using Neighbours = std::vector<std::vector<std::size_t>>;

// Gives each flat node the value of the nearest bend, counted in edges; of several the one reached first from
// the lowest node. Where there is no bend all stay 0.
void spreadFromBends(const Neighbours& neighbours, const std::vector<bool>& flat, std::vector<double>& side) {
  std::vector<std::size_t> reached;
  std::vector<bool> known(side.size());
  for (std::size_t node = 0; node < side.size(); ++node) {
    known[node] = !flat[node];
    if (known[node]) reached.push_back(node);
  }
  for (std::size_t next = 0; next < reached.size(); ++next)
    for (const std::size_t other : neighbours[reached[next]]) {
      if (known[other]) continue;
      known[other] = true;
      side[other] = side[reached[next]];
      reached.push_back(other);
    }
}

// Between bends of different sides the flat sheet passes over smoothly.
void smoothFlats(const Neighbours& neighbours, const std::vector<bool>& flat, std::vector<double>& side) {
  for (int sweep = 0; sweep < sweeps; ++sweep)
    for (std::size_t node = 0; node < side.size(); ++node) {
      if (!flat[node] || neighbours[node].empty()) continue;
      double sum = 0.0;
      for (const std::size_t other : neighbours[node]) sum += side[other];
      side[node] = sum / static_cast<double>(neighbours[node].size());
    }
}

// Per node 1 on the outside of a bend, -1 on the inside, between on saddles and in flat regions.
std::vector<double> sidesOfBends(const std::vector<Edge>& edges, const std::vector<double>& normals,
                                 const Mesh& mesh) {
  std::vector<double> side(mesh.nodes(), 0.0), weight(mesh.nodes(), 0.0);
  Neighbours neighbours(mesh.nodes());
  for (const Edge& edge : edges) {
    const double angle = turnAlong(edge, mesh.points, normals).angle;
    for (const std::size_t node : {edge.a, edge.b}) {
      side[node] += angle * std::fabs(angle);
      weight[node] += angle * angle;
    }
    neighbours[edge.a].push_back(edge.b);
    neighbours[edge.b].push_back(edge.a);
  }
  std::vector<bool> flat(mesh.nodes());
  for (std::size_t node = 0; node < side.size(); ++node) {
    flat[node] = weight[node] < leastTurn * leastTurn;
    side[node] = flat[node] ? 0.0 : side[node] / weight[node];
  }
  spreadFromBends(neighbours, flat, side);
  smoothFlats(neighbours, flat, side);
  return side;
}

void moveAlong(const std::vector<double>& normals, const std::vector<double>& distance, Mesh& mesh) {
  for (std::size_t k = 0; k < mesh.points.size(); ++k) mesh.points[k] += distance[k / 3] * normals[k];
}

// A chord of length c over an arc that turns by theta is short by c theta^2 / 24, and grows by delta theta
// when both ends move out by delta: delta = c theta / 24, over the edges of a node their mean weighed with
// theta^2.
std::vector<double> riseToArcs(const std::vector<Edge>& edges, const std::vector<double>& normals,
                               const Mesh& mesh) {
  std::vector<double> rise(mesh.nodes(), 0.0), weight(mesh.nodes(), 0.0);
  for (const Edge& edge : edges) {
    const auto [length, angle] = turnAlong(edge, mesh.points, normals);
    for (const std::size_t node : {edge.a, edge.b}) {
      rise[node] += angle * angle * (length * angle / 24.0);
      weight[node] += angle * angle;
    }
  }
  for (std::size_t node = 0; node < rise.size(); ++node)
    rise[node] = weight[node] > 0.0 ? rise[node] / weight[node] : 0.0;
  return rise;
}

}  // namespace

std::vector<double> nodeNormals(const Mesh& mesh) {
  std::vector<double> normals(mesh.points.size(), 0.0);
  for (std::size_t first = 0; first < mesh.corners.size(); first += 3)
    for (std::size_t k = 0; k < 3; ++k) {
      const auto node = [&](std::size_t c) {
        return static_cast<std::size_t>(mesh.corners[first + c % 3]) - 1;
      };
      Vector to{}, from{};
      for (std::size_t axis = 0; axis < 3; ++axis) {
        to[axis] = mesh.points[3 * node(k + 1) + axis] - mesh.points[3 * node(k) + axis];
        from[axis] = mesh.points[3 * node(k + 2) + axis] - mesh.points[3 * node(k) + axis];
      }
      const Vector normal = cross(to, from);
      const double sine = norm(normal), angle = std::atan2(sine, dot(to, from));
      for (std::size_t axis = 0; axis < 3; ++axis)
        if (sine > 0.0) normals[3 * node(k) + axis] += angle * normal[axis] / sine;
    }
  for (std::size_t k = 0; k < normals.size(); k += 3) {
    const double length = std::hypot(normals[k], normals[k + 1], normals[k + 2]);
    for (std::size_t axis = 0; axis < 3; ++axis)
      if (length > 0.0) normals[k + axis] /= length;
  }
  return normals;
}

void moveToFibre(const std::vector<double>& normals, double fibre, bool onSurface, Mesh& mesh) {
  const std::vector<Edge> edges = edgesOf(mesh);
  std::vector<double> distance = sidesOfBends(edges, normals, mesh);
  for (double& d : distance) d = -mesh.thickness * (0.5 + d * (0.5 - fibre));
  moveAlong(normals, distance, mesh);
  if (onSurface) moveAlong(normals, riseToArcs(edges, normals, mesh), mesh);
}

}  // namespace host
