// The whole solver against Eigen and against dense elimination, on patterns of every kind.
#include <gtest/gtest.h>

#include <Eigen/Dense>

#include "ground/kernel_tables.hpp"
#include "solver_run.hpp"
#include "sparse/kernels/dense_kernels.hpp"
#include "sparse/work_layout.hpp"

using namespace tornwalzen;
using namespace tornwalzen::testing_support;

namespace {

constexpr double largestRatio = 10.0;  // of residual / (n · norm · x · ε)

Eigen::MatrixXd dense(const SparseMatrix& a) {
  Eigen::MatrixXd m = Eigen::MatrixXd::Zero(a.n, a.n);
  for (Int j = 0; j < a.n; ++j)
    for (Int k = a.cols[j] - 1; k < a.cols[j + 1] - 1; ++k)
      m(a.rowi[k] - 1, j) = m(j, a.rowi[k] - 1) = a.values[k];
  return m;
}

void expectSolves(const SparseMatrix& a, const char* what, const DenseKernels* kernels = nullptr) {
  SolverRun solver(a);
  run.kernels = kernels;
  solver.analyse();
  solver.factorize();
  ASSERT_FALSE(failed(run.ierrso)) << what << ": " << std::string(run.messages.MSGSTR_solver, 60);
  const std::vector<double> b = randomVector(a.n, 99);
  const std::vector<double> x = solver.solve(b);
  EXPECT_FALSE(failed(run.ierrso)) << what;
  EXPECT_LE(solver.scaledResidual(b, x), largestRatio) << what;
  EXPECT_TRUE(solver.guardsHeld) << what;
  EXPECT_EQ(solver.rhs, b) << what;
  if (a.n <= 300) {
    const Eigen::VectorXd reference =
        dense(a).fullPivLu().solve(Eigen::Map<const Eigen::VectorXd>(b.data(), a.n));
    for (Int i = 0; i < a.n; ++i)
      EXPECT_NEAR(x[i], reference(i), 1e5 * a.n * 2.2e-16 * (1.0 + reference.cwiseAbs().maxCoeff())) << what;
  }
}

}  // namespace

TEST(Solver, RandomPatternsOfAllDensities) {
  unsigned seed = 1;
  for (Int n : {1, 2, 3, 4, 5, 7, 10, 17, 33, 64, 100, 257})
    for (double perColumn : {0.0, 0.3, 1.0, 2.5, 6.0, 40.0})
      for (bool indefinite : {false, true}) {
        const std::string what = "n " + std::to_string(n) + ", " + std::to_string(perColumn) +
                                 " per column, " + (indefinite ? "indefinite" : "definite");
        expectSolves(randomMatrix(n, perColumn, indefinite, ++seed), what.c_str());
      }
}

TEST(Solver, MeshPatterns) {
  for (auto [nx, ny] :
       {std::pair<Int, Int>{1, 1}, {2, 1}, {2, 2}, {5, 3}, {1, 40}, {12, 9}, {40, 40}, {90, 70}})
    expectSolves(gridMatrix(nx, ny, 5), "grid");
}

TEST(Solver, MatchesOnEveryKernelTable) {
  const KernelTables<DenseKernels>& tables = denseKernelTables();
  for (int k = 0; k < tables.count; ++k) {
    const DenseKernels& kernels = *tables.available[k];
    expectSolves(gridMatrix(60, 50, 3), kernels.name, &kernels);
    expectSolves(randomMatrix(400, 6.0, true, 8), kernels.name, &kernels);
  }
}

TEST(Solver, DenseMatrixIsOneSupernodeInNaturalOrder) {
  std::map<std::pair<Int, Int>, double> entries;
  const Int n = 70;
  for (Int j = 1; j <= n; ++j)
    for (Int i = j; i <= n; ++i) entries[{j, i}] = i == j ? n + 1.0 : 1.0 / (i + j);
  SolverRun solver(SparseMatrix::fromEntries(n, entries));
  solver.analyse();
  EXPECT_EQ(run.solver.protocol.supernodes, 1);
  const FactorStructure f =
      factorStructure({"WORK", solver.work.data(), static_cast<Int64>(solver.work.size())});
  for (Int i = 1; i <= n; ++i) EXPECT_EQ(f.PERM(i), i);
  expectSolves(solver.a, "dense");
}

