// The negative selectors, on both sides of every limit: at the limit and at the neighbouring doubles.
#include "deckio/hold_rules.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using namespace tornwalzen;

struct Held {
  bool x, y;
  bool operator==(const Held&) const = default;
};
void PrintTo(const Held& held, std::ostream* out) {
  *out << "x " << held.x << ", y " << held.y;
}

// What the rule does with one node at (x, y), between two nodes far away that nothing holds.
Held held(Int selector, double x, double y) {
  const std::vector<double> KNG = {1e6, x, 1e6, 1e6, y, 1e6, 0.0, 0.0, 0.0};
  std::vector<Int> ARFA(6, 1);
  holdByRule(selector, {"KNG", KNG.data(), 3, 3}, 3, {"ARFA", ARFA.data(), 6});
  EXPECT_EQ(ARFA[0] + ARFA[1] + ARFA[4] + ARFA[5], 4);
  return {ARFA[2] == 0, ARFA[3] == 0};
}
double below(double v) {
  return std::nextafter(v, -std::numeric_limits<double>::infinity());
}
double above(double v) {
  return std::nextafter(v, std::numeric_limits<double>::infinity());
}

// The widened single-precision limits, spelled out.
constexpr double xLeft = -357.8999938964844, yWide = 101.16000366210938, yCorner = 105.4000015258789;
constexpr double axis = 0.10000000149011612;
constexpr double farX = 1000.0, farY = 1000.0;  // holds nothing

TEST(HoldRules, SelectorMinusOneHoldsXUpToItsLimitAndAtIt) {
  EXPECT_TRUE(held(-1, below(xLeft), farY).x);
  EXPECT_TRUE(held(-1, xLeft, farY).x);
  EXPECT_FALSE(held(-1, above(xLeft), farY).x);
  EXPECT_TRUE(held(-1, -357.9, farY).x);  // the decimal lies a little below the limit
}

TEST(HoldRules, SelectorMinusOneHoldsYBelow101) {
  EXPECT_TRUE(held(-1, farX, below(101.0)).y);
  EXPECT_FALSE(held(-1, farX, 101.0).y);
  EXPECT_FALSE(held(-1, farX, above(101.0)).y);
}

TEST(HoldRules, SelectorMinusTwoHoldsXAsMinusOneDoes) {
  EXPECT_TRUE(held(-2, below(xLeft), farY).x);
  EXPECT_TRUE(held(-2, xLeft, farY).x);
  EXPECT_FALSE(held(-2, above(xLeft), farY).x);
}

TEST(HoldRules, SelectorMinusTwoHoldsYBelowItsFirstLimit) {
  EXPECT_TRUE(held(-2, farX, below(yWide)).y);
  EXPECT_FALSE(held(-2, farX, yWide).y);
  EXPECT_FALSE(held(-2, farX, above(yWide)).y);
  EXPECT_TRUE(held(-2, farX, 101.16).y);  // the decimal lies a little below the limit
}

TEST(HoldRules, SelectorMinusTwoHoldsYInTheCorner) {
  EXPECT_EQ(held(-2, -700.0, 103.0), (Held{true, true}));
  EXPECT_TRUE(held(-2, -700.0, below(yCorner)).y);
  EXPECT_FALSE(held(-2, -700.0, yCorner).y);
  EXPECT_FALSE(held(-2, -700.0, above(yCorner)).y);
  EXPECT_TRUE(held(-2, -700.0, 105.4).y);  // the decimal lies a little below the limit
  EXPECT_TRUE(held(-2, below(-684.0), 103.0).y);
  EXPECT_FALSE(held(-2, -684.0, 103.0).y);
  EXPECT_FALSE(held(-2, above(-684.0), 103.0).y);
}

TEST(HoldRules, SelectorMinusThreeHoldsBelowASingleTenth) {
  EXPECT_EQ(held(-3, below(axis), farY), (Held{true, false}));
  EXPECT_EQ(held(-3, axis, farY), (Held{false, false}));
  EXPECT_EQ(held(-3, above(axis), farY), (Held{false, false}));
  EXPECT_EQ(held(-3, farX, below(axis)), (Held{false, true}));
  EXPECT_EQ(held(-3, farX, axis), (Held{false, false}));
  EXPECT_EQ(held(-3, farX, above(axis)), (Held{false, false}));
  EXPECT_EQ(held(-3, 0.1, 0.1), (Held{true, true}));  // 0.1 as a double lies a little below the limit
}

TEST(HoldRules, AllOtherSelectorsHoldNothing) {
  for (Int selector : {0, -4, -5, 1, 7, std::numeric_limits<Int>::min()})
    EXPECT_EQ(held(selector, -1000.0, -1000.0), (Held{false, false})) << selector;
}

TEST(HoldRules, ACoordinateThatIsNoNumberHoldsNothing) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (Int selector : {-1, -2, -3}) EXPECT_EQ(held(selector, nan, nan), (Held{false, false})) << selector;
}

TEST(HoldRules, AnEmptyMeshIsLeftAlone) {
  holdByRule(-3, {"KNG", nullptr, 0, 3}, 0, {"ARFA", nullptr, 0});
}

}  // namespace
