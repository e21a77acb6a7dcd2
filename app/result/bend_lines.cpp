// Where the part is bent; see the header.
#include "result/bend_lines.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace host {

namespace {

using Vector = std::array<double, 3>;

const double creaseCosine = std::cos(20.0 * std::numbers::pi / 180.0);

Vector difference(const Vector& a, const Vector& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

double length(const Vector& a) {
  return std::hypot(a[0], a[1], a[2]);
}

double product(const Vector& a, const Vector& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector unit(const Vector& a) {
  const double l = length(a);
  return l > 0.0 ? Vector{a[0] / l, a[1] / l, a[2] / l} : Vector{};
}

class Surface {
 public:
  Surface(const std::vector<std::int32_t>& corners, const std::vector<double>& points)
      : corners_(corners), points_(points), around_(points.size() / 3) {
    for (std::size_t t = 0; t < triangles(); ++t) {
      const Vector u = difference(at(3 * t + 1), at(3 * t)), v = difference(at(3 * t + 2), at(3 * t));
      areas_.push_back({u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]});
      normals_.push_back(unit(areas_.back()));
      for (std::size_t k = 0; k < 3; ++k) around_[node(3 * t + k)].push_back(t);
    }
  }

  std::size_t triangles() const { return corners_.size() / 3; }
  std::size_t node(std::size_t corner) const { return static_cast<std::size_t>(corners_[corner]) - 1; }
  const std::vector<std::size_t>& around(std::size_t node) const { return around_[node]; }
  const Vector& normal(std::size_t triangle) const { return normals_[triangle]; }
  bool hasArea(std::size_t triangle) const { return length(areas_[triangle]) > 0.0; }

  double curvature(std::size_t triangle) const {
    double largest = 0.0;
    for (std::size_t k = 0; k < 3; ++k) {
      const std::size_t a = 3 * triangle + k, b = 3 * triangle + (k + 1) % 3;
      const double edge = length(difference(at(b), at(a)));
      if (edge > 0.0)
        largest = std::max(
            largest,
            length(difference(cornerNormal(triangle, node(b)), cornerNormal(triangle, node(a)))) / edge);
    }
    return largest;
  }

 private:
  Vector at(std::size_t corner) const {
    const std::size_t n = 3 * node(corner);
    return {points_[n], points_[n + 1], points_[n + 2]};
  }
  Vector cornerNormal(std::size_t triangle, std::size_t node) const {
    Vector sum{};
    for (const std::size_t t : around_[node])
      if (product(normals_[t], normals_[triangle]) >= creaseCosine)
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

}  // namespace

std::vector<std::array<std::int32_t, 2>> bendLines(const std::vector<std::int32_t>& corners,
                                                   const std::vector<double>& points, double radius) {
  const Surface surface(corners, points);
  const std::vector<bool> bent = bentTriangles(surface, radius);
  struct Side {
    std::array<std::int32_t, 2> edge;
    std::size_t triangle;
  };
  std::vector<Side> sides;
  for (std::size_t c = 0; c < corners.size(); ++c) {
    const std::int32_t a = corners[c], b = corners[c % 3 == 2 ? c - 2 : c + 1];
    sides.push_back({{std::min(a, b), std::max(a, b)}, c / 3});
  }
  std::stable_sort(sides.begin(), sides.end(), [](const Side& a, const Side& b) { return a.edge < b.edge; });
  std::vector<std::array<std::int32_t, 2>> lines;
  for (std::size_t k = 0; k + 1 < sides.size(); ++k) {
    if (sides[k].edge != sides[k + 1].edge) continue;
    const std::size_t s = sides[k].triangle, t = sides[k + 1].triangle;
    const bool crease = surface.hasArea(s) && surface.hasArea(t) &&
                        product(surface.normal(s), surface.normal(t)) < creaseCosine;
    if (crease || bent[s] != bent[t]) lines.push_back(sides[k].edge);
  }
  return lines;
}

}  // namespace host
