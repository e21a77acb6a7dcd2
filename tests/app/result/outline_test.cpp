#include "result/outline.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "app/refusal.hpp"

using namespace host;
using testing::ElementsAre;

namespace {

// A square ring of eight triangles around a square hole: nodes 1..4 outside, 5..8 inside.
const std::vector<std::int32_t> ringCorners{1, 2, 5, 2, 6, 5, 2, 3, 6, 3, 7, 6,
                                            3, 4, 7, 4, 8, 7, 4, 1, 8, 1, 5, 8};
const std::vector<double> ringPositions{0, 0, 4, 0, 4, 4, 0, 4, 1, 1, 3, 1, 3, 3, 1, 3};

}  // namespace

TEST(Outline, OfARingIsItsOuterLoopAndItsHole) {
  const Outline outline = outlineOf(ringCorners, ringPositions);
  ASSERT_EQ(outline.loops.size(), 2u);
  EXPECT_THAT(outline.loops[0].nodes, ElementsAre(1, 2, 3, 4));
  EXPECT_EQ(outline.loops[0].area, 16.0);
  EXPECT_THAT(outline.loops[1].nodes, ElementsAre(5, 8, 7, 6));  // the sheet on the left: clockwise
  EXPECT_EQ(outline.loops[1].area, -4.0);
  EXPECT_EQ(outline.crossings, 0);
}

TEST(Outline, OfOneTriangle) {
  const Outline outline = outlineOf({3, 1, 2}, {0, 0, 1, 0, 0, 2});
  ASSERT_EQ(outline.loops.size(), 1u);
  EXPECT_THAT(outline.loops[0].nodes, ElementsAre(1, 2, 3));
  EXPECT_EQ(outline.loops[0].area, 1.0);
}

// Two triangles that touch at a node of a third, fan-like: the border passes node 1 twice and stays one loop.
TEST(Outline, PassesANodeWhereSheetMeetsSheetOnEachSideByItself) {
  // 1-2-3 and 1-4-5 meet in node 1 alone; 2-6-3 hangs on the first
  const Outline outline = outlineOf({1, 2, 3, 1, 4, 5}, {0, 0, 1, 0, 1, 1, -1, 0, -1, -1});
  ASSERT_EQ(outline.loops.size(), 2u);
  EXPECT_EQ(outline.loops[0].nodes.size(), 3u);
  EXPECT_EQ(outline.loops[1].nodes.size(), 3u);
  EXPECT_EQ(outline.crossings, 0);
}

TEST(Outline, ThatCrossesItselfIsCounted) {
  std::vector<double> positions = ringPositions;
  positions[2 * 5 - 2] = -1.0;  // node 5, a corner of the hole, beyond the outer edge 1-4
  const Outline outline = outlineOf(ringCorners, positions);
  EXPECT_EQ(outline.crossings, 2);  // both edges of the hole that end there cross that edge
}

TEST(Outline, TouchingIsNoCrossing) {
  std::vector<double> positions = ringPositions;
  positions[2 * 5 - 2] = 0.0;  // node 5 on the outer edge 1-4
  EXPECT_EQ(outlineOf(ringCorners, positions).crossings, 0);
}

// Against all pairs, on random zigzags.
TEST(Outline, CrossingsAreThoseOfAllPairs) {
  unsigned seed = 7;
  const auto unit = [&] {
    return static_cast<double>((seed = seed * 1664525u + 1013904223u) >> 8) / 16777216.0;
  };
  for (int round = 0; round < 20; ++round) {
    OutlineLoop loop;
    for (int k = 0; k < 40; ++k) {
      loop.nodes.push_back(k + 1);
      loop.points.push_back({unit(), unit()});
    }
    std::int64_t expected = 0;
    const auto at = [&](int k) { return loop.points[static_cast<std::size_t>(k % 40)]; };
    for (int i = 0; i < 40; ++i)
      for (int j = i + 2; j < 40; ++j) {
        if (i == 0 && j == 39) continue;
        // the parameters of the point where the two lines meet
        const PlanePoint a = at(i), b = at(i + 1), c = at(j), d = at(j + 1);
        const double det = (b[0] - a[0]) * (c[1] - d[1]) - (b[1] - a[1]) * (c[0] - d[0]);
        const double s = ((c[0] - a[0]) * (c[1] - d[1]) - (c[1] - a[1]) * (c[0] - d[0])) / det;
        const double t = ((b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0])) / det;
        expected += s > 0 && s < 1 && t > 0 && t < 1;
      }
    EXPECT_EQ(countCrossings({loop}), expected);
    EXPECT_GT(expected, 0);
  }
}

TEST(Outline, RefusalsNameNodes) {
  std::vector<double> positions = ringPositions;
  positions[3] = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(refusal([&] { outlineOf(ringCorners, positions); }),
            "no outline of the blank: the position of node 2 is not finite");
  EXPECT_EQ(refusal([&] {
              outlineOf({1, 2, 3, 1, 2, 4}, ringPositions);
            }),
            "no outline of the blank: two triangles run from node 1 to node 2");
  EXPECT_EQ(refusal([&] {
              outlineOf({1, 2, 3, 1, 3, 4, 1, 4, 2, 2, 4, 3}, ringPositions);
            }),
            "no outline of the blank: it has no border");
}
