#include "result/smallest_rectangle.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

using namespace host;

namespace {

constexpr double degree = std::numbers::pi / 180.0;

std::vector<PlanePoint> turned(const std::vector<PlanePoint>& points, double degrees) {
  const double c = std::cos(degrees * degree), s = std::sin(degrees * degree);
  std::vector<PlanePoint> result;
  for (const PlanePoint& p : points) result.push_back({c * p[0] - s * p[1] + 3.0, s * p[0] + c * p[1] - 7.0});
  return result;
}

// The area of the box around the points turned by so much.
double boxArea(const std::vector<PlanePoint>& points, double degrees) {
  double low[2] = {1e300, 1e300}, high[2] = {-1e300, -1e300};
  for (const PlanePoint& p : turned(points, degrees))
    for (int k = 0; k < 2; ++k) low[k] = std::min(low[k], p[k]), high[k] = std::max(high[k], p[k]);
  return (high[0] - low[0]) * (high[1] - low[1]);
}

const std::vector<PlanePoint> grid = [] {
  std::vector<PlanePoint> points;
  for (int i = 0; i <= 8; ++i)
    for (int j = 0; j <= 4; ++j) points.push_back({10.0 * i, 10.0 * j});
  return points;
}();

}  // namespace

TEST(SmallestRectangle, OfATurnedRectangleIsThatRectangle) {
  for (const double angle : {0.0, 1.0, 30.0, 44.0, 45.0, 46.0, 89.0, -17.0, -89.0}) {
    const Rectangle rectangle = smallestRectangle(turned(grid, angle));
    EXPECT_NEAR(rectangle.length, 80.0, 1e-12 * 80.0) << angle;
    EXPECT_NEAR(rectangle.width, 40.0, 1e-12 * 80.0) << angle;
    EXPECT_NEAR(rectangle.angle, angle, 1e-10) << angle;
  }
  EXPECT_NEAR(smallestRectangle(turned(grid, 90.0)).angle, 90.0, 1e-10);
}

TEST(SmallestRectangle, OfASquareStandsAsItLies) {
  const Rectangle rectangle = smallestRectangle({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
  EXPECT_EQ(rectangle.length, 1.0);
  EXPECT_EQ(rectangle.width, 1.0);
  EXPECT_EQ(rectangle.angle, 0.0);
}

// A side of the hull bears the rectangle; here it is not the longest one: a right triangle 3, 4, 5 fits 3 x 4 and
// 5 x 2.4, both of area 12, an acute one only that of its best side.
TEST(SmallestRectangle, OfATriangle) {
  const Rectangle right = smallestRectangle({{0, 0}, {4, 0}, {0, 3}});
  EXPECT_NEAR(right.length * right.width, 12.0, 1e-13);
  EXPECT_EQ(right.angle, 0.0);  // of equals the one nearest zero
}

// Compared with the box at half a million angles.
TEST(SmallestRectangle, NoAngleIsBetter) {
  std::mt19937 random(11);
  const auto unit = [&] { return static_cast<double>(random()) / 4294967296.0; };
  for (int round = 0; round < 5; ++round) {
    std::vector<PlanePoint> points;
    for (int k = 0; k < 12 * (round + 1); ++k)
      points.push_back({100.0 * unit(), 40.0 * unit() + 20.0 * unit()});
    const Rectangle found = smallestRectangle(points);
    double least = std::numeric_limits<double>::infinity();
    for (int step = 0; step < 100000; ++step)
      least = std::min(least, boxArea(points, 90.0 * step / 100000.0));
    EXPECT_LE(found.length * found.width, least * (1.0 + 1e-12));
    EXPECT_GE(found.length * found.width, least * (1.0 - 1e-4));  // the angle of a step away
    EXPECT_NEAR(boxArea(points, -found.angle), found.length * found.width, 1e-12 * least);
    EXPECT_GE(found.length, found.width);
  }
}

TEST(SmallestRectangle, FewPointsAndPointsOnALineHaveNoWidth) {
  EXPECT_EQ(smallestRectangle({}).length, 0.0);
  EXPECT_EQ(smallestRectangle({{1, 2}, {1, 2}}).length, 0.0);
  const Rectangle line = smallestRectangle({{0, 0}, {3, 3}, {1, 1}, {2, 2}});
  EXPECT_NEAR(line.length, 3.0 * std::numbers::sqrt2, 1e-14);
  EXPECT_EQ(line.width, 0.0);
  EXPECT_NEAR(line.angle, 45.0, 1e-13);
}
