// Angles, areas and orientation of the formed part.
#include "develop/part_shape.hpp"

#include <gtest/gtest.h>

#include <limits>

#include "develop/test_part.hpp"

using namespace tornwalzen;
using namespace tornwalzen::test;

namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();

/// An isosceles triangle with legs 1 and the given apex angle (degrees), in a slanted plane.
TestPart isosceles(double apexDegrees) {
  const double t = apexDegrees * std::acos(-1.0) / 180.0, c = std::cos(t), s = std::sin(t);
  return {{{0, 0, 0}, {0.6, 0, 0.8}, {0.6 * c, s, 0.8 * c}}, {{1, 2, 3}}};
}

}  // namespace

// acos amplifies a rounding error of its argument by 1/sin(angle), here at most 1/sin 5° = 12; a few
// roundings in the unit vectors and the single-precision factor (8e-9 relative) make up the rest.
TEST(PartAngles, SmallestAngleInDegreesWithTheSinglePrecisionFactor) {
  for (const double apex : {5.0, 30.0, 60.0}) {
    TestPart part = isosceles(apex);
    Int sharp;
    measureAngles(run, part.arrays(), sharp);
    const double expected = apex * std::acos(-1.0) / 180.0 * 57.295780181884766;
    EXPECT_NEAR(part.ELG[2], expected, 57.3 * 12.0 * 8.0 * epsilon);
  }
}

TEST(PartAngles, CountsStrictlyBelowTenDegrees) {
  Int sharp;
  TestPart below = isosceles(9.9999), above = isosceles(10.0001);
  below.bind();
  measureAngles(run, below.arrays(), sharp);
  EXPECT_EQ(sharp, 1);
  above.bind();
  measureAngles(run, above.arrays(), sharp);
  EXPECT_EQ(sharp, 0);
}

TEST(PartAngles, ZeroLengthEdgeIsNotGuarded) {
  TestPart part({{0, 0, 0}, {0, 0, 0}, {1, 0, 0}}, {{1, 2, 3}});
  Int sharp;
  measureAngles(run, part.arrays(), sharp);
  EXPECT_TRUE(std::isnan(part.ELG[2]));
  EXPECT_EQ(sharp, 0);
}

TEST(PartAreas, OfTheSpatialTriangleAndTheirSum) {
  TestPart part({{0, 0, 0}, {3, 0, 4}, {0, 2, 0}, {3, 2, 4}}, {{1, 2, 3}, {2, 4, 3}});
  measureAreas(run, part.arrays());
  EXPECT_EQ(part.ELG[8], 5.0);
  EXPECT_EQ(part.ELG[9], 5.0);
  EXPECT_EQ(run.atot, 10.0);
}

TEST(PartOrientation, SumOfZeroExchangesNothing) {
  TestPart part({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, -1, 0}}, {{1, 2, 3}, {1, 2, 4}});
  part.RX = {0, 0, 1, 0, 0, 1, 0, -1};
  part.ELG[8] = part.ELG[9] = 0.5;
  const auto before = part.INTA;
  orientCounterClockwise(run, part.arrays());
  EXPECT_EQ(part.INTA, before);
}

TEST(PartOrientation, AnyTriangleMayDecideTheSign) {
  for (const double sign : {1.0, -1.0})
    for (int large = 0; large < 2; ++large) {  // the first or the last has the larger area
      const double a[2] = {large == 0 ? 3.0 : 1.0, large == 1 ? 3.0 : 1.0};
      TestPart part({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, -1, 0}}, {{1, 2, 3}, {1, 2, 4}});
      part.RX = {0, 0, 1, 0, 0, sign * a[0], 0, -sign * a[1]};
      part.ELG[8] = part.ELG[9] = 0.5;
      const auto before = part.INTA;
      orientCounterClockwise(run, part.arrays());
      const bool stays = (large == 0) == (sign > 0.0);
      EXPECT_EQ(part.INTA == before, stays) << "sign " << sign << ", triangle " << large + 1;
    }
}
