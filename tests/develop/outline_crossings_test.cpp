// Crossings of outlines on whole-number grids, where every kind of contact occurs, against all pairs in whole numbers.
#include "develop/outline_crossings.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>

using namespace tornwalzen;

namespace {

struct GridPoint {
  std::int64_t x, y;
  bool operator==(const GridPoint& o) const { return x == o.x && y == o.y; }
  GridPoint operator-(const GridPoint& o) const { return {x - o.x, y - o.y}; }
};
using Loop = std::vector<GridPoint>;
__extension__ using Wide = __int128;

int cross(const GridPoint& a, const GridPoint& b) {
  const Wide d = Wide{a.x} * b.y - Wide{a.y} * b.x;
  return d > 0 ? 1 : (d < 0 ? -1 : 0);
}

/// Loops as an outline of nodes 1, 2, ... in turn.
struct TestOutline {
  PartTopology T;
  std::vector<double> blank;

  explicit TestOutline(const std::vector<Loop>& loops, Int pieces = 0) {
    Int count = 0;
    for (const Loop& loop : loops) count += static_cast<Int>(loop.size());
    T.edgesClean = true;
    T.pieces = pieces;
    T.loops = static_cast<Int>(loops.size());
    EXPECT_TRUE(T.LOOPNODE.allocate(count));
    EXPECT_TRUE(T.LOOPSTART.allocate(T.loops + 1));
    Int s = 1, l = 1;
    for (const Loop& loop : loops) {
      T.LOOPSTART.vector()(l++) = s;
      for (const GridPoint& p : loop) {
        T.LOOPNODE.vector()(s) = s;
        ++s;
        blank.insert(blank.end(), {double(p.x), double(p.y)});
      }
    }
    T.LOOPSTART.vector()(l) = s;
  }
  OutlineCheck check() const {
    OutlineCheck C;
    EXPECT_TRUE(checkOutline(T, {"RX", blank.data(), static_cast<Int64>(blank.size())}, C));
    return C;
  }
};

/// Directions in the order of their angle, 0 to 360 degrees.
bool angleLess(const GridPoint& a, const GridPoint& b) {
  const auto half = [](const GridPoint& d) { return d.y > 0 || (d.y == 0 && d.x > 0) ? 0 : 1; };
  if (half(a) != half(b)) return half(a) < half(b);
  return cross(a, b) > 0;
}

/// Two paths through one point, by the directions of their legs: do they take turns round it? Legs that lie upon each
/// other tell nothing.
bool interleaved(const GridPoint (&path)[2], const GridPoint (&other)[2]) {
  std::vector<std::pair<GridPoint, int>> legs{{path[0], 0}, {path[1], 0}, {other[0], 1}, {other[1], 1}};
  std::sort(legs.begin(), legs.end(),
            [](const auto& a, const auto& b) { return angleLess(a.first, b.first); });
  for (int i = 0; i < 4; ++i) {
    const auto &a = legs[i], &b = legs[(i + 1) % 4];
    if (!angleLess(a.first, b.first) && !angleLess(b.first, a.first)) return false;
  }
  return legs[0].second != legs[1].second && legs[1].second != legs[2].second &&
         legs[2].second != legs[3].second;
}

struct Edge {
  GridPoint before, p, q;
  std::size_t loop, index, size;
};

Int64 plainCrossings(const std::vector<Loop>& loops) {
  std::vector<Edge> edges;
  for (std::size_t l = 0; l < loops.size(); ++l)
    for (std::size_t i = 0, n = loops[l].size(); i < n; ++i)
      edges.push_back({loops[l][(i + n - 1) % n], loops[l][i], loops[l][(i + 1) % n], l, i, n});
  const auto inside = [](const Edge& e, const GridPoint& r) {
    if (cross(e.q - e.p, r - e.p) != 0) return false;
    const GridPoint d = e.q - e.p, f = r - e.p;
    const std::int64_t along = d.x * f.x + d.y * f.y, all = d.x * d.x + d.y * d.y;
    return 0 < along && along < all;
  };
  Int64 count = 0;
  for (std::size_t s = 0; s < edges.size(); ++s)
    for (std::size_t t = s + 1; t < edges.size(); ++t) {
      const Edge &a = edges[s], &b = edges[t];
      if (a.loop == b.loop && ((a.index + 1) % a.size == b.index || (b.index + 1) % a.size == a.index))
        continue;
      const int r = cross(a.q - a.p, b.p - a.p), u = cross(a.q - a.p, b.q - a.p);
      const int p = cross(b.q - b.p, a.p - b.p), q = cross(b.q - b.p, a.q - b.p);
      const GridPoint pathA[2] = {a.before - a.p, a.q - a.p}, pathB[2] = {b.before - b.p, b.q - b.p};
      if (r * u < 0 && p * q < 0) {
        ++count;
      } else if (a.p == b.p) {
        count += interleaved(pathA, pathB);
      } else if (inside(a, b.p)) {
        const GridPoint straight[2] = {a.p - b.p, a.q - b.p};
        count += interleaved(straight, pathB);
      } else if (inside(b, a.p)) {
        const GridPoint straight[2] = {b.p - a.p, b.q - a.p};
        count += interleaved(straight, pathA);
      }
    }
  return count;
}

Loop square(std::int64_t x, std::int64_t y, std::int64_t side, bool hole = false) {
  Loop loop{{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}};
  if (hole) std::reverse(loop.begin(), loop.end());
  return loop;
}

void expectOutline(const OutlineCheck& C, Int64 crossings, Int64 touches, Int misplaced) {
  EXPECT_EQ(C.crossings, crossings);
  EXPECT_EQ(C.touches, touches);
  EXPECT_EQ(C.misplacedLoops, misplaced);
  EXPECT_TRUE(C.complete);
}

}  // namespace

