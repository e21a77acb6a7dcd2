// Lengths past 31 bits, the numbers of the error codes, and neighbourhoods that only a hash takes for the
// same.
#include <gtest/gtest.h>

#include <limits>
#include <unordered_map>

#include "solver_run.hpp"
#include "sparse/numeric.hpp"
#include "sparse/ordering.hpp"
#include "sparse/phase_guard.hpp"
#include "sparse/supernodes.hpp"
#include "sparse/symbolic.hpp"
#include "sparse/work_layout.hpp"

using namespace tornwalzen;
using namespace tornwalzen::testing_support;

namespace {

constexpr Int largestInt = std::numeric_limits<Int>::max();

std::string solverText() {
  std::string text(run.messages.MSGSTR_solver, messageLength);
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

// The hash of one equation number that the ordering sums over a neighbourhood.
std::uint32_t mixed(Int i) {
  std::uint32_t h = static_cast<std::uint32_t>(i) * 0x9E3779B1u;
  h ^= h >> 15;
  return h * 0x85EBCA77u;
}

// Two different sets of equations out of 3..n, a for equation 1 and b for 2, for which the closed
// neighbourhoods of 1 and 2 have the same hash and the same size.
void findCollision(Int n, std::vector<bool>& a, std::vector<bool>& b) {
  std::mt19937 draw(7);
  const auto drawSet = [&] {
    std::vector<bool> set(static_cast<std::size_t>(n) + 1);
    for (Int count = 0; count < n / 2;) {
      const std::size_t i = 3 + draw() % static_cast<unsigned>(n - 2);
      if (set[i]) continue;
      set[i] = true;
      ++count;
    }
    return set;
  };
  const auto hash = [&](Int i, const std::vector<bool>& set) {
    std::uint32_t sum = mixed(i) + mixed(3 - i);  // 1 and 2 are neighbours of each other
    for (std::size_t k = 3; k < set.size(); ++k) sum += set[k] ? mixed(static_cast<Int>(k)) : 0;
    return sum;
  };
  std::unordered_map<std::uint32_t, std::vector<bool>> seen;
  for (;;) {
    a = drawSet();
    seen.emplace(hash(1, a), a);
    b = drawSet();
    const auto same = seen.find(hash(2, b));
    if (same == seen.end() || same->second == b) continue;
    a = same->second;
    return;
  }
}

}  // namespace

TEST(SolverLimits, ErrorCodesKeepTheirNumbers) {
  EXPECT_EQ(ierr::damaged, -1);
  EXPECT_EQ(ierr::outOfOrder, -2);
  EXPECT_EQ(ierr::badPattern, -10000);
  EXPECT_EQ(ierr::shortWork1, -10001);
  EXPECT_EQ(ierr::shortWork2, -20001);
  EXPECT_EQ(ierr::shortWork3, -30001);
  EXPECT_EQ(ierr::shortWorkSolve, -40001);
}

TEST(SolverLimits, TheRealLengthOfAFactorNearThirtyOneBitsIsFormedInSixtyFour) {
  constexpr Int equations = 1'000'000, requirement = largestInt - 3'999'999;
  EXPECT_EQ(realLength(equations, requirement), Int64{largestInt} + 1);
  EXPECT_EQ(realLength(equations, requirement, 2 * Int64{largestInt}), 3 * Int64{largestInt} + 1);
}

TEST(SolverLimits, AnOrderingLengthPastThirtyOneBitsIsRefusedBySizing) {
  SolverRun solver(gridMatrix(3, 3, 1));
  run.solver.neq = 200'000'000;
  run.solver.nsysm = 200'000'000;
  solver.step(11);
  EXPECT_TRUE(failed(run.ierrso));
  EXPECT_EQ(solverText(), " FATALER FEHLER : FEHLER 1 IN LOESUNGSPHASE @");
}

TEST(SolverLimits, APatternThatNeedsTooMuchWorkIsRefusedByTheOrdering) {
  const SparseMatrix a = gridMatrix(3, 3, 1);
  std::vector<Int> work(1000);
  Int s = -1, m = -1, IERR = 0;
  const Vector<const Int> ROWI("ROWI", a.rowi.data(), 600'000'000);  // only the entries of COLS are read
  orderingPhase({"COLS", a.cols.data(), a.n + 1}, ROWI, {"WORK", work.data(), 1000}, s, m, IERR);
  EXPECT_EQ(IERR, ierr::tooLarge);
  EXPECT_EQ(s, 0);
  EXPECT_EQ(m, 0);
}

TEST(SolverLimits, AFactorPastThirtyOneBitsIsRefusedByTheSymbolicPhase) {
  SolverRun solver(gridMatrix(6, 5, 1));
  for (const Int ido : {11, 12}) {
    solver.step(ido);
    solver.supplyLengths();
  }
  solver.work[header::factorEntries - 1] = largestInt;
  Int f1 = -1, f2 = -1, g = -1, IERR = 0;
  symbolicPhase(run.solver.nsysm, {"WORK", solver.work.data(), run.solver.niwor}, f1, f2, g, IERR);
  EXPECT_EQ(IERR, ierr::tooLarge);
  EXPECT_EQ(g, 0);
}

TEST(SolverLimits, AShortSymbolicPhaseReportsNoSizes) {
  SolverRun solver(gridMatrix(6, 5, 1));
  for (const Int ido : {11, 12}) {
    solver.step(ido);
    solver.supplyLengths();
  }
  Int f1 = -1, f2 = -1, g = -1, IERR = 0;
  symbolicPhase(run.solver.nsysm, {"WORK", solver.work.data(), run.solver.niwreq - 1}, f1, f2, g, IERR);
  EXPECT_EQ(IERR, ierr::shortWork2);
  EXPECT_EQ(f1, 0);
  EXPECT_EQ(f2, 0);
  EXPECT_EQ(g, 0);
}

TEST(SolverLimits, APhaseThatDoesNotExistIsRefused) {
  SolverRun solver(gridMatrix(3, 3, 1));
  solver.analyse();
  solver.factorize();
  for (const Int phase : {0, -1}) {
    PhaseSizes sizes;
    Int IERR = 0;
    runPhase(run, run.solver.protocol, phase, {"COLS", solver.a.cols.data(), solver.a.n + 1},
             {"ROWI", solver.a.rowi.data(), run.solver.nsysm},
             {"SYSM", solver.a.values.data(), run.solver.nsysm},
             {"WORK", solver.work.data(), run.solver.niwor}, {"RWORK", solver.rwork.data(), run.solver.nrk},
             sizes, IERR);
    EXPECT_EQ(IERR, ierr::outOfOrder) << phase;
  }
}

TEST(SolverLimits, EqualHashesOfDifferentNeighbourhoodsAreToldApart) {
  constexpr Int n = 60;
  std::vector<bool> a, b;
  findCollision(n, a, b);
  std::map<std::pair<Int, Int>, double> entries{{{1, 2}, 0.5}};
  for (Int i = 1; i <= n; ++i) entries[{i, i}] = 40.0;
  for (Int i = 3; i <= n; ++i) {
    if (a[static_cast<std::size_t>(i)]) entries[{1, i}] = 0.25;
    if (b[static_cast<std::size_t>(i)]) entries[{2, i}] = -0.5;
  }
  SolverRun solver(SparseMatrix::fromEntries(n, entries));
  solver.analyse();
  solver.factorize();
  ASSERT_FALSE(failed(run.ierrso)) << solverText();
  const std::vector<double> right = randomVector(n, 3);
  EXPECT_LE(solver.scaledResidual(right, solver.solve(right)), 10.0);
}

TEST(SolverLimits, AMergeMayFillExactlyItsShare) {
  EXPECT_TRUE(mergeAllowed(2, 10, trapezoidEntries(2, 10)));  // two columns: all of it
  EXPECT_FALSE(mergeAllowed(2, 10, trapezoidEntries(2, 10) + 1));
}

// The lengths that the host is told are formulas of their own; the arrays must end within them.
TEST(SolverLimits, TheArraysOfEachPhaseLieSideBySideWithinTheReportedLength) {
  for (auto [nx, ny] : {std::pair<Int, Int>{1, 1}, {1, 50}, {6, 5}, {40, 30}}) {
    SolverRun solver(gridMatrix(nx, ny, 1));
    for (const Int ido : {11, 12}) {
      solver.step(ido);
      solver.supplyLengths();
    }
    const Int64 NEQ = run.solver.neq, NNZ = run.solver.nsysm, NADJ = 2 * (NNZ - NEQ),
                m = run.solver.protocol.supernodes;
    const Int64 s = solver.work[header::subscripts - 1];
    const Int64 ordered = 36 + (NEQ + 1) + NADJ + 3 * NEQ + (m + 1) + 2 * m;
    EXPECT_EQ(solver.work[header::freePhase2 - 1], ordered + 1);
    EXPECT_LE(ordered + (m + 1) + s + 3 * NEQ, run.solver.niwreq) << "search of the symbolic phase";
    solver.step(13);
    solver.supplyLengths();
    const Int64 structure = 36 + 3 * NEQ + (m + 1) + m + (m + 1) + 2 * s + (m + 1) + m;
    EXPECT_EQ(solver.work[header::freePhase3 - 1], structure + 1);
    const Int64 numeric = structure + NEQ + (NNZ - NEQ) + NEQ + m;
    const Vector<Int> WORK("WORK", solver.work.data(), run.solver.niwor);
    EXPECT_EQ(numericEnd(WORK, structure + 1, NEQ, NNZ, m), numeric + 1);
    EXPECT_LE(numeric, run.solver.niwreq);
  }
}
