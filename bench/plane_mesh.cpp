// Plane triangulations: grid, jitter, flips, numbering.
#include "plane_mesh.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "surface_mesh.hpp"  // shapes::Random

namespace bench {

namespace {

constexpr double largestShift =
    0.24;  // cells; below 0.25 every cell of the grid can be cut into two triangles
constexpr std::int32_t mesherRun =
    64;  // numbers that a mesher may hand out in any order within a neighbourhood

double area2(const PlaneMesh& m, std::int32_t a, std::int32_t b, std::int32_t c) {
  const double *p = &m.xy[2 * (a - 1)], *q = &m.xy[2 * (b - 1)], *r = &m.xy[2 * (c - 1)];
  return (q[0] - p[0]) * (r[1] - p[1]) - (q[1] - p[1]) * (r[0] - p[0]);
}

/// Positive where d lies inside the circle through a, b, c (counter-clockwise).
double inCircle(const PlaneMesh& m, std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d) {
  const double *p = &m.xy[2 * (a - 1)], *q = &m.xy[2 * (b - 1)], *r = &m.xy[2 * (c - 1)],
               *s = &m.xy[2 * (d - 1)];
  const double ax = p[0] - s[0], ay = p[1] - s[1], bx = q[0] - s[0], by = q[1] - s[1], cx = r[0] - s[0],
               cy = r[1] - s[1];
  return (ax * ax + ay * ay) * (bx * cy - cx * by) - (bx * bx + by * by) * (ax * cy - cx * ay) +
         (cx * cx + cy * cy) * (ax * by - bx * ay);
}

PlaneMesh grid(std::int32_t nodes, bool jitter, shapes::Random& random) {
  const auto side = std::max<std::int32_t>(2, static_cast<std::int32_t>(std::lround(std::sqrt(nodes))));
  PlaneMesh m;
  for (std::int32_t y = 0; y < side; ++y)
    for (std::int32_t x = 0; x < side; ++x) {
      const bool inX = x > 0 && x + 1 < side, inY = y > 0 && y + 1 < side;
      m.xy.push_back(x + (jitter && inX ? random.within(largestShift) : 0.0));
      m.xy.push_back(y + (jitter && inY ? random.within(largestShift) : 0.0));
    }
  for (std::int32_t y = 0; y + 1 < side; ++y)
    for (std::int32_t x = 0; x + 1 < side; ++x) {
      const std::int32_t a = y * side + x + 1, b = a + 1, d = a + side, c = d + 1;
      const bool rising = jitter ? area2(m, a, b, c) > 0.0 && area2(m, a, c, d) > 0.0 : (x + y) % 2 == 0;
      if (rising)
        m.corners.insert(m.corners.end(), {a, b, c, a, c, d});
      else
        m.corners.insert(m.corners.end(), {a, b, d, b, c, d});
    }
  return m;
}

/// Triangle t has at place 3t+i the neighbour across the edge opposite its corner i, -1 at the boundary.
std::vector<std::int32_t> neighbours(const PlaneMesh& m) {
  struct Side {
    std::int32_t low, high, place;
  };
  std::vector<Side> sides;
  for (std::int32_t t = 0; t < m.triangles(); ++t)
    for (std::int32_t i = 0; i < 3; ++i) {
      const std::int32_t p = m.corners[3 * t + (i + 1) % 3], q = m.corners[3 * t + (i + 2) % 3];
      sides.push_back({std::min(p, q), std::max(p, q), 3 * t + i});
    }
  std::sort(sides.begin(), sides.end(), [](const Side& s, const Side& o) {
    return s.low != o.low ? s.low < o.low : s.high != o.high ? s.high < o.high : s.place < o.place;
  });
  std::vector<std::int32_t> next(m.corners.size(), -1);
  for (std::size_t k = 0; k + 1 < sides.size(); ++k)
    if (sides[k].low == sides[k + 1].low && sides[k].high == sides[k + 1].high) {
      next[sides[k].place] = sides[k + 1].place / 3;
      next[sides[k + 1].place] = sides[k].place / 3;
    }
  return next;
}

void flipToDelaunay(PlaneMesh& m) {
  std::vector<std::int32_t> next = neighbours(m), waiting(m.corners.size());
  std::iota(waiting.rbegin(), waiting.rend(), 0);
  const auto placeOf = [&](std::int32_t t, std::int32_t neighbour) {
    return next[3 * t] == neighbour ? 0 : next[3 * t + 1] == neighbour ? 1 : 2;
  };
  while (!waiting.empty()) {
    const std::int32_t side = waiting.back(), t = side / 3, i = side % 3, u = next[side];
    waiting.pop_back();
    if (u < 0) continue;
    const std::int32_t j = placeOf(u, t);
    const std::int32_t a = m.corners[side], b = m.corners[3 * t + (i + 1) % 3],
                       c = m.corners[3 * t + (i + 2) % 3], d = m.corners[3 * u + j];
    if (!(inCircle(m, a, b, c, d) > 1e-12))
      continue;  // rounding is some 1e-15 cells⁴: four nodes on a circle stay
    const std::int32_t beyondB = next[3 * t + (i + 1) % 3], beyondC = next[3 * t + (i + 2) % 3];
    const std::int32_t uB = next[3 * u + (j + 1) % 3], uC = next[3 * u + (j + 2) % 3];
    // u holds d, c, b from its corner j on: uB lies across d-b, uC across c-d
    const std::array<std::int32_t, 3> corners[2] = {{a, b, d}, {a, d, c}};
    const std::array<std::int32_t, 3> across[2] = {{uB, u, beyondC}, {uC, beyondB, t}};
    const std::int32_t owner[2] = {t, u};
    if (uB >= 0) next[3 * uB + placeOf(uB, u)] = t;
    if (beyondB >= 0) next[3 * beyondB + placeOf(beyondB, t)] = u;
    for (int k = 0; k < 2; ++k)
      for (int p = 0; p < 3; ++p) {
        m.corners[3 * owner[k] + p] = corners[k][p];
        next[3 * owner[k] + p] = across[k][p];
        waiting.push_back(3 * owner[k] + p);
      }
  }
}

void renumber(PlaneMesh& m, Numbering numbering, shapes::Random& random) {
  std::vector<std::int32_t> number(m.nodes());
  std::iota(number.begin(), number.end(), 1);
  const std::int32_t run = numbering == Numbering::rows     ? 1
                           : numbering == Numbering::mesher ? mesherRun
                                                            : m.nodes();
  for (std::int32_t first = 0; first < m.nodes(); first += run) {
    const std::int32_t length = std::min(run, m.nodes() - first);
    for (std::int32_t k = length - 1; k > 0; --k)
      std::swap(number[first + k], number[first + static_cast<std::int32_t>(random.next() % (k + 1))]);
  }
  std::vector<double> xy(m.xy.size());
  for (std::int32_t n = 0; n < m.nodes(); ++n) {
    xy[2 * (number[n] - 1)] = m.xy[2 * n];
    xy[2 * (number[n] - 1) + 1] = m.xy[2 * n + 1];
  }
  m.xy = std::move(xy);
  for (std::int32_t& n : m.corners) n = number[n - 1];
}

}  // namespace

PlaneMesh structuredMesh(std::int32_t nodes, Numbering numbering, std::uint64_t seed) {
  shapes::Random random(seed);
  PlaneMesh m = grid(nodes, false, random);
  renumber(m, numbering, random);
  return m;
}

PlaneMesh jitteredDelaunayMesh(std::int32_t nodes, Numbering numbering, std::uint64_t seed) {
  shapes::Random random(seed);
  PlaneMesh m = grid(nodes, true, random);
  flipToDelaunay(m);
  renumber(m, numbering, random);
  return m;
}

}  // namespace bench
