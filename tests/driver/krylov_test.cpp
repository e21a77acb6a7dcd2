// Equations known by their products, against dense ones, and where the products do not span the answer.
#include "driver/krylov.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace tornwalzen::test {
namespace {

using Matrix = std::vector<std::vector<double>>;

struct Answer {
  std::vector<double> X;
  double left;        // as told
  double reallyLeft;  // |B - A·X| over |B|
  int products = 0;
};

Answer solve(const Matrix& A, std::vector<double> B, double tolerance) {
  const Int n = static_cast<Int>(B.size());
  Krylov krylov;
  EXPECT_TRUE(krylov.prepare(n));
  Answer answer{std::vector<double>(B.size(), 7.0), 0.0, 0.0};
  const auto product = [&](Vector<const double> V, Vector<double> W) {
    ++answer.products;
    for (Int i = 1; i <= n; ++i) {
      W(i) = 0.0;
      for (Int j = 1; j <= n; ++j)
        W(i) += A[static_cast<std::size_t>(i - 1)][static_cast<std::size_t>(j - 1)] * V(j);
    }
  };
  answer.left = krylov.solve(product, {"B", B.data(), n}, tolerance, {"X", answer.X.data(), n});
  double square = 0.0, size = 0.0;
  for (std::size_t i = 0; i < B.size(); ++i) {
    double rest = B[i];
    for (std::size_t j = 0; j < B.size(); ++j) rest -= A[i][j] * answer.X[j];
    square += rest * rest;
    size += B[i] * B[i];
  }
  answer.reallyLeft = std::sqrt(square / size);
  return answer;
}

/// The unit matrix and something unsymmetric beside it.
Matrix nearUnit(std::size_t n, double share) {
  std::mt19937 draw(5);
  Matrix A(n, std::vector<double>(n, 0.0));
  for (std::size_t i = 0; i < n; ++i)
    for (std::size_t j = 0; j < n; ++j)
      A[i][j] = (i == j ? 1.0 : 0.0) + share * (static_cast<double>(draw()) / 4294967296.0 - 0.5);
  return A;
}

TEST(Krylov, SolvesAsFarAsItIsAsked) {
  const Matrix A = nearUnit(60, 0.3);
  const std::vector<double> B(60, 1.0);
  int before = 0;
  for (const double tolerance : {0.3, 1e-2, 1e-5}) {
    const Answer answer = solve(A, B, tolerance);
    EXPECT_LE(answer.left, tolerance);
    EXPECT_NEAR(answer.left, answer.reallyLeft, 1e-12);
    EXPECT_GT(answer.products, before);
    before = answer.products;
  }
}

TEST(Krylov, EndsWithTheProductsThatItMayTake) {
  Matrix turned(60, std::vector<double>(
                        60, 0.0));  // shifts every entry on: no product tells of the answer before the last
  for (std::size_t i = 0; i < 60; ++i) turned[i][(i + 1) % 60] = 1.0;
  std::vector<double> B(60, 0.0);
  B[0] = 2.0;
  const Answer answer = solve(turned, B, 1e-3);
  EXPECT_EQ(answer.products, Krylov::depth);
  EXPECT_EQ(answer.left, 1.0);
  EXPECT_EQ(answer.reallyLeft, 1.0);
}

TEST(Krylov, StopsWhereTheProductsSayNothingNew) {
  Matrix twice(3, std::vector<double>(3, 0.0));
  for (std::size_t i = 0; i < 3; ++i) twice[i][i] = 2.0;
  const Answer answer = solve(twice, {3.0, -4.0, 12.0}, 0.0);
  EXPECT_EQ(answer.products, 1);
  EXPECT_LE(answer.reallyLeft, 1e-15);
}

TEST(Krylov, OfNothingIsNothing) {
  const Answer answer = solve(nearUnit(4, 0.3), {0.0, 0.0, 0.0, 0.0}, 0.1);
  EXPECT_EQ(answer.left, 0.0);
  EXPECT_EQ(answer.products, 0);
  EXPECT_EQ(answer.X, std::vector<double>(4, 0.0));
}

// Products that are nothing, or no numbers, are left out: what was found before them stands.
TEST(Krylov, LeavesOutProductsThatSayNothing) {
  const Answer none = solve(Matrix(3, std::vector<double>(3, 0.0)), {1.0, 2.0, 2.0}, 0.1);
  EXPECT_EQ(none.left, 1.0);
  EXPECT_EQ(none.products, 1);
  EXPECT_EQ(none.X, std::vector<double>(3, 0.0));

  Krylov krylov;
  ASSERT_TRUE(krylov.prepare(2));
  int products = 0;
  const auto product = [&](Vector<const double> V, Vector<double> W) {
    const bool first = products++ == 0;
    W(1) = first ? V(1) + V(2) : std::numeric_limits<double>::quiet_NaN();
    W(2) = first ? V(2) - V(1) : 0.0;
  };
  double B[] = {3.0, 0.0}, X[2];
  const double left = krylov.solve(product, {"B", B, 2}, 1e-6, {"X", X, 2});
  EXPECT_EQ(products, 2);
  EXPECT_NEAR(X[0], 1.5, 1e-15);  // of (1, -1)·x the least of (3, 0)
  EXPECT_EQ(X[1], 0.0);
  EXPECT_NEAR(left, std::sqrt(0.5), 1e-15);
}

}  // namespace
}  // namespace tornwalzen::test