TEST(OutlineCrossings, SquareWithHolesIsRight) {
  expectOutline(TestOutline({square(0, 0, 10), square(1, 1, 3, true), square(5, 5, 2, true)}, 1).check(), 0,
                0, 0);
  expectOutline(TestOutline({}).check(), 0, 0, 0);
}

TEST(OutlineCrossings, FigureEight) {
  const OutlineCheck C = TestOutline({{{0, 0}, {4, 4}, {4, 0}, {0, 2}}}, 1).check();
  EXPECT_EQ(C.crossings, 1);
  EXPECT_EQ(C.touches, 0);
  EXPECT_DOUBLE_EQ(C.PLACE[0], 4.0 / 3.0);
  EXPECT_DOUBLE_EQ(C.PLACE[1], 4.0 / 3.0);
  EXPECT_EQ(C.NODE[0], 1);
  EXPECT_EQ(C.NODE[1], 3);
}

TEST(OutlineCrossings, HoleThatPokesOut) {
  const OutlineCheck C = TestOutline({square(0, 0, 10), square(8, 3, 4, true)}, 1).check();
  EXPECT_EQ(C.crossings, 2);
  EXPECT_EQ(C.PLACE[0], 10.0);
  EXPECT_EQ(C.PLACE[1], 7.0);
  EXPECT_EQ(C.NODE[0], 2);
}

TEST(OutlineCrossings, LoopsThatLieWrongly) {
  const OutlineCheck outside = TestOutline({square(0, 0, 10), square(20, 0, 2, true)}, 1).check();
  expectOutline(outside, 0, 0, 1);
  EXPECT_EQ(outside.firstMisplacedNode, 5);
  expectOutline(TestOutline({square(0, 0, 10), square(2, 2, 6, true), square(4, 4, 2, true)}, 1).check(), 0,
                0, 1);
  expectOutline(TestOutline({square(0, 0, 10, true)}, 1).check(), 0, 0, 1);             // seen from behind
  expectOutline(TestOutline({square(0, 0, 10), square(2, 2, 2)}, 1).check(), 0, 0, 1);  // hole turned over
  expectOutline(TestOutline({square(0, 0, 2), square(20, 2, 3)}, 1).check(), 0, 0,
                1);  // two outlines, one piece
  expectOutline(TestOutline({square(0, 0, 2), square(20, 2, 3)}, 2).check(), 0, 0, 0);
  expectOutline(TestOutline({square(2, 2, 3), square(0, 0, 10)}, 2).check(), 0, 0, 1);  // piece upon piece
  expectOutline(
      TestOutline({square(0, 0, 10), square(1, 1, 8, true), square(2, 2, 6), square(3, 3, 1, true)}, 2)
          .check(),
      0, 0, 0);  // a piece that lies in a hole of the other
}

TEST(OutlineCrossings, TouchingIsNoCrossing) {
  // A hole's corner on the outer edge, and on the outer corner.
  expectOutline(TestOutline({{{0, 0}, {10, 0}, {10, 10}, {0, 10}}, {{10, 5}, {5, 3}, {5, 7}}}, 1).check(), 0,
                1, 0);
  EXPECT_EQ(TestOutline({square(0, 0, 10), {{0, 0}, {2, 3}, {3, 2}}}, 1).check().crossings, 0);
  // A U whose ends lie flush, edge on edge.
  expectOutline(
      TestOutline(
          {{{0, 0}, {6, 0}, {6, 6}, {3, 6}, {3, 4}, {4, 4}, {4, 2}, {2, 2}, {2, 4}, {3, 4}, {3, 6}, {0, 6}}},
          1)
          .check(),
      0, 2, 0);
  // A spike that turns back upon its own edge.
  expectOutline(TestOutline({{{0, 0}, {4, 0}, {4, 4}, {4, 8}, {4, 4}, {0, 4}}}, 1).check(), 0, 2, 0);
  // Spikes that fall short of the edge they turn back upon, and that pass it.
  expectOutline(TestOutline({{{0, 0}, {4, 0}, {4, 4}, {4, 2}, {0, 4}}}, 1).check(), 0, 2, 0);
  EXPECT_GE(TestOutline({{{0, 0}, {4, 0}, {4, 4}, {4, -2}, {0, -4}}}, 1).check().touches, 1);
}

