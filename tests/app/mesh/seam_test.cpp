#include "mesh/seam.hpp"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cmath>
#include <limits>
#include <random>

using namespace host;

namespace {

double apart(const std::vector<double>& points, std::int64_t a, std::int64_t b) {
  const double *p = &points[static_cast<std::size_t>(3 * a - 3)],
               *q = &points[static_cast<std::size_t>(3 * b - 3)];
  return std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]);
}

// A sheet of n x n squares whose triangles have corners of their own, moved by up to `noise`; a piece each.
struct Unjoined {
  std::vector<double> points;
  std::vector<std::int32_t> corners, piece;
  Unjoined(int n, double noise) {
    std::mt19937 random(3);
    for (int i = 0; i < n; ++i)
      for (int j = 0; j < n; ++j)
        for (const auto& triangle :
             {std::array{i, j, i + 1, j, i + 1, j + 1}, std::array{i, j, i + 1, j + 1, i, j + 1}}) {
          piece.push_back(static_cast<std::int32_t>(piece.size()));
          for (std::size_t k = 0; k < 6; k += 2) {
            for (const double coordinate : {1.0 * triangle[k], 1.0 * triangle[k + 1], 0.0})
              points.push_back(coordinate + noise * static_cast<double>(random()) / 4294967296.0);
            corners.push_back(static_cast<std::int32_t>(points.size() / 3));
          }
        }
  }
};

}  // namespace

// Compared with every pair of nodes.
TEST(Seam, IsTheNearestPairOfDifferentPieces) {
  for (const double noise : {0.001, 0.3}) {
    const Unjoined mesh(6, noise);
    const Seam seam = nearestSeam(mesh.points, mesh.corners, mesh.piece);
    double nearest = std::numeric_limits<double>::infinity();
    for (std::int64_t a = 1; a <= static_cast<std::int64_t>(mesh.corners.size()); ++a)
      for (std::int64_t b = a + 1; b <= static_cast<std::int64_t>(mesh.corners.size()); ++b)
        if ((a - 1) / 3 != (b - 1) / 3) nearest = std::min(nearest, apart(mesh.points, a, b));
    EXPECT_EQ(seam.gap, nearest);
    EXPECT_EQ(apart(mesh.points, seam.node, seam.other), nearest);
    EXPECT_LT(seam.node, seam.other);
    EXPECT_NE((seam.node - 1) / 3, (seam.other - 1) / 3);
  }
}

TEST(Seam, NodesOfOnePlaceAreNoDistanceApart) {
  const Unjoined mesh(3, 0.0);
  const Seam seam = nearestSeam(mesh.points, mesh.corners, mesh.piece);
  EXPECT_EQ(seam.gap, 0.0);
  EXPECT_EQ(seam.shortestBorder, 1.0);
  EXPECT_TRUE(isUnwelded(seam));
}

TEST(Seam, InnerNodesAreNotCompared) {
  // a fan of four triangles round node 5, and a triangle above its middle
  const std::vector<double> points{0, 0, 0, 4, 0, 0, 4,   4, 0, 0, 4,   0,
                                   2, 2, 0, 2, 2, 1, 2.5, 2, 1, 2, 2.5, 1};
  const Seam seam = nearestSeam(points, {1, 2, 5, 2, 3, 5, 3, 4, 5, 4, 1, 5, 6, 7, 8}, {0, 0, 0, 0, 4});
  EXPECT_EQ(seam.gap, std::hypot(1.5, 2.0, 1.0));  // nodes 2 and 7
  EXPECT_EQ(seam.shortestBorder, 0.5);
  EXPECT_FALSE(isUnwelded(seam));
}

TEST(Seam, ASharedNodeIsTold) {
  const std::vector<double> bowTie{0, 0, 0, -1, -1, 0, -1, 1, 0, 1, -1, 0, 1, 1, 0};
  const Seam seam = nearestSeam(bowTie, {1, 2, 3, 1, 4, 5}, {0, 1});
  EXPECT_EQ(seam.node, 1);
  EXPECT_EQ(seam.other, 1);
  EXPECT_FALSE(isUnwelded(seam));
}

TEST(Seam, ClosedPiecesHaveNone) {
  const std::vector<double> points{0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};
  const Seam seam = nearestSeam(points, {1, 3, 2, 1, 2, 4, 2, 3, 4, 3, 1, 4}, {0, 0, 0, 0});
  EXPECT_EQ(seam.node, 0);
  EXPECT_FALSE(isUnwelded(seam));
}

// 240,000 nodes; to compare all pairs would take minutes.
TEST(Seam, IsFoundQuicklyInALargeMesh) {
  for (const double noise : {0.0, 1e-6}) {
    const Unjoined mesh(200, noise);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_LT(nearestSeam(mesh.points, mesh.corners, mesh.piece).gap, 2e-6);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(60));
  }
}
