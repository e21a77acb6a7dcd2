// How the mesh of a part is bent; see the header.
#include "result/sheet_bending.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace host {

namespace {

const double creaseCosine = std::cos(20.0 * std::numbers::pi / 180.0);

class Surface {
 public:
  Surface(const std::vector<std::int32_t>& corners, const std::vector<double>& points)
      : corners_(corners), points_(points), around_(points.size() / 3) {
    for (std::size_t t = 0; t < triangles(); ++t) {
      areas_.push_back(cross(minus(at(3 * t + 1), at(3 * t)), minus(at(3 * t + 2), at(3 * t))));
      normals_.push_back(unit(areas_.back()));
      for (std::size_t k = 0; k < 3; ++k) around_[node(3 * t + k)].push_back(t);
    }
  }

  std::size_t triangles() const { return corners_.size() / 3; }
  std::size_t node(std::size_t corner) const { return static_cast<std::size_t>(corners_[corner]) - 1; }
  const std::vector<std::size_t>& around(std::size_t node) const { return around_[node]; }
  const Vector& normal(std::size_t triangle) const { return normals_[triangle]; }
  bool hasArea(std::size_t triangle) const { return norm(areas_[triangle]) > 0.0; }
  Vector at(std::size_t corner) const {
    const std::size_t n = 3 * node(corner);
    return {points_[n], points_[n + 1], points_[n + 2]};
  }

  double curvature(std::size_t triangle) const {
    double largest = 0.0;
    for (std::size_t k = 0; k < 3; ++k) {
      const std::size_t a = 3 * triangle + k, b = 3 * triangle + (k + 1) % 3;
      const double edge = norm(minus(at(b), at(a)));
      if (edge > 0.0)
        largest = std::max(
            largest, norm(minus(cornerNormal(triangle, node(b)), cornerNormal(triangle, node(a)))) / edge);
    }
    return largest;
  }

 private:
  Vector cornerNormal(std::size_t triangle, std::size_t node) const {
    Vector sum{};
    for (const std::size_t t : around_[node])
      if (dot(normals_[t], normals_[triangle]) >= creaseCosine)
        for (std::size_t axis = 0; axis < 3; ++axis) sum[axis] += areas_[t][axis];
    return unit(sum);
  }

  const std::vector<std::int32_t>& corners_;
  const std::vector<double>& points_;
  std::vector<Vector> areas_, normals_;           // per triangle: twice the area vector, its direction
  std::vector<std::vector<std::size_t>> around_;  // triangles of each node
};

std::vector<bool> bentTriangles(const Surface& surface, double radius) {
  std::vector<double> curvature;
  for (std::size_t t = 0; t < surface.triangles(); ++t) curvature.push_back(surface.curvature(t));
  std::vector<bool> bent;
  for (std::size_t t = 0; t < surface.triangles(); ++t) {
    double neighbours = 0.0;
    for (std::size_t k = 0; k < 3; ++k)
      for (const std::size_t other : surface.around(surface.node(3 * t + k)))
        neighbours = std::max(neighbours, curvature[other]);
    bent.push_back(curvature[t] * radius >= 1.0 && curvature[t] >= 0.5 * neighbours);
  }
  return bent;
}

// A side of a triangle by its first corner.
struct Side {
  std::array<std::int32_t, 2> nodes;  // lower one first
  std::size_t corner;
};

std::vector<InnerEdge> innerEdges(const std::vector<std::int32_t>& corners, const Surface& surface) {
  std::vector<Side> sides;
  for (std::size_t c = 0; c < corners.size(); ++c) {
    const std::int32_t a = corners[c], b = corners[c % 3 == 2 ? c - 2 : c + 1];
    sides.push_back({{std::min(a, b), std::max(a, b)}, c});
  }
  std::stable_sort(sides.begin(), sides.end(),
                   [](const Side& a, const Side& b) { return a.nodes < b.nodes; });
  std::vector<InnerEdge> edges;
  for (std::size_t k = 0; k + 1 < sides.size(); ++k) {
    if (sides[k].nodes != sides[k + 1].nodes) continue;
    const std::size_t c = sides[k].corner, s = c / 3, t = sides[k + 1].corner / 3;
    if (!surface.hasArea(s) || !surface.hasArea(t)) continue;
    const Vector along = unit(minus(surface.at(c % 3 == 2 ? c - 2 : c + 1), surface.at(c)));
    const double cosine = dot(surface.normal(s), surface.normal(t));
    // the normals turn about the edge; towards the normal where the other triangle rises over this one
    const double sine = -dot(cross(surface.normal(s), surface.normal(t)), along);
    edges.push_back({sides[k].nodes, {s, t}, std::atan2(sine, cosine), cosine < creaseCosine});
  }
  return edges;
}

using Matrix = std::array<Vector, 3>;

// One rotation of Jacobi's method that makes A(p,q) zero; the columns of V turn with it.
void rotate(Matrix& a, Matrix& v, std::size_t p, std::size_t q) {
  if (a[p][q] == 0.0) return;
  const double angle = 0.5 * std::atan2(2.0 * a[p][q], a[p][p] - a[q][q]);
  const double c = std::cos(angle), s = std::sin(angle);
  for (std::size_t k = 0; k < 3; ++k) {
    const double x = a[k][p], y = a[k][q];
    a[k][p] = c * x + s * y;
    a[k][q] = c * y - s * x;
  }
  for (std::size_t k = 0; k < 3; ++k) {
    const double x = a[p][k], y = a[q][k];
    a[p][k] = c * x + s * y;
    a[q][k] = c * y - s * x;
    const double vx = v[k][p], vy = v[k][q];
    v[k][p] = c * vx + s * vy;
    v[k][q] = c * vy - s * vx;
  }
}

struct Principal {
  std::array<double, 3> values{};  // the largest in size first
  std::array<Vector, 3> directions{};
};

Principal principalOf(const BendingTensor& tensor) {
  Matrix a{{{tensor.xx, tensor.xy, tensor.xz},
            {tensor.xy, tensor.yy, tensor.yz},
            {tensor.xz, tensor.yz, tensor.zz}}};
  Matrix v{{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
  constexpr int sweeps = 6;  // the method converges quadratically: three reach rounding
  for (int sweep = 0; sweep < sweeps; ++sweep)
    for (const auto& [p, q] : {std::pair<std::size_t, std::size_t>{0, 1}, {0, 2}, {1, 2}}) rotate(a, v, p, q);
  std::array<std::size_t, 3> order{0, 1, 2};
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t i, std::size_t j) { return std::abs(a[i][i]) > std::abs(a[j][j]); });
  Principal principal;
  for (std::size_t k = 0; k < 3; ++k) {
    principal.values[k] = a[order[k]][order[k]];
    principal.directions[k] = {v[0][order[k]], v[1][order[k]], v[2][order[k]]};
  }
  return principal;
}

}  // namespace

