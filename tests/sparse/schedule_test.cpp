// The divisions of the elimination and of the solves among threads, on the structure of a grid: every supernode in its
// place once, subtrees whole, parents before children, rows behind a range as its lists have them.
#include <gtest/gtest.h>

#include <algorithm>

#include "sparse/factor_schedule.hpp"
#include "sparse/grid_pattern.hpp"
#include "sparse/solve_schedule.hpp"
#include "sparse/solver_run.hpp"
#include "sparse/tree_division.hpp"

namespace tornwalzen::testing_support {
namespace {

constexpr Int side = 120, n = 2 * side * side;

class Schedule : public ::testing::Test {
 protected:
  Schedule() : host(matrix()) { host.analyse(); }
  static SparseMatrix matrix() {
    const GridPattern pattern(side);
    return {n, pattern.cols, pattern.rowi, std::vector<double>(pattern.rowi.size(), 1.0)};
  }
  Vector<Int> WORK() { return {"WORK", host.work.data(), static_cast<Int64>(host.work.size())}; }
  FactorStructure structure() { return factorStructure(WORK()); }
  Int supernodes() { return WORK()(header::supernodes); }

  /// Where each supernode is: the number of its range, or 0 in the top.
  template <class Ranges, class Top>
  std::vector<Int> places(Vector<Ranges> RANGES, Vector<Top> TOP) {
    std::vector<Int> place(static_cast<std::size_t>(supernodes()) + 1, -1);
    const auto put = [&](Int k, Int where) {
      EXPECT_EQ(place[k], -1) << "supernode " << k << " twice";
      place[k] = where;
    };
    for (Int i = 1; i <= RANGES.length(); ++i)
      for (Int k = RANGES(i).first; k <= RANGES(i).last; ++k) put(k, i);
    for (Int i = 1; i <= TOP.length(); ++i) put(TOP(i).supernode, 0);
    for (Int k = 1; k <= supernodes(); ++k) EXPECT_NE(place[k], -1) << "supernode " << k << " nowhere";
    const Vector<Int> PARENT = structure().PARENT;
    for (Int k = 1; k <= supernodes(); ++k) {
      if (PARENT(k) == 0) continue;
      EXPECT_TRUE(place[PARENT(k)] == 0 || place[PARENT(k)] == place[k]) << "a subtree is cut at " << k;
    }
    return place;
  }
  template <class Ranges>
  void expectFallingWork(Vector<Ranges> RANGES, Vector<Int> ORDER) {
    std::vector<bool> taken(static_cast<std::size_t>(RANGES.length()) + 1, false);
    for (Int64 i = 1; i <= ORDER.length(); ++i) {
      EXPECT_FALSE(taken[ORDER(i)]);
      taken[ORDER(i)] = true;
      const Int before = ORDER(i > 1 ? i - 1 : i);
      EXPECT_LE(RANGES(ORDER(i)).work, RANGES(before).work);
    }
    EXPECT_EQ(ORDER.length(), RANGES.length());
  }

