#include "mesh/triangle_shape.hpp"

#include <gtest/gtest.h>

#include <cmath>

using namespace host;

// The height against the longest side, at scales whose fourth powers are no numbers any more, too.
TEST(HasNoArea, FromATenthOfABillionthOfTheLongestSideOn) {
  for (const double scale : {1e-140, 1e-60, 1.0, 1e60, 1e140}) {
    const Vector a{0.0, 0.0, 0.0}, b{scale, 0.0, 0.0};
    for (const double along : {0.0, 0.3, 1.0}) {
      EXPECT_FALSE(hasNoArea(a, b, {along * scale, 0.5 * scale, 0.0})) << scale;
      EXPECT_FALSE(hasNoArea(a, b, {along * scale, 0.0, 1.1e-9 * scale})) << scale;
      EXPECT_FALSE(hasNoArea(a, b, {along * scale, 0.0, 0.9e-9 * scale})) << scale;
      EXPECT_FALSE(hasNoArea(a, b, {along * scale, -1.1e-10 * scale, 0.0})) << scale;
      EXPECT_TRUE(hasNoArea(a, b, {along * scale, 0.9e-10 * scale, 0.0})) << scale;
      EXPECT_TRUE(hasNoArea(a, b, {along * scale, 0.0, 0.0})) << scale;
    }
  }
  EXPECT_TRUE(hasNoArea({1, 2, 3}, {1, 2, 3}, {1, 2, 3}));
}

TEST(HasNoArea, OfACornerThatIsNoNumber) {
  EXPECT_TRUE(hasNoArea({0, 0, 0}, {1, 0, 0}, {0, std::nan(""), 0}));
}
