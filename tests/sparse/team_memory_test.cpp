// Memory that the threads of a factorization ask for and do not get: one thread does their work, with the same bits.
#include <gtest/gtest.h>

#include <cmath>

#include "errors/refused_memory.hpp"
#include "host_kit/default_run.hpp"
#include "sparse/grid_pattern.hpp"
#include "sparse/sparse_system.hpp"

namespace tornwalzen::testing_support {
namespace {

/// A definite matrix on a grid, and its solution.
class Grid {
 public:
  Grid(Int side, Int threads) : pattern_(side), nodes_(side * side), system_(run), b_(size()), x_(size()) {
    freshState();
    run.pool = threads > 1 ? ThreadPool::start(threads) : nullptr;
    EXPECT_TRUE(
        system_.prepareNodes({"COLS", pattern_.cols.data(), static_cast<Int64>(pattern_.cols.size())},
                             {"ROWI", pattern_.rowi.data(), static_cast<Int64>(pattern_.rowi.size())}));
    for (Int j = 1; j <= nodes_; ++j)
      for (Int k = system_.COLS()(j); k < system_.COLS()(j + 1); ++k)
        system_.SYSM()(k) = system_.ROWI()(k) == j ? 8.5 + 0.1 * std::sin(j) : -1.0;
    for (Int i = 0; i < nodes_; ++i) b_[static_cast<std::size_t>(i)] = std::cos(0.1 * i);
  }
  ~Grid() { run.pool.reset(); }

  /// Factorizes and solves with so many requests granted. Returns whether one was refused.
  bool refusedAfter(int granted) {
    run.record = RunRecord{};
    const hostile::NoMemory none(granted);
    EXPECT_TRUE(system_.factorize()) << "request " << granted + 1;
    system_.solve({"RHS", b_.data(), nodes_}, {"SOLUTION", x_.data(), nodes_});
    return none.refusals() > 0;
  }
  const std::vector<double>& solution() const { return x_; }

 private:
  std::size_t size() const { return static_cast<std::size_t>(nodes_); }

  GridPattern pattern_;
  Int nodes_;
  SparseSystem system_;
  std::vector<double> b_, x_;
};

/// The solution on one thread, which asks for no memory.
std::vector<double> alone(Int side) {
  Grid grid(side, 1);
  EXPECT_FALSE(grid.refusedAfter(0));
  return grid.solution();
}

TEST(TeamMemory, EveryRequestIsAnAidThatTheFactorCanDoWithout) {
  constexpr Int side = 100;  // divided
  const std::vector<double> expected = alone(side);
  int granted = 0;
  for (bool refused = true; refused; ++granted) {
    Grid shared(side, 2);
    refused = shared.refusedAfter(granted);
    EXPECT_EQ(shared.solution(), expected) << "request " << granted + 1;
    EXPECT_EQ(run.record.threadBytes == 0, refused) << "request " << granted + 1;
    ASSERT_LT(granted, 100);
  }
  EXPECT_GT(granted, 15);
}

TEST(TeamMemory, ASystemTooSmallToShareIsLeftToOneThread) {
  const std::vector<double> expected = alone(12);
  Grid shared(12, 2);
  shared.refusedAfter(100);
  EXPECT_EQ(run.record.threadBytes, 0);
  EXPECT_EQ(shared.solution(), expected);
}

}  // namespace
}  // namespace tornwalzen::testing_support
