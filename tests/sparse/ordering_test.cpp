// The ordering: a permutation, little fill, counts that agree with an elimination on sets, refused patterns.
#include "sparse/ordering.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <set>

#include "solver_run.hpp"
#include "sparse/supernodes.hpp"
#include "sparse/work_layout.hpp"

using namespace tornwalzen;
using namespace tornwalzen::testing_support;

namespace {

struct Ordered {
  std::vector<Int> work, perm;
  Int s = 0, m = 0, IERR = 0;
  OrderedStructure structure;
};

Ordered order(const SparseMatrix& a, Int64 shorter = 0) {
  Ordered o;
  o.work.assign(static_cast<std::size_t>(orderingLength(a.n, static_cast<Int64>(a.rowi.size())) - shorter),
                -99);
  const Vector<Int> WORK("WORK", o.work.data(), static_cast<Int64>(o.work.size()));
  orderingPhase({"COLS", a.cols.data(), a.n + 1}, {"ROWI", a.rowi.data(), static_cast<Int64>(a.rowi.size())},
                WORK, o.s, o.m, o.IERR);
  if (o.IERR == ierr::ok) {
    o.structure = orderedStructure(WORK, a.n, WORK(header::adjacency), o.m);
    for (Int i = 1; i <= a.n; ++i) o.perm.push_back(o.structure.PERM(i));
  }
  return o;
}

// Rows of every column of L, by eliminating on sets.
std::vector<std::set<Int>> columnsOfFactor(const SparseMatrix& a, const std::vector<Int>& perm) {
  std::vector<Int> place(a.n + 1);
  for (Int j = 0; j < a.n; ++j) place[perm[j]] = j + 1;
  std::vector<std::set<Int>> rows(a.n + 1);
  for (Int j = 1; j <= a.n; ++j)
    for (Int k = a.cols[j - 1] - 1; k < a.cols[j] - 1; ++k)
      rows[std::min(place[j], place[a.rowi[k]])].insert(std::max(place[j], place[a.rowi[k]]));
  for (Int j = 1; j <= a.n; ++j) {
    const auto next = rows[j].upper_bound(j);
    if (next != rows[j].end()) rows[*next].insert(next, rows[j].end());
  }
  return rows;
}

}  // namespace

TEST(Ordering, IsAPermutationWithItsInverse) {
  for (unsigned seed = 1; seed < 60; ++seed) {
    const SparseMatrix a = randomMatrix(1 + static_cast<Int>(seed * 5 % 83), 0.2 * seed, false, seed);
    const Ordered o = order(a);
    ASSERT_EQ(o.IERR, ierr::ok);
    std::vector<Int> sorted = o.perm, identity(a.n);
    std::sort(sorted.begin(), sorted.end());
    std::iota(identity.begin(), identity.end(), 1);
    EXPECT_EQ(sorted, identity);
    for (Int i = 1; i <= a.n; ++i) EXPECT_EQ(o.structure.PERM(o.structure.INVP(i)), i);
  }
}

TEST(Ordering, SupernodesHoldTheColumnsOfTheFactor) {
  for (unsigned seed = 1; seed < 60; ++seed) {
    const SparseMatrix a =
        seed % 3 ? randomMatrix(20 + static_cast<Int>(seed), 0.1 * seed, false, seed)
                 : gridMatrix(static_cast<Int>(seed % 11) + 1, static_cast<Int>(seed % 7) + 1, seed);
    const Ordered o = order(a);
    ASSERT_EQ(o.IERR, ierr::ok);
    const std::vector<std::set<Int>> rows = columnsOfFactor(a, o.perm);
    Int64 subscripts = 0, entries = 0;
    for (Int k = 1; k <= o.m; ++k) {
      const Int first = o.structure.XSUP(k), last = o.structure.XSUP(k + 1) - 1;
      std::set<Int> all;  // the supernode's rows: those of all its columns together
      for (Int j = first; j <= last; ++j) {
        all.insert(rows[j].begin(), rows[j].end());
        all.insert(j);
        EXPECT_EQ(o.structure.SUPMAP(j), k);
      }
      EXPECT_EQ(o.structure.COLCNT(k), static_cast<Int>(all.size())) << "seed " << seed << " supernode " << k;
      const auto below = all.upper_bound(last);
      EXPECT_EQ(o.structure.PARENT(k), below == all.end() ? 0 : o.structure.SUPMAP(*below));
      subscripts += static_cast<Int64>(all.size());
      entries += trapezoidEntries(last - first + 1, static_cast<Int64>(all.size()));
    }
    EXPECT_EQ(o.s, subscripts);
    EXPECT_EQ(o.work[header::factorEntries - 1], entries);
    EXPECT_EQ(o.work[header::realRequirement - 1], entries - a.n);
  }
}

TEST(Ordering, KeepsTheAdjacencyUnchanged) {
  const SparseMatrix a = gridMatrix(7, 5, 1);
  const Ordered o = order(a);
  std::vector<std::set<Int>> neighbours(a.n + 1);
  for (Int j = 1; j <= a.n; ++j)
    for (Int k = a.cols[j - 1]; k < a.cols[j] - 1; ++k) {
      neighbours[j].insert(a.rowi[k]);
      neighbours[a.rowi[k]].insert(j);
    }
  for (Int i = 1; i <= a.n; ++i) {
    std::set<Int> kept;
    for (Int k = o.structure.XADJ(i); k < o.structure.XADJ(i + 1); ++k) kept.insert(o.structure.ADJNCY(k));
    EXPECT_EQ(kept, neighbours[i]);
  }
}

