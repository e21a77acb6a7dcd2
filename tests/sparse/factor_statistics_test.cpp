// What the record tells of a factorization, on matrices whose factor is known.
#include "sparse/factor_statistics.hpp"

#include <gtest/gtest.h>

#include "host_kit/default_run.hpp"
#include "solver_run.hpp"

namespace tornwalzen::testing_support {
namespace {

void recordOf(SolverRun& solver) {
  run.record = RunRecord{};
  recordFactor(run.record, run.solver.protocol,
               {"WORK", solver.work.data(), static_cast<Int64>(solver.work.size())},
               {"RWORK", solver.rwork.data(), static_cast<Int64>(solver.rwork.size())});
}

TEST(FactorRecord, DiagonalMatrixHasItsOwnPivots) {
  SolverRun solver(SparseMatrix::fromEntries(
      5, {{{1, 1}, 4.0}, {{2, 2}, -2.0}, {{3, 3}, 9.0}, {{4, 4}, -0.25}, {{5, 5}, 1.0}}));
  solver.analyse();
  solver.factorize();
  recordOf(solver);
  EXPECT_EQ(run.record.negativePivots, 2);
  EXPECT_EQ(run.record.smallestPivot, 0.25);
  EXPECT_EQ(run.record.factorEntries, 5);
  EXPECT_EQ(run.record.factorFlops, 0.0);
}

TEST(FactorRecord, DenseMatrixCountsEveryEntryAndOperation) {
  std::map<std::pair<Int, Int>, double> entries;
  for (Int j = 1; j <= 4; ++j)
    for (Int i = j; i <= 4; ++i) entries[{j, i}] = i == j ? 10.0 : 1.0;
  SolverRun solver(SparseMatrix::fromEntries(4, entries));
  solver.analyse();
  solver.factorize();
  recordOf(solver);
  EXPECT_EQ(run.record.negativePivots, 0);
  EXPECT_EQ(run.record.factorEntries, 10);
  EXPECT_EQ(run.record.factorFlops, 15.0 + 8.0 + 3.0);
  EXPECT_GT(run.record.smallestPivot, 9.0);
  EXPECT_LT(run.record.smallestPivot, 10.0);
}

TEST(FactorRecord, WithoutAFactorNothingIsTold) {
  SolverRun solver(SparseMatrix::fromEntries(2, {{{1, 1}, 1.0}, {{1, 2}, 1.0}, {{2, 2}, 1.0}}));
  solver.analyse();
  recordOf(solver);
  EXPECT_EQ(run.record.negativePivots, -1);
  solver.factorize();  // the second pivot is exactly zero
  recordOf(solver);
  EXPECT_EQ(run.record.negativePivots, -1);
  EXPECT_EQ(run.record.factorEntries, 0);
}

}  // namespace
}  // namespace tornwalzen::testing_support
