// Softening of negative eigenvalues, closed form and Jacobi against each other and against their definition.
#include "element/map_sum.hpp"

#include <gtest/gtest.h>

#include <random>

namespace tornwalzen {
namespace {

MapSum randomSum(std::mt19937& random, bool coupled) {
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  MapSum sum;
  for (int i = 0; i < 4; ++i)
    for (int j = i; j < 4; ++j)
      if (coupled || i / 2 == j / 2) sum.H[i][j] = sum.H[j][i] = unit(random);
  sum.coupled = coupled;
  return sum;
}

double quadratic(const double (&H)[4][4], const double (&x)[4]) {
  double q = 0.0;
  for (int i = 0; i < 4; ++i)
    for (int j = 0; j < 4; ++j) q += x[i] * H[i][j] * x[j];
  return q;
}

TEST(MapSum, FullySoftenedTangentsAreNotNegative) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  for (int k = 0; k < 500; ++k) {
    MapSum sum = randomSum(random, k % 2 == 0);
    softenNegative(1.0, sum);
    for (int d = 0; d < 50; ++d) {
      const double x[4] = {unit(random), unit(random), unit(random), unit(random)};
      ASSERT_GT(quadratic(sum.H, x), -1e-14);
    }
  }
}

TEST(MapSum, ClosedFormAndJacobiAgree) {
  std::mt19937 random(4);
  for (int k = 0; k < 500; ++k)
    for (const double theta : {0.2, 1.0}) {
      MapSum closed = randomSum(random, false), jacobi = closed;
      jacobi.coupled = true;
      softenNegative(theta, closed);
      softenNegative(theta, jacobi);
      for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) ASSERT_NEAR(closed.H[i][j], jacobi.H[i][j], 2e-15);
    }
}

TEST(MapSum, ThetaIsTheShareThatIsTaken) {
  std::mt19937 random(5);
  for (int k = 0; k < 200; ++k) {
    MapSum none = randomSum(random, k % 2 == 0), part = none, all = none;
    const MapSum before = none;
    softenNegative(0.0, none);
    softenNegative(0.3, part);
    softenNegative(1.0, all);
    for (int i = 0; i < 4; ++i)
      for (int j = 0; j < 4; ++j) {
        ASSERT_EQ(none.H[i][j], before.H[i][j]);
        ASSERT_NEAR(part.H[i][j], 0.7 * before.H[i][j] + 0.3 * all.H[i][j], 2e-15);
      }
  }
}

TEST(MapSum, PositiveTangentsStay) {
  MapSum sum;
  for (int i = 0; i < 4; ++i) sum.H[i][i] = 1.0 + i;
  sum.H[0][1] = sum.H[1][0] = 0.5;
  MapSum coupled = sum;
  coupled.coupled = true;
  for (MapSum* s : {&sum, &coupled}) {
    softenNegative(1.0, *s);
    EXPECT_EQ(s->H[0][0], 1.0);
    EXPECT_EQ(s->H[0][1], 0.5);
    EXPECT_EQ(s->H[3][3], 4.0);
  }
}

TEST(MapSum, EqualNegativeEigenvaluesVanish) {
  MapSum sum;
  for (int i = 0; i < 4; ++i) sum.H[i][i] = -2.0;
  softenNegative(1.0, sum);
  for (int i = 0; i < 4; ++i)
    for (int j = 0; j < 4; ++j) EXPECT_EQ(sum.H[i][j], 0.0);
}

}  // namespace
}  // namespace tornwalzen
