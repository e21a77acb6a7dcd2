// Order and layout of one equation per node, halved from those of two: the same solutions as with an order of its own, and
// an order of its own where the pairs do not serve.
#include "sparse/node_structure.hpp"

#include <gtest/gtest.h>

#include <cmath>

#include "sparse/phase_error.hpp"
#include "sparse/solver_run.hpp"
#include "sparse/sparse_system.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen::testing_support {
namespace {

constexpr Int side = 40, nodes = side * side;

/// A grid of nodes of two equations, each coupled with the nodes beside and one diagonal.
SparseMatrix pairsOfGrid() {
  std::map<std::pair<Int, Int>, double> entries;
  for (Int n = 0; n < nodes; ++n) {
    const Int x = n % side, y = n / side;
    for (Int i = 1; i <= 2; ++i) {
      for (Int j = i; j <= 2; ++j) entries[{2 * n + i, 2 * n + j}] = i == j ? 8.0 : 0.5;
      for (const auto& [dx, dy] : {std::pair{1, 0}, {0, 1}, {1, 1}})
        if (x + dx < side && y + dy < side)
          for (Int j = 1; j <= 2; ++j) entries[{2 * n + i, 2 * (n + dx + dy * side) + j}] = -0.5;
    }
  }
  return SparseMatrix::fromEntries(2 * nodes, entries);
}

struct Pairs {
  SolverRun host{pairsOfGrid()};
  Pairs() { host.analyse(); }
  Vector<const Int> COLS() const { return {"COLS", host.a.cols.data(), host.a.n + 1}; }
  Vector<const Int> ROWI() const {
    return {"ROWI", host.a.rowi.data(), static_cast<Int64>(host.a.rowi.size())};
  }
  SparseSystem system() {
    return SparseSystem(run, COLS(), ROWI(), {"WORK", host.work.data(), static_cast<Int64>(host.work.size())},
                        {"RWORK", host.rwork.data(), static_cast<Int64>(host.rwork.size())}, {}, {});
  }
};

std::vector<double> solved(SparseSystem& system) {
  for (Int j = 1; j <= nodes; ++j)
    for (Int k = system.COLS()(j); k < system.COLS()(j + 1); ++k)
      system.SYSM()(k) = system.ROWI()(k) == j ? 6.0 + 0.1 * std::sin(j) : -1.0;
  std::vector<double> b(nodes), x(nodes);
  for (Int i = 0; i < nodes; ++i) b[i] = std::cos(0.1 * i);
  EXPECT_TRUE(system.factorize());
  system.solve({"RHS", b.data(), nodes}, {"SOLUTION", x.data(), nodes});
  return x;
}

TEST(NodeStructure, SolvesAsWithAnOrderOfItsOwn) {
  Pairs pairs;
  const SparseSystem both = pairs.system();
  SparseSystem halved(run), own(run);
  ASSERT_TRUE(halved.prepareNodes(pairs.COLS(), pairs.ROWI(), &both));
  ASSERT_TRUE(own.prepareNodes(pairs.COLS(), pairs.ROWI()));
  const std::vector<double> x = solved(halved), y = solved(own);
  for (Int i = 0; i < nodes; ++i) EXPECT_NEAR(x[i], y[i], 1e-13);
}

TEST(NodeStructure, IsHalfOfThatOfThePairs) {
  Pairs pairs;
  const Vector<Int> PAIRS("PAIRS", pairs.host.work.data(), static_cast<Int64>(pairs.host.work.size()));
  std::vector<Int> work(static_cast<std::size_t>(halvedLength(PAIRS)));
  const Vector<Int> WORK("WORK", work.data(), static_cast<Int64>(work.size()));
  Int f1, f2, g, IERR;
  halveStructure(PAIRS, WORK, f1, f2, g, IERR);
  ASSERT_EQ(IERR, ierr::ok);
  EXPECT_EQ(2 * f1, PAIRS(header::largestFront));
  EXPECT_EQ(2 * f2, PAIRS(header::largestUpdate));
  EXPECT_EQ(WORK(header::supernodes), PAIRS(header::supernodes));
  EXPECT_LE(WORK(header::freePhase3), WORK.length() + 1);
  const FactorStructure f = factorStructure(WORK), p = factorStructure(PAIRS);
  std::vector<bool> seen(nodes + 1, false);
  for (Int j = 1; j <= nodes; ++j) {
    EXPECT_FALSE(seen[f.PERM(j)]);
    seen[f.PERM(j)] = true;
    EXPECT_EQ(f.INVP(f.PERM(j)), j);
    EXPECT_EQ((p.PERM(2 * j) + 1) / 2, f.PERM(j));
  }
}

// The order of a matrix whose equations do not come in pairs separates them.
TEST(NodeStructure, EquationsThatDoNotStandInPairsAreRefused) {
  SolverRun host(randomMatrix(200, 2.0, false, 3));
  host.analyse();
  const Vector<Int> PAIRS("PAIRS", host.work.data(), static_cast<Int64>(host.work.size()));
  std::vector<Int> work(static_cast<std::size_t>(halvedLength(PAIRS)));
  Int f1, f2, g, IERR;
  halveStructure(PAIRS, {"WORK", work.data(), static_cast<Int64>(work.size())}, f1, f2, g, IERR);
  EXPECT_EQ(IERR, ierr::inconsistent);
}

TEST(NodeStructure, ADamagedOrMissingStructureIsNotRead) {
  Pairs pairs;
  const SparseSystem both = pairs.system();
  SparseSystem own(run), beside(run), before(run);
  ASSERT_TRUE(own.prepareNodes(pairs.COLS(), pairs.ROWI()));
  const std::vector<double> x = solved(own);
  pairs.host.work[header::length + 10] = 2000000000;  // in PERM
  ASSERT_TRUE(beside.prepareNodes(pairs.COLS(), pairs.ROWI(), &both));
  EXPECT_EQ(solved(beside), x);
  run.solver.protocol.lastPhase = 1;
  ASSERT_TRUE(before.prepareNodes(pairs.COLS(), pairs.ROWI(), &both));
  EXPECT_EQ(solved(before), x);
}

}  // namespace
}  // namespace tornwalzen::testing_support