  SolverRun host;
};

TEST_F(Schedule, OfTheEliminationHasEverySupernodeOnceAndWholeSubtrees) {
  for (const Int threads : {2, 3, 8}) {
    FactorSchedule s;
    ASSERT_TRUE(makeSchedule(structure(), supernodes(), threads, s));
    ASSERT_TRUE(s.divides);
    places(s.RANGES.vector(), s.TOP.vector());
    expectFallingWork(s.RANGES.vector(), s.ORDER.vector());
    EXPECT_GE(s.RANGES.length(), threads);
    EXPECT_TRUE(
        std::any_of(s.TOP.data(), s.TOP.data() + s.TOP.length(), [](const TopFront& t) { return t.shared; }));
  }
}

TEST_F(Schedule, OfTheSolvesKnowsWhatEachRangeAddsBehindIt) {
  const FactorStructure f = structure();
  for (const Int threads : {2, 3, 8}) {
    SolveSchedule s;
    ASSERT_TRUE(makeSolveSchedule(f, supernodes(), threads, s));
    ASSERT_TRUE(s.divides);
    places(s.RANGES.vector(), s.TOP.vector());
    expectFallingWork(s.RANGES.vector(), s.ORDER.vector());
    EXPECT_GE(s.RANGES.length(), threads);
    std::vector<Int> rows;
    for (Int64 i = 1; i <= s.RANGES.length(); ++i) {
      const SolveRange& r = s.RANGES.vector()(i);
      EXPECT_EQ(r.crossing, static_cast<Int64>(rows.size()));
      for (Int k = r.first; k <= r.last; ++k)
        for (Int64 t = f.XLINDX(k); t < f.XLINDX(k + 1); ++t)
          if (f.LINDX(t) >= f.XSUP(r.last + 1)) rows.push_back(f.LINDX(t));
    }
    EXPECT_EQ(rows, std::vector<Int>(s.CROSSROWS.data(), s.CROSSROWS.data() + s.CROSSROWS.length()));
  }
}

TEST_F(Schedule, OfTheSolvesGoesDownFromParentsToChildren) {
  const FactorStructure f = structure();
  SolveSchedule s;
  ASSERT_TRUE(makeSolveSchedule(f, supernodes(), 8, s));
  const Vector<SolveFront> TOP = s.TOP.vector();
  ASSERT_GT(TOP.length(), 2);
  std::vector<bool> seen(static_cast<std::size_t>(TOP.length()) + 1, false);
  seen[0] = true;  // above a root
  Int64 largest = 0;
  for (Int64 i = 1; i <= TOP.length(); ++i) {
    const SolveFront& front = TOP(s.DOWNWARDS.vector()(i));
    EXPECT_TRUE(seen[front.parent]);
    EXPECT_EQ(front.parent > 0 ? TOP(front.parent).supernode : 0, f.PARENT(front.supernode));
    seen[s.DOWNWARDS.vector()(i)] = true;
  }
  for (Int64 i = 1; i <= s.RANGES.length(); ++i) {
    const SolveRange& r = s.RANGES.vector()(i);
    EXPECT_EQ(r.parent > 0 ? TOP(r.parent).supernode : 0, f.PARENT(r.last));
  }
  for (Int k = 1; k <= supernodes(); ++k) largest = std::max<Int64>(largest, f.XLINDX(k + 1) - f.XLINDX(k));
  EXPECT_EQ(s.largestFront, largest);
}

// What it takes to call the threads is more than a small system is worth, and a chain has no two subtrees.
TEST_F(Schedule, IsNoneWhereOneThreadIsAsFast) {
  TreeDivision division;
  const auto one = [](Int) { return 1.0; };
  ASSERT_TRUE(division.find(structure(), supernodes(), 2, 1e9, one, one));
  EXPECT_FALSE(division.divides());
  ASSERT_TRUE(division.find(structure(), supernodes(), 2, 1.0, one, one));
  EXPECT_TRUE(division.divides());
  double work = 0.0;
  Int64 ranges = 0, top = 0;
  division.walk(
      [&](Int first, Int last, double its) {
        EXPECT_EQ(its, last - first + 1);
        work += its;
        ++ranges;
      },
      [&](Int) { ++top; });
  EXPECT_EQ(work + static_cast<double>(top), supernodes());
  EXPECT_EQ(ranges, division.ranges());
  EXPECT_EQ(top, division.top());
  const Vector<Int> PARENT = structure().PARENT;
  for (Int k = 1; k <= supernodes(); ++k) PARENT(k) = k < supernodes() ? k + 1 : 0;
  ASSERT_TRUE(division.find(structure(), supernodes(), 2, 1.0, one, one));
  EXPECT_FALSE(division.divides());
}

}  // namespace
}  // namespace tornwalzen::testing_support
