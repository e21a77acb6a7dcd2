// Factorization, solves and pivots of a matrix large enough to be divided have the bits of one thread; a pivot that is
// zero fails on every number of threads in the same way. Runs under the thread sanitizer too (preset tsan).
#include <gtest/gtest.h>

#include <cmath>

#include "sparse/grid_pattern.hpp"
#include "sparse/solver_run.hpp"
#include "sparse/sparse_system.hpp"

namespace tornwalzen::testing_support {
namespace {

class SolverInThreads : public ::testing::Test {
 protected:
  static constexpr Int side = 180, nodes = side * side;

  /// Solution, pivots counted, or nothing where a pivot is zero.
  std::vector<double> solved(Int threads, double shift, Int zeroAt = 0) {
    freshState();
    run.pool = threads > 1 ? ThreadPool::start(threads) : nullptr;
    SparseSystem system(run);
    EXPECT_TRUE(system.prepareNodes({"COLS", pattern.cols.data(), static_cast<Int64>(pattern.cols.size())},
                                    {"ROWI", pattern.rowi.data(), static_cast<Int64>(pattern.rowi.size())}));
    for (Int j = 1; j <= nodes; ++j)
      for (Int k = system.COLS()(j); k < system.COLS()(j + 1); ++k)
        system.SYSM()(k) = system.ROWI()(k) == j ? shift + 0.1 * std::sin(j) : -1.0;
    std::vector<Int> free(nodes, 1);
    if (zeroAt > 0) free[static_cast<std::size_t>(zeroAt) - 1] = 0;
    system.hold({"FREE", free.data(), nodes});
    if (zeroAt > 0) system.SYSM()(system.COLS()(zeroAt)) = 0.0;
    std::vector<double> b(nodes), x(nodes);
    for (Int i = 0; i < nodes; ++i) b[i] = std::cos(0.1 * i);
    if (!system.factorize()) return {};
    EXPECT_EQ(run.record.threadBytes > 0, threads > 1) << "the work was not divided";
    system.solve({"RHS", b.data(), nodes}, {"SOLUTION", x.data(), nodes});
    x.push_back(system.negativePivots());
    run.pool.reset();
    return x;
  }

  GridPattern pattern{side};
};

TEST_F(SolverInThreads, DefiniteAndIndefiniteMatricesHaveTheBitsOfOneThread) {
  for (const double shift : {8.5, 3.0}) {
    const std::vector<double> alone = solved(1, shift);
    ASSERT_EQ(alone.size(), static_cast<std::size_t>(nodes) + 1);
    EXPECT_EQ(alone.back() > 0.0, shift < 8.0);
    for (const Int threads : {2, 3, 8}) EXPECT_EQ(solved(threads, shift), alone) << threads;
  }
}

// In a range that one thread takes; then in a front behind the ranges that the threads share.
TEST_F(SolverInThreads, AZeroPivotFailsOnEveryNumberOfThreads) {
  for (const Int zeroAt : {nodes / 2, 9352})
    for (const Int threads : {1, 2, 3, 8}) {
      EXPECT_TRUE(solved(threads, 8.5, zeroAt).empty()) << threads;
      EXPECT_STREQ(run.record.fatalText, "FATALER FEHLER : FEHLER 3 IN LOESUNGSPHASE") << threads;
      run.pool.reset();
    }
}

}  // namespace
}  // namespace tornwalzen::testing_support
