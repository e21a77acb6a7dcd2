// The frame of the mean normal: known directions, tubes, orientations, and what is no part.
#include "develop/mean_normal.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "develop/check_meshes.hpp"

using namespace tornwalzen;
using namespace tornwalzen::test;

namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();

void expectRotation(const double (&N)[3], const double (&Q)[3][3]) {
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) {
      double product = 0.0;
      for (int k = 0; k < 3; ++k) product += Q[i][k] * Q[j][k];
      EXPECT_NEAR(product, i == j ? 1.0 : 0.0, 8.0 * epsilon);
    }
  const double det = Q[0][0] * (Q[1][1] * Q[2][2] - Q[1][2] * Q[2][1]) -
                     Q[0][1] * (Q[1][0] * Q[2][2] - Q[1][2] * Q[2][0]) +
                     Q[0][2] * (Q[1][0] * Q[2][1] - Q[1][1] * Q[2][0]);
  EXPECT_NEAR(det, 1.0, 8.0 * epsilon);
  for (int i = 0; i < 3; ++i)
    EXPECT_NEAR(Q[i][0] * N[0] + Q[i][1] * N[1] + Q[i][2] * N[2], i == 2 ? 1.0 : 0.0, 8.0 * epsilon);
}

void makeUnit(double (&N)[3]) {
  const double length = std::sqrt(N[0] * N[0] + N[1] * N[1] + N[2] * N[2]);
  for (double& x : N) x /= length;
}

}  // namespace

TEST(MeanNormalTest, PlateAndItsTurnedCopies) {
  CheckMesh plate = gridSheet(4, 3);
  MeanNormal R;
  ASSERT_TRUE(findMeanNormal(plate.mesh(), R));
  EXPECT_EQ(R.N[2], 1.0);
  EXPECT_DOUBLE_EQ(R.share, 1.0);
  EXPECT_DOUBLE_EQ(R.area, 12.0);
  EXPECT_FALSE(R.fromPatch);
  for (auto& p : plate.nodes) p = {p[2], p[0], p[1]};  // x to y, y to z: the normal is x
  ASSERT_TRUE(findMeanNormal(plate.mesh(), R));
  EXPECT_EQ(R.N[0], 1.0);
  plate.turnOver();
  ASSERT_TRUE(findMeanNormal(plate.mesh(), R));
  EXPECT_EQ(R.N[0], -1.0);
}

TEST(MeanNormalTest, BentSheetWeighsByArea) {
  // A floor of 2 × 1 and a wall of 1 × 1 with the normal −x.
  CheckMesh bent;
  bent.nodes = {{0, 0, 0}, {2, 0, 0}, {2, 1, 0}, {0, 1, 0}, {2, 0, 1}, {2, 1, 1}};
  bent.triangles = {{1, 2, 3}, {1, 3, 4}, {2, 5, 6}, {2, 6, 3}};
  MeanNormal R;
  ASSERT_TRUE(findMeanNormal(bent.mesh(), R));
  EXPECT_NEAR(R.N[0], -1.0 / std::sqrt(5.0), epsilon);
  EXPECT_NEAR(R.N[2], 2.0 / std::sqrt(5.0), epsilon);
  EXPECT_NEAR(R.share, std::sqrt(5.0) / 3.0, epsilon);
}

TEST(MeanNormalTest, SquareTubeTakesItsLargestFace) {
  // Slit square tube along y; one face is longer than the others: 1, 1.5, 1, 1.5 would tie, 1, 1.6, 1, 1.5 leaves
  // a slit of 0.1 in the last face.
  CheckMesh tube;
  const double X[5] = {0, 1, 1, 0, 0}, Z[5] = {0, 0, 1.6, 1.6, 0.1};
  for (int r = 0; r <= 3; ++r)
    for (int c = 0; c < 5; ++c) tube.nodes.push_back({X[c], double(r), Z[c]});
  tube.triangles = gridIncidences(4, 3);
  for (int turns = 0; turns < 3; ++turns) {
    MeanNormal R;
    ASSERT_TRUE(findMeanNormal(tube.mesh(), R));
    EXPECT_TRUE(R.fromPatch);
    EXPECT_LT(R.share, vanishingShare);
    EXPECT_EQ(R.N[turns % 3], -1.0);  // the inner side of the face x = 1
    for (auto& p : tube.nodes) p = {p[2], p[0], p[1]};
  }
}

