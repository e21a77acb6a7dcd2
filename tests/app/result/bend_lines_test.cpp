#include "result/bend_lines.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <set>

using namespace host;

namespace {

// A sheet of `rows` rows of two triangles along a profile of points (x, z), 10 wide.
struct Strip {
  std::vector<double> points;
  std::vector<std::int32_t> corners;

  explicit Strip(const std::vector<std::array<double, 2>>& profile) {
    for (const auto& [x, z] : profile)
      for (const double y : {0.0, 10.0}) points.insert(points.end(), {x, y, z});
    for (std::int32_t r = 1; r < static_cast<std::int32_t>(profile.size()); ++r) {
      const std::int32_t a = 2 * r - 1;
      corners.insert(corners.end(), {a, a + 2, a + 1, a + 1, a + 2, a + 3});
    }
  }
};

// Flat for 50 in steps of 2, bent by 90 degrees with radius 5 in 8 rows, flat again.
std::vector<std::array<double, 2>> bendProfile(double radius) {
  std::vector<std::array<double, 2>> profile;
  for (int k = 0; k <= 25; ++k) profile.push_back({2.0 * k, 0.0});
  for (int k = 1; k <= 8; ++k) {
    const double angle = std::numbers::pi / 2 * k / 8;
    profile.push_back({50 + radius * std::sin(angle), radius * (1 - std::cos(angle))});
  }
  for (int k = 1; k <= 25; ++k) profile.push_back({50 + radius, radius + 2.0 * k});
  return profile;
}

}  // namespace

TEST(BendLines, AreTheTwoBordersOfABend) {
  const Strip strip(bendProfile(5.0));
  std::set<std::array<std::int32_t, 2>> lines;
  for (const auto& line : bendLines(strip.corners, strip.points, 20.0)) lines.insert(line);
  // the tangent lines: rows 26 and 34 of nodes, from 1
  EXPECT_TRUE(lines.contains({51, 52}));
  EXPECT_TRUE(lines.contains({67, 68}));
  EXPECT_EQ(lines.size(), 2u);
}

TEST(BendLines, AGentleBendIsFlat) {
  const Strip strip(bendProfile(200.0));
  EXPECT_TRUE(bendLines(strip.corners, strip.points, 20.0).empty());
}

TEST(BendLines, ACreaseIsALine) {
  const Strip strip({{0, 0}, {10, 0}, {20, 0}, {20, 10}, {20, 20}});
  const auto lines = bendLines(strip.corners, strip.points, 1e-3);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0], (std::array<std::int32_t, 2>{5, 6}));
}

TEST(BendLines, FlatOrCollapsedHasNone) {
  EXPECT_TRUE(bendLines({1, 2, 3}, {0, 0, 0, 1, 0, 0, 0, 1, 0}, 5.0).empty());
  EXPECT_TRUE(bendLines({1, 2, 3, 1, 3, 4}, {0, 0, 0, 1, 0, 0, 2, 0, 0, 0, 1, 1}, 5.0).empty());
  EXPECT_TRUE(bendLines({}, {}, 5.0).empty());
}
