// The pattern of the global matrix against a naive build by shifting and inserting, entry by entry.
#include "sparse/pattern.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

#include "host_kit/default_run.hpp"

using namespace tornwalzen;

namespace {

struct Pattern {
  std::vector<Int> cols, rowi;
};

// Node columns kept sorted by shifting all later entries at every insertion; then two equations per node, in place,
// from the last node column backwards.
Pattern naivePattern(Int nodes, const std::vector<Int>& inzi) {
  std::vector<Int> cols(nodes + 2), rowi(nodes + 1);
  for (Int i = 1; i <= nodes + 1; ++i) cols[i] = i;
  for (Int i = 1; i <= nodes; ++i) rowi[i] = i;
  Int count = nodes;
  for (std::size_t e = 0; e + 2 < inzi.size(); e += 3)
    for (int a = 0; a < 3; ++a)
      for (int b = 0; b < 3; ++b) {
        const Int p = inzi[e + a], q = inzi[e + b];
        if (p > q) continue;
        Int k = cols[p];
        while (k < cols[p + 1] && rowi[k] < q) ++k;
        if (k < cols[p + 1] && rowi[k] == q) continue;
        rowi.insert(rowi.begin() + k, q);
        for (Int i = p + 1; i <= nodes + 1; ++i) ++cols[i];
        ++count;
      }
  Pattern expanded;
  expanded.cols = {1};
  for (Int n = 1; n <= nodes; ++n)
    for (int half = 1; half >= 0; --half) {
      if (half == 1) expanded.rowi.push_back(2 * n - 1);
      expanded.rowi.push_back(2 * n);
      for (Int k = cols[n] + 1; k < cols[n + 1]; ++k) {
        expanded.rowi.push_back(2 * rowi[k] - 1);
        expanded.rowi.push_back(2 * rowi[k]);
      }
      expanded.cols.push_back(static_cast<Int>(expanded.rowi.size()) + 1);
    }
  EXPECT_EQ(static_cast<Int>(expanded.rowi.size()), 4 * count - nodes);
  return expanded;
}

constexpr Int guard = 0x77777777;

// Builds with the given capacity; guard words stand behind both arrays.
Pattern build(Int nodes, const std::vector<Int>& inzi, Int capacity) {
  freshState();
  run.nkno = run.maxkno = nodes;
  run.nele = run.maxele = static_cast<Int>(inzi.size() / 3);
  run.neq = run.solver.neq = 2 * nodes;
  run.solver.mnsysm = capacity;
  std::vector<Int> INTA(inzi.size());
  for (std::size_t e = 0; e < inzi.size() / 3; ++e)
    for (std::size_t c = 0; c < 3; ++c) INTA[c * (inzi.size() / 3) + e] = inzi[3 * e + c];
  Pattern p;
  p.cols.assign(2 * nodes + 2, guard);
  p.rowi.assign(capacity + 1, guard);
  testing::internal::CaptureStdout();
  buildPattern(run, {"INTA", INTA.data(), run.nele, 3}, {"COLS", p.cols.data(), 2 * nodes + 1},
               {"ROWI", p.rowi.data(), capacity});
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "beginn loeini @" + std::string(65, ' ') + "\n");
  EXPECT_EQ(p.cols.back(), guard);
  EXPECT_EQ(p.rowi.back(), guard);
  p.cols.pop_back();
  p.rowi.pop_back();
  return p;
}

std::vector<Int> randomMesh(Int nodes, Int elements, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<Int> inzi(3 * elements);
  for (Int& n : inzi) n = static_cast<Int>(random() % nodes) + 1;
  return inzi;
}

std::vector<Int> stripMesh(Int squares) {  // 2·(squares + 1) nodes in two rows
  std::vector<Int> inzi;
  for (Int i = 1; i <= squares; ++i) {
    const Int a = 2 * i - 1;
    inzi.insert(inzi.end(), {a, a + 1, a + 3, a, a + 3, a + 2});
  }
  return inzi;
}

}  // namespace

TEST(MatrixStructure, SingleTriangle) {
  const Pattern p = build(3, {1, 2, 3}, 21);
  EXPECT_FALSE(failed(run.ierrso));
  EXPECT_EQ(p.cols, (std::vector<Int>{1, 7, 12, 16, 19, 21, 22}));
  EXPECT_EQ(p.rowi, (std::vector<Int>{1, 2, 3, 4, 5, 6, 2, 3, 4, 5, 6, 3, 4, 5, 6, 4, 5, 6, 5, 6, 6}));
  EXPECT_EQ(run.solver.nsysm, 21);
  EXPECT_EQ(run.solver.neq, 6);
}

TEST(MatrixStructure, CornerOrderDoesNotMatter) {
  const Pattern reference = build(3, {1, 2, 3}, 21);
  for (const std::vector<Int>& corners :
       {std::vector<Int>{1, 3, 2}, {2, 1, 3}, {2, 3, 1}, {3, 1, 2}, {3, 2, 1}}) {
    const Pattern p = build(3, corners, 21);
    EXPECT_EQ(p.cols, reference.cols);
    EXPECT_EQ(p.rowi, reference.rowi);
  }
}

