// The bench's meshes are triangulations of the square, and the jittered ones are Delaunay.
#include "plane_mesh.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace {

using bench::Numbering;
using bench::PlaneMesh;

double area2(const PlaneMesh& m, std::int32_t t) {
  const auto x = [&](int i) { return m.xy[2 * (m.corners[3 * t + i] - 1)]; };
  const auto y = [&](int i) { return m.xy[2 * (m.corners[3 * t + i] - 1) + 1]; };
  return (x(1) - x(0)) * (y(2) - y(0)) - (x(2) - x(0)) * (y(1) - y(0));
}

/// Angle at corner i of triangle t (radians), from the edges.
double angle(const PlaneMesh& m, std::int32_t t, int i) {
  const auto p = [&](int k) { return &m.xy[2 * (m.corners[3 * t + (i + k) % 3] - 1)]; };
  const double ax = p(1)[0] - p(0)[0], ay = p(1)[1] - p(0)[1], bx = p(2)[0] - p(0)[0], by = p(2)[1] - p(0)[1];
  return std::atan2(ax * by - ay * bx, ax * bx + ay * by);
}

TEST(PlaneMesh, coversTheSquareWithoutOverlap) {
  for (const PlaneMesh& m : {bench::structuredMesh(900, Numbering::rows, 1),
                             bench::jitteredDelaunayMesh(900, Numbering::random, 1)}) {
    EXPECT_EQ(m.nodes(), 900);
    EXPECT_EQ(m.triangles(), 2 * 29 * 29);
    double sum = 0.0;
    for (std::int32_t t = 0; t < m.triangles(); ++t) {
      EXPECT_GT(area2(m, t), 0.0);
      sum += 0.5 * area2(m, t);
    }
    EXPECT_NEAR(sum, 29.0 * 29.0, m.triangles() * 29.0 * 1e-15);
  }
}

// Across every inner edge the two opposite angles sum to no more than π: the local Delaunay property, without
// the circle test that made the mesh.
TEST(PlaneMesh, jitteredMeshIsDelaunay) {
  const PlaneMesh m = bench::jitteredDelaunayMesh(2500, Numbering::mesher, 7);
  std::map<std::pair<std::int32_t, std::int32_t>, std::vector<double>> opposite;
  for (std::int32_t t = 0; t < m.triangles(); ++t)
    for (int i = 0; i < 3; ++i) {
      const std::int32_t p = m.corners[3 * t + (i + 1) % 3], q = m.corners[3 * t + (i + 2) % 3];
      opposite[std::minmax(p, q)].push_back(angle(m, t, i));
    }
  int inner = 0;
  for (const auto& [edge, angles] : opposite) {
    ASSERT_LE(angles.size(), 2u);
    if (angles.size() < 2) continue;
    ++inner;
    EXPECT_LE(angles[0] + angles[1], M_PI + 1e-9);  // the circle test's threshold allows some 1e-12
  }
  EXPECT_EQ(inner, 3 * 49 * 49 - 2 * 49);  // Euler: all edges but the 4 · 49 of the rim
}

TEST(PlaneMesh, numberingIsAPermutationAndTheMesherKeepsNeighbourhoods) {
  const PlaneMesh rows = bench::jitteredDelaunayMesh(1600, Numbering::rows, 3);
  const PlaneMesh mesher = bench::jitteredDelaunayMesh(1600, Numbering::mesher, 3);
  const PlaneMesh random = bench::jitteredDelaunayMesh(1600, Numbering::random, 3);
  const auto sorted = [](const PlaneMesh& m) {
    std::vector<std::pair<double, double>> p;
    for (std::int32_t n = 0; n < m.nodes(); ++n) p.emplace_back(m.xy[2 * n], m.xy[2 * n + 1]);
    std::sort(p.begin(), p.end());
    return p;
  };
  EXPECT_EQ(sorted(rows), sorted(mesher));
  EXPECT_EQ(sorted(rows), sorted(random));
  for (std::int32_t n = 0; n < mesher.nodes(); ++n)  // at most a run of 64 away from its place in the rows
    EXPECT_LE(std::abs(mesher.xy[2 * n + 1] - n / 40), 64.0 / 40.0 + 1.0);
  EXPECT_NE(mesher.xy, rows.xy);
}

TEST(PlaneMesh, isTheSameForTheSameSeedOnly) {
  const PlaneMesh a = bench::jitteredDelaunayMesh(400, Numbering::random, 5),
                  b = bench::jitteredDelaunayMesh(400, Numbering::random, 5),
                  c = bench::jitteredDelaunayMesh(400, Numbering::random, 6);
  EXPECT_EQ(a.xy, b.xy);
  EXPECT_EQ(a.corners, b.corners);
  EXPECT_NE(a.xy, c.xy);
}

}  // namespace
