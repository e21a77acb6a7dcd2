// Sections of lines and arcs, and their division into rows.
#include "profile.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace {

constexpr double eps = std::numeric_limits<double>::epsilon();

TEST(UnitVector, IsExactAtRightAngles) {
  for (int k = -9; k <= 9; ++k) {
    const shapes::Point2 v = shapes::unitVector(90.0 * k);
    const int quarter = ((k % 4) + 4) % 4;
    EXPECT_EQ(v.x, quarter == 0 ? 1.0 : quarter == 2 ? -1.0 : 0.0) << k;
    EXPECT_EQ(v.y, quarter == 1 ? 1.0 : quarter == 3 ? -1.0 : 0.0) << k;
  }
  EXPECT_NEAR(shapes::unitVector(30.0).y, 0.5, eps);
  EXPECT_EQ(shapes::unitVector(45.0).x, shapes::unitVector(45.0).y);
  EXPECT_NEAR(shapes::unitVector(45.0).x, std::sqrt(0.5), eps);
  EXPECT_EQ(shapes::unitVector(135.0).x, -shapes::unitVector(45.0).x);
}

TEST(GradedDivision, IsUniformWhereNothingFinerIsAsked) {
  const auto s = shapes::gradedDivision(10.0, 2.5, 2.5, 2.5);
  ASSERT_EQ(s.size(), 5u);
  for (int i = 0; i <= 4; ++i) EXPECT_EQ(s[i], 2.5 * i);
}

TEST(GradedDivision, IsFinerAtTheEndThatAsksForIt) {
  const auto s = shapes::gradedDivision(100.0, 1.0, 10.0, 10.0);
  EXPECT_EQ(s.front(), 0.0);
  EXPECT_EQ(s.back(), 100.0);
  for (std::size_t i = 2; i < s.size(); ++i) EXPECT_GT(s[i] - s[i - 1], (s[i - 1] - s[i - 2]) * 0.999) << i;
  EXPECT_LT(s[1], 1.3);
  EXPECT_GT(s[1], 0.8);
}

TEST(Profile, QuarterArcEndsWhereItsCentreSays) {
  shapes::Profile p({0.0, 0.0}, 0.0);
  p.line(10.0).arc(5.0, 90.0).line(7.0);
  EXPECT_EQ(p.end().x, 15.0);
  EXPECT_EQ(p.end().y, 12.0);
  EXPECT_NEAR(p.length(), 17.0 + 2.5 * std::numbers::pi, 32 * eps * 25);
  const shapes::Point2 middle = p.point(10.0 + 1.25 * std::numbers::pi);
  EXPECT_NEAR(std::hypot(middle.x - 10.0, middle.y - 5.0), 5.0, 16 * eps * 5);
  EXPECT_NEAR(middle.x - 10.0, 5.0 - middle.y, 64 * eps * 5);
}

TEST(Profile, VerticalLineIsExactlyVertical) {
  shapes::Profile p({0.0, 0.0}, 0.0);
  p.line(1.0 / 3.0).arc(0.7, -90.0).line(11.0);
  const double x = p.end().x;
  for (const auto& row : p.rows(0.3)) {
    if (row.s <= p.length() - 11.0) continue;
    EXPECT_EQ(p.point(row.s).x, x) << row.s;
  }
}

TEST(Profile, ArcHasAtLeastOneRowPer15Degrees) {
  shapes::Profile p({0.0, 0.0}, 0.0);
  p.line(50.0).arc(2.0, 90.0).line(50.0);
  int inArc = 0;
  for (const auto& row : p.rows(10.0)) inArc += row.s > 50.0 && row.s <= 50.0 + std::numbers::pi + 1e-9;
  EXPECT_EQ(inArc, 6);
}

TEST(Profile, RowsOfAFullLengthEndAtTheEnd) {
  shapes::Profile p({0.0, 0.0}, 20.0);
  p.line(3.0).arc(4.0, -60.0).line(2.0);
  const auto rows = p.rows(0.5);
  EXPECT_EQ(rows.front().s, 0.0);
  EXPECT_EQ(rows.back().s, p.length());
  EXPECT_TRUE(rows.back().joint);
  for (std::size_t i = 1; i < rows.size(); ++i) EXPECT_GT(rows[i].s, rows[i - 1].s);
}

}  // namespace
