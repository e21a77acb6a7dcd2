// Round cups of several strokes, radii and frictions under the press model against a calculation in one dimension.
#include <gtest/gtest.h>

#include "verification/axisymmetric_runs.hpp"

namespace verification {
namespace {

class AxisymmetricCupTest : public ::testing::TestWithParam<std::tuple<RingCase, bool>> {};

INSTANTIATE_TEST_SUITE_P(Cups, AxisymmetricCupTest,
                         ::testing::Combine(::testing::ValuesIn(ringCases), ::testing::Bool()),
                         [](const auto& which) {
                           return std::string(std::get<0>(which.param).name) +
                                  (std::get<1>(which.param) ? "WithTools" : "Alone");
                         });

TEST_P(AxisymmetricCupTest, OfEveryStrokeRadiusAndFriction) {
  const auto& [given, tools] = GetParam();
  const RingComparison both = compareWithRings(given, tools, 6000, 0.4);
  ASSERT_TRUE(both.solved);
  ASSERT_EQ(both.exponent, 1.0);
  EXPECT_NEAR(both.edge[0], both.edge[1], 0.03);
  EXPECT_LE(both.spread, 0.01);
  EXPECT_NEAR(both.thinnest[0], both.thinnest[1], 0.001);
  EXPECT_NEAR(both.thickest[0], both.thickest[1], 0.001);
}

}  // namespace
}  // namespace verification
