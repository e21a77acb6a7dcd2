// Along which direction a part can be drawn; see the header.
#include "mesh/draw_direction.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <tuple>

#include "mesh/edges.hpp"
#include "mesh/part_geometry.hpp"

namespace host {

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr double undercutSine = 0.01;   // as in the library's figures of a blank
constexpr double steepCosine = 0.3;     // as where the library leaves the projection
constexpr double sameShare = 1e-3;      // of the area: undercut below it starts no second run
constexpr double gridStep = 3.0;        // degrees
constexpr double finestStep = 0.05;     // degrees
constexpr double flatCosine = 0.99996;  // 0.5 degrees between neighbours of a flat patch
constexpr std::size_t mostPatches = 20;

struct Facets {
  std::vector<double> x, y, z, area;  // unit normal and area of each element
  Vector mean{};                      // area vector of the whole
  double total = 0.0;
};

Facets facetsOf(const Part& part) {
  Facets facets;
  for (std::int64_t e = 1; e <= part.elements(); ++e) {
    const Vector a = areaVector(part, e);
    const double area = norm(a);
    facets.x.push_back(a[0] / area);
    facets.y.push_back(a[1] / area);
    facets.z.push_back(a[2] / area);
    facets.area.push_back(area);
    facets.total += area;
    for (std::size_t k = 0; k < 3; ++k) facets.mean[k] += a[k];
  }
  return facets;
}

// What a direction is judged by, smaller is better; the sign of the direction is chosen.
struct Score {
  Vector direction{};
  double undercut = 0.0, steep = 0.0, along = 0.0;  // areas; projected area, negative
  double leaning = 0.0;  // steep area, each triangle times the square of how far it is past the limit
  // The plain steep area would fall as the part leans over and walls of like draft pass the limit on one side. The
  // weighed one is strictly convex in the direction there: a part that is the same all around is seen upright.
  auto key(double total) const {
    return std::tuple(std::floor(undercut / (sameShare * total)), leaning, undercut, along);
  }
};

Score scoreOf(const Facets& facets, const Vector& direction) {
  double below = 0.0, above = 0.0, steep = 0.0, leaning = 0.0;
  for (std::size_t e = 0; e < facets.area.size(); ++e) {
    const double rise = facets.x[e] * direction[0] + facets.y[e] * direction[1] + facets.z[e] * direction[2];
    if (rise <= -undercutSine) below += facets.area[e];
    if (rise >= undercutSine) above += facets.area[e];
    if (std::fabs(rise) >= steepCosine) continue;
    steep += facets.area[e];
    leaning += facets.area[e] * (steepCosine - std::fabs(rise)) * (steepCosine - std::fabs(rise));
  }
  const double along = dot(facets.mean, direction);
  const bool turned = above < below || (above == below && along < 0.0);
  return {turned ? Vector{-direction[0], -direction[1], -direction[2]} : direction, std::min(above, below),
          steep, -std::fabs(along), leaning};
}

// Area-weighted normals of the largest patches whose neighbours agree within half a degree.
std::vector<Vector> patchNormals(const Part& part, const Facets& facets) {
  const auto elements = static_cast<std::size_t>(part.elements());
  std::vector<std::size_t> parent(elements);
  std::iota(parent.begin(), parent.end(), std::size_t{0});
  const auto root = [&](std::size_t e) {
    while (parent[e] != e) e = parent[e] = parent[parent[e]];
    return e;
  };
  forEachEdge(sortedSides(part.corners), [&](const Side* first, const Side* last) {
    if (last - first != 2) return;
    const std::size_t a = static_cast<std::size_t>(first[0].element) - 1,
                      b = static_cast<std::size_t>(first[1].element) - 1;
    if (facets.x[a] * facets.x[b] + facets.y[a] * facets.y[b] + facets.z[a] * facets.z[b] < flatCosine)
      return;
    const std::size_t p = root(a), q = root(b);
    parent[std::max(p, q)] = std::min(p, q);
  });
  std::vector<double> area(elements, 0.0);
  std::vector<Vector> sum(elements, Vector{});
  for (std::size_t e = 0; e < elements; ++e) {
    const std::size_t patch = root(e);
    area[patch] += facets.area[e];
    sum[patch][0] += facets.area[e] * facets.x[e];
    sum[patch][1] += facets.area[e] * facets.y[e];
    sum[patch][2] += facets.area[e] * facets.z[e];
  }
  std::vector<std::size_t> order(elements);
  std::iota(order.begin(), order.end(), std::size_t{0});
  const std::size_t wanted = std::min(mostPatches, elements);
  std::partial_sort(
      order.begin(), order.begin() + static_cast<std::ptrdiff_t>(wanted), order.end(),
      [&](std::size_t a, std::size_t b) { return std::tie(area[b], a) < std::tie(area[a], b); });
  std::vector<Vector> normals;
  for (std::size_t k = 0; k < wanted; ++k)
    if (norm(sum[order[k]]) > 0.0) normals.push_back(unit(sum[order[k]]));
  return normals;
}

// Rings of latitude, as many directions on each as its length asks for.
std::vector<Vector> hemisphere() {
  std::vector<Vector> directions;
  for (double tilt = gridStep; tilt <= 90.0; tilt += gridStep) {
    const double sine = std::sin(tilt * pi / 180.0), cosine = std::cos(tilt * pi / 180.0);
    const int around = static_cast<int>(std::ceil(360.0 * sine / gridStep));
    for (int k = 0; k < around; ++k) {
      const double turn = 2.0 * pi * k / around;
      directions.push_back({sine * std::cos(turn), sine * std::sin(turn), cosine});
    }
  }
  return directions;
}

// Steps to the eight directions around the best, halved where none is better.
Score refined(const Facets& facets, Score best) {
  for (double step = gridStep / 2.0; step >= finestStep; step /= 2.0) {
    const Vector d = best.direction;
    const Vector aside = unit(std::fabs(d[2]) < 0.9 ? cross(d, {0, 0, 1}) : cross(d, {1, 0, 0}));
    const Vector up = cross(d, aside);
    const double reach = std::tan(step * pi / 180.0);
    for (int k = 0; k < 8; ++k) {
      const double a = reach * std::cos(pi * k / 4.0), b = reach * std::sin(pi * k / 4.0);
      const Score next =
          scoreOf(facets, unit({d[0] + a * aside[0] + b * up[0], d[1] + a * aside[1] + b * up[1],
                                d[2] + a * aside[2] + b * up[2]}));
      if (next.key(facets.total) < best.key(facets.total)) best = next;
    }
  }
  return best;
}

DrawView viewOf(const Facets& facets, const Score& score) {
  DrawView view;
  view.direction = score.direction;
  view.undercutArea = score.undercut;
  view.steepArea = score.steep;
  view.area = facets.total;
  for (std::size_t e = 0; e < facets.area.size(); ++e)
    if (facets.x[e] * score.direction[0] + facets.y[e] * score.direction[1] +
            facets.z[e] * score.direction[2] <=
        -undercutSine)
      view.undercut.push_back(static_cast<std::int32_t>(e) + 1);
  return view;
}

}  // namespace

DrawView seenAlong(const Part& part, const Vector& direction) {
  const Facets facets = facetsOf(part);
  return viewOf(facets, scoreOf(facets, unit(direction)));
}

DrawView bestDrawDirection(const Part& part) {
  const Facets facets = facetsOf(part);
  std::vector<Vector> candidates{{0, 0, 1}, {0, 1, 0}, {1, 0, 0}};
  if (norm(facets.mean) > 1e-6 * facets.total) candidates.push_back(unit(facets.mean));
  for (const Vector& normal : patchNormals(part, facets)) candidates.push_back(normal);
  for (const Vector& direction : hemisphere()) candidates.push_back(direction);
  Score best = scoreOf(facets, candidates.front());
  for (const Vector& candidate : candidates) {  // an earlier one stays where the key is the same
    const Score next = scoreOf(facets, candidate);
    if (next.key(facets.total) < best.key(facets.total)) best = next;
  }
  return viewOf(facets, refined(facets, best));
}

}  // namespace host