TEST(Ordering, PathHasNoFill) {
  std::map<std::pair<Int, Int>, double> entries;
  const Int n = 200;
  for (Int i = 1; i <= n; ++i) {
    entries[{i, i}] = 2.0;
    if (i < n) entries[{i, i + 1}] = -1.0;
  }
  const Ordered o = order(SparseMatrix::fromEntries(n, entries));
  EXPECT_EQ(o.work[header::leanEntries - 1], n - 1);
}

TEST(Ordering, FillOfAGridIsFarBelowThatOfTheBand) {
  const Int n = 40;
  const SparseMatrix a = gridMatrix(n, n, 1);
  const std::vector<std::set<Int>> rows = columnsOfFactor(a, order(a).perm);
  std::size_t fill = 0;
  for (Int j = 1; j <= a.n; ++j) fill += rows[j].size();
  EXPECT_LT(fill, static_cast<std::size_t>(a.n) * 2 * (n + 2) / 2);  // half the band of the natural order
}

// One equation per node, so that the nodes of the search start with one equation each: a triangulated grid.
SparseMatrix scalarGrid(Int nx, Int ny) {
  std::map<std::pair<Int, Int>, double> entries;
  for (Int y = 0; y < ny; ++y)
    for (Int x = 0; x < nx; ++x) {
      const Int i = y * nx + x + 1;
      entries[{i, i}] = 8.0;
      if (x + 1 < nx) entries[{i, i + 1}] = -1.0;
      if (y + 1 < ny) entries[{i, i + nx}] = -1.0;
      if (x + 1 < nx && y + 1 < ny) entries[{i, i + nx + 1}] = -1.0;
    }
  return SparseMatrix::fromEntries(nx * ny, entries);
}

// Entries below the diagonal if always an equation of exactly the least degree goes first, on plain sets.
std::size_t fillOfPlainMinimumDegree(const SparseMatrix& a) {
  std::vector<std::set<Int>> neighbours(a.n + 1);
  std::set<Int> left;
  for (Int j = 1; j <= a.n; ++j) {
    left.insert(j);
    for (Int k = a.cols[j - 1]; k < a.cols[j] - 1; ++k) {
      neighbours[j].insert(a.rowi[k]);
      neighbours[a.rowi[k]].insert(j);
    }
  }
  std::size_t fill = 0;
  while (!left.empty()) {
    const Int v = *std::min_element(
        left.begin(), left.end(), [&](Int i, Int j) { return neighbours[i].size() < neighbours[j].size(); });
    left.erase(v);
    fill += neighbours[v].size();
    for (Int i : neighbours[v]) {
      neighbours[i].insert(neighbours[v].begin(), neighbours[v].end());
      neighbours[i].erase(i);
      neighbours[i].erase(v);
    }
  }
  return fill;
}

// Ties may fall either way, and several nodes are eliminated before the degrees are counted anew: a tenth apart.
TEST(Ordering, FillIsThatOfPlainMinimumDegree) {
  for (const SparseMatrix& a :
       {scalarGrid(30, 30), scalarGrid(12, 50), scalarGrid(7, 40), gridMatrix(15, 15, 1),
        randomMatrix(300, 2.0, false, 3), randomMatrix(200, 1.2, false, 4)})
    EXPECT_LE(static_cast<double>(order(a).work[header::leanEntries - 1]),
              1.1 * static_cast<double>(fillOfPlainMinimumDegree(a)));
}

TEST(Ordering, MalformedPatternsAreRefused) {
  const auto ordered = [](std::vector<Int> cols, std::vector<Int> rowi) {
    SparseMatrix a;
    a.n = static_cast<Int>(cols.size()) - 1;
    a.cols = std::move(cols);
    a.rowi = std::move(rowi);
    return order(a).IERR;
  };
  EXPECT_EQ(ordered({1, 3, 4}, {1, 2, 2}), ierr::ok);
  EXPECT_EQ(ordered({1, 3, 4}, {2, 1, 2}), ierr::badPattern) << "diagonal not first";
  EXPECT_EQ(ordered({1, 4, 5, 6}, {1, 2, 2, 2, 3}), ierr::badPattern) << "row index repeated";
  EXPECT_EQ(ordered({1, 1, 2}, {2}), ierr::badPattern) << "empty column";
  EXPECT_EQ(ordered({1, 3, 4}, {1, 3, 2}), ierr::badPattern) << "row beyond the last equation";
  EXPECT_EQ(ordered({1, 4, 5}, {1, 2, 2, 2}), ierr::badPattern)
      << "more entries than rows below the diagonal";
  EXPECT_EQ(ordered({1, 2, 2}, {1, 2}), ierr::badPattern) << "fewer entries than equations";
}

TEST(Ordering, WorkOneEntryShortLeavesItsRequirement) {
  const SparseMatrix a = gridMatrix(4, 4, 1);
  EXPECT_EQ(order(a).IERR, ierr::ok);
  const Ordered o = order(a, 1);
  EXPECT_EQ(o.IERR, ierr::shortWork1);
  EXPECT_EQ(o.work[header::shortage - 1], 11 * a.n + 40 + 4 * (static_cast<Int>(a.rowi.size()) - a.n));
}

TEST(Ordering, MergeRuleAcceptsSmallAndRefusesEmptySupernodes) {
  EXPECT_TRUE(mergeAllowed(2, 10, 0));
  EXPECT_TRUE(mergeAllowed(100, 300, 0));
  EXPECT_FALSE(mergeAllowed(100, 300, trapezoidEntries(100, 300) / 2));
}
