// Systems beside the host's: pattern, solution, held equations, signs of the pivots, and the host's left alone.
#include "sparse/sparse_system.hpp"

#include <gtest/gtest.h>

#include <Eigen/Dense>

#include "sparse/solver_run.hpp"

namespace tornwalzen::testing_support {
namespace {

/// The pattern of two equations per node of a chain of nodes.
struct ChainPattern {
  std::vector<Int> cols{1}, rowi;
  explicit ChainPattern(Int nodes) {
    for (Int n = 1; n <= nodes; ++n)
      for (Int i = 2 * n - 1; i <= 2 * n; ++i) {
        for (Int j = i; j <= std::min(2 * n + 2, 2 * nodes); ++j) rowi.push_back(j);
        cols.push_back(static_cast<Int>(rowi.size()) + 1);
      }
  }
  Vector<const Int> COLS() const { return {"COLS", cols.data(), static_cast<Int64>(cols.size())}; }
  Vector<const Int> ROWI() const { return {"ROWI", rowi.data(), static_cast<Int64>(rowi.size())}; }
};

Eigen::MatrixXd dense(const SparseSystem& system) {
  const Int n = static_cast<Int>(system.COLS().length()) - 1;
  Eigen::MatrixXd A = Eigen::MatrixXd::Zero(n, n);
  for (Int j = 1; j <= n; ++j)
    for (Int k = system.COLS()(j); k < system.COLS()(j + 1); ++k)
      A(system.ROWI()(k) - 1, j - 1) = A(j - 1, system.ROWI()(k) - 1) = system.SYSM()(k);
  return A;
}

class SparseSystemTest : public ::testing::Test {
 protected:
  void SetUp() override {
    freshState();
    ASSERT_TRUE(system.prepareNodes(pattern.COLS(), pattern.ROWI()));
  }
  /// Diagonal d, neighbours -1.
  void fill(double d) {
    for (Int j = 1; j <= nodes; ++j)
      for (Int k = system.COLS()(j); k < system.COLS()(j + 1); ++k)
        system.SYSM()(k) = system.ROWI()(k) == j ? d + 0.01 * j : -1.0;
  }
  double residual() {
    std::vector<double> b(nodes), x(nodes);
    for (Int i = 0; i < nodes; ++i) b[i] = std::sin(i + 1.0);
    const Eigen::MatrixXd A = dense(system);
    system.solve({"RHS", b.data(), nodes}, {"SOLUTION", x.data(), nodes});
    const Eigen::Map<Eigen::VectorXd> X(x.data(), nodes), B(b.data(), nodes);
    return (A * X - B).lpNorm<Eigen::Infinity>() / (nodes * A.norm() * X.norm() * 2.2e-16);
  }

  static constexpr Int nodes = 30;
  ChainPattern pattern{nodes};
  SparseSystem system{run};
};

TEST_F(SparseSystemTest, TakesOneEquationPerNode) {
  ASSERT_EQ(system.COLS().length(), nodes + 1);
  for (Int n = 1; n <= nodes; ++n) {
    EXPECT_EQ(system.COLS()(n), 2 * n - 1);
    EXPECT_EQ(system.ROWI()(system.COLS()(n)), n);
    if (n == nodes) continue;
    EXPECT_EQ(system.ROWI()(system.COLS()(n) + 1), n + 1);
  }
}

TEST_F(SparseSystemTest, SolvesAndTellsDefiniteFromIndefinite) {
  fill(3.0);
  ASSERT_TRUE(system.factorize());
  EXPECT_EQ(system.negativePivots(), 0);
  EXPECT_LT(residual(), 10.0);
  fill(0.5);
  ASSERT_TRUE(system.factorize());
  const Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> eigen(dense(system));
  EXPECT_EQ(system.negativePivots(), (eigen.eigenvalues().array() < 0.0).count());
  EXPECT_GT(system.negativePivots(), 0);
  EXPECT_LT(residual(), 1000.0);
}

TEST_F(SparseSystemTest, HeldEquationsStandAlone) {
  fill(3.0);
  std::vector<Int> flags(nodes, 1);
  flags[0] = flags[10] = 0;
  system.hold({"FREE", flags.data(), nodes});
  const Eigen::MatrixXd A = dense(system);
  for (const Int held : {0, 10})
    for (Int j = 0; j < nodes; ++j) EXPECT_EQ(A(held, j), held == j ? 1.0 : 0.0);
  EXPECT_EQ(A(5, 4), -1.0);
  ASSERT_TRUE(system.factorize());
  EXPECT_LT(residual(), 10.0);
}

TEST_F(SparseSystemTest, AZeroPivotIsToldAndLeavesTheErrorWordAlone) {
  fill(3.0);
  for (Int64 k = 1; k <= system.SYSM().length(); ++k) system.SYSM()(k) = 0.0;
  for (const Int word : {0, errorSet}) {
    run.ierrso = word;
    EXPECT_FALSE(system.factorize());
    EXPECT_EQ(run.ierrso, word);
  }
  std::vector<double> b(nodes, 1.0), x(nodes, 7.0);
  system.solve({"RHS", b.data(), nodes}, {"SOLUTION", x.data(), nodes});
  EXPECT_EQ(x, std::vector<double>(nodes, 0.0));
}

TEST_F(SparseSystemTest, TheHostsSystemIsNotTouched) {
  run.solver.neq = 77;
  run.solver.niwreq = 5;
  run.solver.protocol.lastPhase = 2;
  fill(3.0);
  ASSERT_TRUE(system.factorize());
  SparseSystem other(run);
  ASSERT_TRUE(other.prepareNodes(pattern.COLS(), pattern.ROWI()));
  EXPECT_LT(residual(), 10.0);
  EXPECT_EQ(run.solver.neq, 77);
  EXPECT_EQ(run.solver.niwreq, 5);
  EXPECT_EQ(run.solver.protocol.lastPhase, 2);
}

}  // namespace
}  // namespace tornwalzen::testing_support