TEST(MeanNormalTest, RoundTubeTakesTheFirstOfEqualPatchesHoweverItLies) {
  // 72 strips of 5 degrees: every patch but the last ones is as large as the first.
  CheckMesh tube;
  for (int r = 0; r <= 2; ++r)
    for (int c = 0; c <= 72; ++c) {
      const double t = (355.0 / 72 * c) * std::acos(-1.0) / 180.0;
      tube.nodes.push_back({std::cos(t), double(r), std::sin(t)});
    }
  tube.triangles = gridIncidences(72, 2);
  MeanNormal reference;
  ASSERT_TRUE(findMeanNormal(tube.mesh(), reference));
  for (const double unit : {1024.0, 1.0 / 1024.0}) {
    CheckMesh scaled = tube;
    for (auto& p : scaled.nodes) p = {unit * p[0], unit * p[1], unit * p[2]};
    MeanNormal R;
    ASSERT_TRUE(findMeanNormal(scaled.mesh(), R));
    for (int i = 0; i < 3; ++i) EXPECT_EQ(R.N[i], reference.N[i]);
  }
  EXPECT_TRUE(reference.fromPatch);
  std::mt19937 generator(7);
  for (int trial = 0; trial < 20; ++trial) {
    double T[3][3];
    randomRotation(generator, T);
    CheckMesh turned = tube;
    turned.turn(T);
    MeanNormal R;
    ASSERT_TRUE(findMeanNormal(turned.mesh(), R));
    for (int i = 0; i < 3; ++i)
      EXPECT_NEAR(R.N[i], T[i][0] * reference.N[0] + T[i][1] * reference.N[1] + T[i][2] * reference.N[2],
                  1e-13);
  }
}

TEST(MeanNormalTest, WhatHasNoAreaCountsForNothing) {
  MeanNormal R;
  CheckMesh none;
  ASSERT_TRUE(findMeanNormal(none.mesh(), R));
  EXPECT_EQ(R.N[2], 1.0);
  EXPECT_EQ(R.area, 0.0);
  CheckMesh plate = gridSheet(2, 1);
  plate.nodes.push_back({std::numeric_limits<double>::quiet_NaN(), 0, 0});
  plate.nodes.push_back({std::numeric_limits<double>::infinity(), 0, 0});
  plate.nodes.push_back({1e200, 1e200, 1e200});
  plate.triangles.push_back({1, 2, 7});
  plate.triangles.push_back({1, 2, 8});
  plate.triangles.push_back({1, 2, 9});
  plate.triangles.push_back({1, 2, 2});
  ASSERT_TRUE(findMeanNormal(plate.mesh(), R));
  EXPECT_EQ(R.N[2], 1.0);
  EXPECT_EQ(R.area, 2.0);
}

TEST(RotationToZ, IsTheSmallestRotation) {
  std::mt19937 generator(11);
  std::normal_distribution<double> normal;
  for (int trial = 0; trial < 1000; ++trial) {
    double N[3] = {normal(generator), normal(generator), normal(generator)}, Q[3][3];
    makeUnit(N);
    rotationToZ(N, Q);
    expectRotation(N, Q);
    EXPECT_NEAR(0.5 * (Q[0][0] + Q[1][1] + Q[2][2] - 1.0), N[2], 8.0 * epsilon);  // cosine of its angle
  }
}

TEST(RotationToZ, StaysARotationNearBothPoles) {
  for (const double z : {1.0, -1.0})
    for (const double s : {0.0, 1e-300, 1e-160, 1e-17, 1e-13, 9e-13, 2e-12, 1e-9, 9e-7, 2e-6, 1e-3})
      for (const double t : {0.0, 0.7, 2.0, 4.0}) {
        double N[3] = {s * std::cos(t), s * std::sin(t), z}, Q[3][3];
        makeUnit(N);
        rotationToZ(N, Q);
        if (z > 0.0 && s < 1e-12) {
          for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j) EXPECT_EQ(Q[i][j], i == j ? 1.0 : 0.0);
          continue;
        }
        expectRotation(N, Q);
        if (z < 0.0 && s < 1e-6) {
          EXPECT_NEAR(Q[0][0], 1.0, 1e-11);  // rounding does not choose the axis
        }
      }
}