void BendingTensor::add(const BendingTensor& other) {
  xx += other.xx;
  yy += other.yy;
  zz += other.zz;
  xy += other.xy;
  xz += other.xz;
  yz += other.yz;
}

void BendingTensor::addDyad(const Vector& vector, double weight) {
  add({weight * vector[0] * vector[0], weight * vector[1] * vector[1], weight * vector[2] * vector[2],
       weight * vector[0] * vector[1], weight * vector[0] * vector[2], weight * vector[1] * vector[2]});
}

Ruling rulingOf(const BendingTensor& tensor) {
  const Principal principal = principalOf(tensor);
  const double largest = principal.values[0];
  if (!(std::abs(largest) > 0.0)) return {};
  return {principal.directions[0], largest, std::abs(principal.values[1] / largest)};
}

Vector leastDirection(const BendingTensor& tensor) {
  return principalOf(tensor).directions[2];
}

namespace {

// Spots and gaps that a rough mesh makes: a bent triangle among flat ones, a flat one within bent ones.
void clearSpots(const std::vector<InnerEdge>& edges, std::vector<bool>& bent) {
  constexpr int passes = 3;
  for (int pass = 0; pass < passes; ++pass) {
    std::vector<int> bentNeighbours(bent.size()), flatNeighbours(bent.size());
    for (const InnerEdge& edge : edges) {
      if (edge.crease) continue;
      const auto [s, t] = edge.triangles;
      ++(bent[t] ? bentNeighbours : flatNeighbours)[s];
      ++(bent[s] ? bentNeighbours : flatNeighbours)[t];
    }
    for (std::size_t t = 0; t < bent.size(); ++t)
      if (bent[t] ? flatNeighbours[t] >= 2 : bentNeighbours[t] >= 2 && flatNeighbours[t] == 0)
        bent[t] = !bent[t];
  }
}

}  // namespace

SheetBending bendingOf(const std::vector<std::int32_t>& corners, const std::vector<double>& points,
                       double radius) {
  const Surface surface(corners, points);
  SheetBending bending;
  bending.edges = innerEdges(corners, surface);
  bending.bent = bentTriangles(surface, radius);
  clearSpots(bending.edges, bending.bent);
  std::vector<BendingTensor> atNodes(points.size() / 3);
  for (const InnerEdge& edge : bending.edges) {
    if (edge.crease) continue;
    const auto a = static_cast<std::size_t>(edge.nodes[0]) - 1,
               b = static_cast<std::size_t>(edge.nodes[1]) - 1;
    Vector along{};
    for (std::size_t axis = 0; axis < 3; ++axis) along[axis] = points[3 * b + axis] - points[3 * a + axis];
    const double l = norm(along);
    if (l == 0.0) continue;
    for (const std::size_t n : {a, b}) atNodes[n].addDyad(along, edge.angle / l);
  }
  for (std::size_t t = 0; t < surface.triangles(); ++t) {
    BendingTensor tensor;
    for (std::size_t k = 0; k < 3; ++k) tensor.add(atNodes[surface.node(3 * t + k)]);
    bending.tensors.push_back(tensor);
    bending.normals.push_back(surface.normal(t));
  }
  return bending;
}

}  // namespace host
