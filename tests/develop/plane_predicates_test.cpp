// The sign of three points against whole-number arithmetic, where doubles alone would decide wrongly.
#include "develop/plane_predicates.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>

using namespace tornwalzen;

namespace {

__extension__ using Wide = __int128;

struct GridPoint {
  std::int64_t x, y;
};

int wholeNumberSign(const GridPoint& a, const GridPoint& b, const GridPoint& c) {
  const Wide det = Wide{b.x - a.x} * Wide{c.y - a.y} - Wide{b.y - a.y} * Wide{c.x - a.x};
  return det > 0 ? 1 : (det < 0 ? -1 : 0);
}

PlanePoint scaled(const GridPoint& p, double unit) {
  return {double(p.x) * unit, double(p.y) * unit};
}

}  // namespace

TEST(Orientation, OfThreePlainPoints) {
  EXPECT_EQ(orientation({0, 0}, {1, 0}, {0, 1}), 1);
  EXPECT_EQ(orientation({0, 0}, {0, 1}, {1, 0}), -1);
  EXPECT_EQ(orientation({0, 0}, {1, 1}, {3, 3}), 0);
  EXPECT_EQ(orientation({2, 5}, {2, 5}, {3, 3}), 0);
}

// Points within a few grid steps of a long line, up to 2^52 from the origin: the determinant is a few units, the
// products are of 104 bits.
TEST(Orientation, NearALineAgainstWholeNumbers) {
  std::mt19937_64 generator(5);
  int signs[3] = {0, 0, 0}, wrong = 0;
  for (int trial = 0; trial < 200000; ++trial) {
    const auto draw = [&generator](std::int64_t n) {
      return static_cast<std::int64_t>(generator() % (2 * n + 1)) - n;
    };
    const std::int64_t far = std::int64_t{1} << (10 + trial % 40);
    const GridPoint a{draw(far), draw(far)}, step{draw(far / 8 + 1), draw(far / 8 + 1)};
    const GridPoint b{a.x + step.x, a.y + step.y}, c{a.x - 3 * step.x + draw(1), a.y - 3 * step.y + draw(1)};
    const int expected = wholeNumberSign(a, b, c);
    ++signs[expected + 1];
    for (const double unit : {1.0, std::ldexp(1.0, -40), std::ldexp(1.0, 200)}) {
      const PlanePoint p = scaled(a, unit), q = scaled(b, unit), r = scaled(c, unit);
      ASSERT_EQ(orientation(p, q, r), expected);
      ASSERT_EQ(orientation(q, r, p), expected);
      ASSERT_EQ(orientation(q, p, r), -expected);
      ASSERT_EQ(exactOrientation(p, q, r), expected);
    }
    const PlanePoint p = scaled(a, 1.0), q = scaled(b, 1.0), r = scaled(c, 1.0);
    const double naive = p.x * q.y - p.x * r.y - r.x * q.y - p.y * q.x + p.y * r.x + r.y * q.x;
    wrong += (naive > 0.0 ? 1 : (naive < 0.0 ? -1 : 0)) != expected;
  }
  for (const int count : signs) EXPECT_GT(count, 1000);
  EXPECT_GT(wrong, 1000) << "the points are not hard enough";
}

// The decimal 0.1 is no sum of grid steps: the exact sign of the doubles, worked out by hand.
TEST(Orientation, TakesTheDoublesAsTheyAre) {
  // 0.3 is less than 3·0.1 by 2^-54 or so, so (0.3, 0.3) lies on the diagonal, (0.3, 0.1 + 0.2) above it.
  EXPECT_EQ(orientation({0, 0}, {0.1, 0.1}, {0.3, 0.3}), 0);
  EXPECT_EQ(orientation({0, 0}, {0.1, 0.1}, {0.3, 0.1 + 0.2}), 1);
  EXPECT_EQ(orientation({0, 0}, {1e100, 1e100}, {1e-100, std::nextafter(1e-100, 1.0)}), 1);
}