TEST(OutlineCrossings, PassingThroughACornerIsOneCrossing) {
  expectOutline(TestOutline({{{0, 0}, {2, 0}, {2, 2}, {0, 2}}, {{1, 1}, {3, 1}, {3, 3}, {1, 3}}}, 2).check(),
                2, 0, 1);
  // Corner on edge, from side to side: (2, 1) lies on the square's right side.
  EXPECT_EQ(TestOutline({square(0, 0, 2), {{1, 1}, {2, 1}, {3, 0}, {3, 3}}}, 2).check().crossings, 2);
  // Corner on corner.
  EXPECT_EQ(
      TestOutline({square(0, 0, 2), {{1, 1}, {2, 2}, {5, 1}, {5, 5}, {-5, 5}, {-5, 1}}}, 2).check().crossings,
      2);
}

TEST(OutlineCrossings, RandomLoopsAgainstAllPairs) {
  std::mt19937 generator(17);
  Int64 most = 0, none = 0;
  for (int trial = 0; trial < 6000; ++trial) {
    const std::int64_t grid = trial % 3 == 0 ? 5 : (trial % 3 == 1 ? 12 : 1 << 20);
    const auto draw = [&](std::int64_t n) { return static_cast<std::int64_t>(generator() % n); };
    std::vector<Loop> loops;
    for (std::int64_t l = 0, count = 1 + draw(3); l < count; ++l) {
      Loop loop;
      for (std::int64_t i = 0, n = 3 + draw(trial % 5 == 0 ? 40 : 5); i < n; ++i) {
        const GridPoint p{draw(grid), draw(grid)};
        if (loop.empty() || !(loop.back() == p)) loop.push_back(p);
      }
      while (loop.size() > 1 && loop.front() == loop.back()) loop.pop_back();
      if (loop.size() >= 3) loops.push_back(loop);
    }
    const OutlineCheck C = TestOutline(loops).check();
    const Int64 expected = plainCrossings(loops);
    ASSERT_EQ(C.crossings, expected) << trial;
    most = std::max(most, expected);
    none += expected == 0;
    if (expected == 0) continue;
    // The place is on both edges, to rounding.
    const auto distance = [&](Int node) {
      const TestOutline outline(loops);
      std::size_t s = static_cast<std::size_t>(node) - 1, l = 0;
      while (s >= loops[l].size()) s -= loops[l++].size();
      const GridPoint p = loops[l][s], d = loops[l][(s + 1) % loops[l].size()] - p;
      return std::fabs(double(d.x) * (C.PLACE[1] - double(p.y)) - double(d.y) * (C.PLACE[0] - double(p.x))) /
             std::hypot(double(d.x), double(d.y));
    };
    EXPECT_LE(distance(C.NODE[0]), 1e-9 * double(grid));
    EXPECT_LE(distance(C.NODE[1]), 1e-9 * double(grid));
  }
  EXPECT_GT(most, 100);
  EXPECT_GT(none, 100);
}

TEST(OutlineCrossings, ALongOutlineWithOneCrossing) {
  // A circle of 50,000 corners, one of which is pulled through the other side.
  Loop circle;
  const Int n = 50000;
  for (Int i = 0; i < n; ++i) {
    const double t = 2.0 * std::acos(-1.0) * i / n;
    circle.push_back({std::llround(1e9 * std::cos(t)), std::llround(1e9 * std::sin(t))});
  }
  expectOutline(TestOutline({circle}, 1).check(), 0, 0, 0);
  circle[100] = {-1'200'000'000, 7};
  const OutlineCheck C = TestOutline({circle}, 1).check();
  EXPECT_EQ(C.crossings, 2);
  EXPECT_EQ(C.NODE[0], 100);
  EXPECT_NEAR(C.PLACE[0], -1e9, 1e5);
}

TEST(OutlineCrossings, CrumpledOutlineEndsAtTheBudget) {
  // All edges cross all others nearly: a star of 20,000 points has 2·10^8 crossings.
  Loop star;
  const Int n = 20001;
  for (Int i = 0; i < n; ++i) {
    const double t = 2.0 * std::acos(-1.0) * ((Int64{i} * (n / 2)) % n) / n;
    star.push_back({std::llround(1e9 * std::cos(t)), std::llround(1e9 * std::sin(t))});
  }
  const OutlineCheck C = TestOutline({star}, 1).check();
  EXPECT_FALSE(C.complete);
  EXPECT_GT(C.crossings, 1000);
}