TEST(Solver, DiagonalMatrixIsOrderedByIdentityAndFactorsToItself) {
  const Int n = 40;
  std::map<std::pair<Int, Int>, double> entries;
  for (Int i = 1; i <= n; ++i) entries[{i, i}] = (i % 3 == 0 ? -1.0 : 1.0) * i;
  SolverRun solver(SparseMatrix::fromEntries(n, entries));
  solver.analyse();
  EXPECT_EQ(run.solver.protocol.supernodes, n);
  const FactorStructure f =
      factorStructure({"WORK", solver.work.data(), static_cast<Int64>(solver.work.size())});
  for (Int i = 1; i <= n; ++i) {
    EXPECT_EQ(f.PERM(i), i);
    EXPECT_EQ(f.XLINDX(i + 1) - f.XLINDX(i), 1);
  }
  solver.factorize();
  for (Int i = 1; i <= n; ++i)
    EXPECT_EQ(solver.rwork[i - 1], entries[(std::pair<Int, Int>{i, i})]);  // D; L is empty
  const std::vector<double> b = randomVector(n, 4), x = solver.solve(b);
  for (Int i = 1; i <= n; ++i) EXPECT_EQ(x[i - 1], b[i - 1] / entries[(std::pair<Int, Int>{i, i})]);
}

TEST(Solver, FactorIsThatOfDenseElimination) {
  const SparseMatrix a = randomMatrix(60, 2.0, true, 77);
  SolverRun solver(a);
  solver.analyse();
  solver.factorize();
  ASSERT_FALSE(failed(run.ierrso));
  const FactorStructure f =
      factorStructure({"WORK", solver.work.data(), static_cast<Int64>(solver.work.size())});
  Eigen::MatrixXd p(a.n, a.n);
  const Eigen::MatrixXd full = dense(a);
  for (Int i = 1; i <= a.n; ++i)
    for (Int j = 1; j <= a.n; ++j) p(i - 1, j - 1) = full(f.PERM(i) - 1, f.PERM(j) - 1);
  Eigen::MatrixXd L = Eigen::MatrixXd::Identity(a.n, a.n);
  Eigen::VectorXd D(a.n);
  for (Int k = 1; k <= run.solver.protocol.supernodes; ++k) {
    const double* at = &solver.rwork[a.n + f.ASTART(k) - 1];
    for (Int j = f.XSUP(k), q = 1; j < f.XSUP(k + 1); ++j, ++q)
      for (Int t = f.XLINDX(k) + q; t < f.XLINDX(k + 1); ++t) L(f.LINDX(t) - 1, j - 1) = *at++;
  }
  for (Int j = 0; j < a.n; ++j) D(j) = solver.rwork[j];
  const double error = (L * D.asDiagonal() * L.transpose() - p).cwiseAbs().maxCoeff();
  EXPECT_LE(error, 10.0 * a.n * a.norm() * 2.2e-16);
}

TEST(Solver, IndefiniteMatrixThatNeedsNoPivoting) {
  SolverRun solver(SparseMatrix::fromEntries(2, {{{1, 1}, 1.0}, {{2, 2}, -1.0}}));
  solver.analyse();
  solver.factorize();
  EXPECT_FALSE(failed(run.ierrso));
  EXPECT_EQ(solver.solve({3.0, 5.0}), (std::vector<double>{3.0, -5.0}));
}

TEST(Solver, ZeroDiagonalAloneInItsColumnIsSingular) {
  SolverRun solver(SparseMatrix::fromEntries(3, {{{1, 1}, 1.0}, {{2, 2}, 0.0}, {{3, 3}, 2.0}}));
  solver.analyse();
  solver.factorize();
  EXPECT_TRUE(failed(run.ierrso));
  EXPECT_EQ(std::string(run.messages.MSGSTR_solver, 46), " FATALER FEHLER : FEHLER 3 IN LOESUNGSPHASE @ ");
}

TEST(Solver, SecondFactorizationOfTheSamePatternIsIndependentOfTheFirst) {
  const SparseMatrix first = gridMatrix(17, 13, 1), second = gridMatrix(17, 13, 2);
  SolverRun fresh(second);
  fresh.analyse();
  fresh.factorize();
  const std::vector<double> b = randomVector(second.n, 3), expected = fresh.solve(b);

  SolverRun solver(first);
  solver.analyse();
  solver.factorize();
  solver.a.values = second.values;
  solver.factorize();
  EXPECT_EQ(solver.solve(b), expected);
}

TEST(Solver, SolvingTwiceGivesIndependentResults) {
  SolverRun solver(gridMatrix(9, 9, 1));
  solver.analyse();
  solver.factorize();
  const std::vector<double> b1 = randomVector(solver.a.n, 1), b2 = randomVector(solver.a.n, 2);
  const std::vector<double> x1 = solver.solve(b1);
  const std::vector<double> x2 = solver.solve(b2);
  EXPECT_LE(solver.scaledResidual(b2, x2), largestRatio);
  EXPECT_EQ(solver.solve(b1), x1);
}

TEST(Solver, SameBitsRunAfterRunAndAtOtherAddresses) {
  std::vector<double> results[2];
  for (int r = 0; r < 2; ++r) {
    SolverRun solver(gridMatrix(30, 20, 1));
    solver.rwork.reserve(1000003 * (r + 1));
    solver.analyse();
    solver.factorize();
    results[r] = solver.solve(randomVector(solver.a.n, 1));
  }
  EXPECT_EQ(results[0], results[1]);
}