TEST(MatrixStructure, SharedEdgeIsStoredOnce) {
  const Pattern p = build(4, {1, 2, 3, 2, 4, 3}, 40);
  const Pattern reference = naivePattern(4, {1, 2, 3, 2, 4, 3});
  EXPECT_EQ(run.solver.nsysm, 4 * 9 - 4);
  EXPECT_EQ(std::vector<Int>(p.rowi.begin(), p.rowi.begin() + run.solver.nsysm), reference.rowi);
}

TEST(MatrixStructure, NodeWithoutElementKeepsItsDiagonalBlock) {
  const Pattern p = build(4, {1, 2, 4}, 24);
  EXPECT_EQ(run.solver.nsysm, 24);
  EXPECT_EQ(p.cols[6] - p.cols[4], 3);
  EXPECT_EQ(std::vector<Int>(p.rowi.begin() + p.cols[4] - 1, p.rowi.begin() + p.cols[6] - 1),
            (std::vector<Int>{5, 6, 6}));
}

TEST(MatrixStructure, CapacityExactPassesOneLessFails) {
  build(3, {1, 2, 3}, 21);
  EXPECT_FALSE(failed(run.ierrso));
  const Pattern p = build(3, {1, 2, 3}, 20);
  EXPECT_TRUE(failed(run.ierrso));
  EXPECT_EQ(std::string(run.messages.MSGSTR_solver, 36), " FATALER FEHLER : mnsysm zu klein @ ");
  EXPECT_EQ(p.cols, (std::vector<Int>{1, 7, 12, 16, 19, 21, 22}));
}

TEST(MatrixStructure, MatchesTheNaiveBuildOnRandomMeshes) {
  for (unsigned seed = 1; seed <= 200; ++seed) {
    const Int nodes = static_cast<Int>(seed % 29) + 1, elements = static_cast<Int>(seed * 7 % 60);
    const std::vector<Int> inzi = randomMesh(nodes, elements, seed);
    const Pattern reference = naivePattern(nodes, inzi);
    const Int entries = static_cast<Int>(reference.rowi.size());
    for (Int capacity : {entries, entries + 5, entries / 2, 0}) {
      const Pattern p = build(nodes, inzi, capacity);
      EXPECT_EQ(p.cols, reference.cols);
      const Int stored = std::min(entries, capacity);
      EXPECT_TRUE(std::equal(p.rowi.begin(), p.rowi.begin() + stored, reference.rowi.begin()));
      EXPECT_EQ(failed(run.ierrso), capacity < entries);
    }
  }
}

TEST(MatrixStructure, RepeatedCornersAddNothing) {
  const Pattern p = build(2, {1, 1, 2, 2, 2, 2}, 10);
  EXPECT_FALSE(failed(run.ierrso));
  EXPECT_EQ(p.cols, (std::vector<Int>{1, 5, 8, 10, 11}));
}

TEST(MatrixStructure, EmptyMesh) {
  const Pattern p = build(0, {}, 0);
  EXPECT_FALSE(failed(run.ierrso));
  EXPECT_EQ(p.cols, (std::vector<Int>{1}));
  EXPECT_EQ(run.solver.nsysm, 0);
}

TEST(MatrixStructure, LongStripHasTheNaiveCounts) {
  const std::vector<Int> inzi = stripMesh(1000);
  const Pattern reference = naivePattern(2002, inzi);
  const Pattern p = build(2002, inzi, static_cast<Int>(reference.rowi.size()));
  EXPECT_EQ(p.rowi, reference.rowi);
}

TEST(MatrixStructure, NodeNumberOutOfRangeIsReportedAndRefused) {
  for (Int bad : {0, -5, 4, std::numeric_limits<Int>::max(), std::numeric_limits<Int>::min()}) {
    testing::internal::CaptureStderr();
    build(3, {1, 2, bad}, 30);
    const std::string message = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(failed(run.ierrso));
    if (bad > 3)
      EXPECT_EQ(message, "fort: (2): Subscript #1 of the array KNG has value " + std::to_string(bad) +
                             " which is greater than the upper bound of 3\n");
    else
      EXPECT_EQ(message, "fort: (3): Subscript #1 of the array KNG has value " + std::to_string(bad) +
                             " which is less than the lower bound of 1\n");
  }
}

TEST(MatrixStructure, CountsThatCannotBeWorkedWithAreRefused) {
  constexpr Int most = std::numeric_limits<Int>::max();
  const auto usable = [](Int nkno, Int nele, Int neq, Int mnsysm) {
    freshState();
    const bool answer = meshCountsUsable(run, nkno, nele, neq, mnsysm);
    EXPECT_EQ(failed(run.ierrso), !answer);
    EXPECT_EQ(std::string(run.messages.MSGSTR_solver, 18) == " FATALER FEHLER : ", !answer);
    return answer;
  };
  EXPECT_TRUE(usable(0, 0, 0, 0));
  EXPECT_TRUE(usable(3, 1, 6, 21));
  EXPECT_FALSE(usable(-1, 1, -2, 21));
  EXPECT_FALSE(usable(3, -1, 6, 21));
  EXPECT_FALSE(usable(3, 1, 6, -1));
  EXPECT_FALSE(usable(3, 1, 5, 21));
  EXPECT_FALSE(usable(3, 1, 7, 21));
  EXPECT_FALSE(usable(1 << 30, 1, std::numeric_limits<Int>::min(), 21));  // 2·nkno wraps to this in 32 bits
  EXPECT_FALSE(usable(3, most / 3 + 1, 6, 21));
  EXPECT_TRUE(usable(3, most / 3, 6, 21));
}
