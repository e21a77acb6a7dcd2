// The level pieces at the rim that a binder presses on.
#include "forces/flange_of_rim.hpp"

#include <gtest/gtest.h>

#include <initializer_list>

#include "flat_sheet.hpp"

namespace forces {
namespace {

constexpr double up[3] = {0.0, 0.0, 1.0};

/// A strip of squares along u: columns between the given ones stand upright or lie at a height of their own.
struct Strip {
  FlatSheet sheet;
  std::vector<Int> PLANE, SCRATCH, FLANGE;

  explicit Strip(Int columns)
      : sheet(columns, 1, 1.0, 1.0, 1.0),
        PLANE(sheet.RX.size(), 0),
        SCRATCH(static_cast<std::size_t>(sheet.elements)),
        FLANGE(SCRATCH.size()) {}
  void stand(std::initializer_list<Int> columns) {
    for (const Int c : columns)
      for (const auto e : {static_cast<std::size_t>(2 * c), static_cast<std::size_t>(2 * c + 1)})
        sheet.AXES[6 * e + 4] = 0.0, sheet.AXES[6 * e + 5] = 1.0;
  }
  void raise(Int from, Int to, double height) {
    for (Int i = from; i <= to; ++i)
      for (Int j = 0; j <= 1; ++j) sheet.knots()(sheet.node(i, j), 3) = height;
  }
  Int find(double thickness) {
    return tornwalzen::flangeOfRim(
        sheet.view(thickness), sheet.knots(), sheet.twins(), {"PLANE", PLANE.data(), 2 * sheet.nodes}, up,
        {"SCRATCH", SCRATCH.data(), sheet.elements}, {"FLANGE", FLANGE.data(), sheet.elements});
  }
  bool under(Int column) const { return FLANGE[static_cast<std::size_t>(2 * column)] == 1; }
};

TEST(FlangeOfRimTest, BothFlangesOfAHatAreOne) {
  Strip hat(12);
  hat.stand({3, 8});  // flanges of three columns at both sides, a crown of four between
  hat.raise(4, 8, 20.0);
  EXPECT_EQ(hat.find(1.0), 12);
  EXPECT_TRUE(hat.under(0) && hat.under(2) && hat.under(9) && hat.under(11));
  EXPECT_FALSE(hat.under(3) || hat.under(5) || hat.under(8));
}

TEST(FlangeOfRimTest, AtTwoHeightsTheLargerOneIsIt) {
  Strip step(10);
  step.stand({6});
  step.raise(7, 10, 5.0);
  EXPECT_EQ(step.find(1.0), 12);
  EXPECT_TRUE(step.under(0));
  EXPECT_EQ(step.find(6.0), 18);  // a sheet so thick does not see the step
}

TEST(FlangeOfRimTest, AreasWithoutARimAreNone) {
  Strip cup(10);
  cup.stand({2, 7});
  cup.raise(3, 7, 9.0);
  for (Int n = 1; n <= cup.sheet.nodes; ++n)
    if (const double x = cup.sheet.knots()(n, 1); x >= 3.0 && x <= 7.0)
      cup.PLANE[static_cast<std::size_t>(2 * n - 1)] =
          1;  // the sides of the bottom lie in planes of symmetry
  EXPECT_EQ(cup.find(1.0), 8);
  EXPECT_FALSE(cup.under(4));
}

// Thirty steps, of which those in the middle of the stairs lie nearest to one another.
TEST(FlangeOfRimTest, OfManyHeightsTheWindowWithMostAreaIsIt) {
  Strip stairs(60);
  for (Int step = 0; step < 30; ++step) {
    stairs.stand({2 * step + 1});
    const double rise = static_cast<double>((step * 7) % 30);  // every height once, in no order
    const double height = rise < 10.0   ? 3.0 * rise
                          : rise < 20.0 ? 30.0 + 0.05 * (rise - 10.0)
                                        : 3.0 * rise - 20.0;
    stairs.raise(2 * step, 2 * step + 1, height);
  }
  EXPECT_EQ(stairs.find(1.0), 20);
  for (Int step = 0; step < 30; ++step) {
    const Int rise = (step * 7) % 30;
    EXPECT_EQ(stairs.under(2 * step), rise >= 10 && rise < 20) << step;
  }
}

TEST(FlangeOfRimTest, TheCrownOfABendIsTooSmall) {
  Strip bend(60);
  for (Int c = 0; c < 60; ++c)
    if (c != 30) bend.stand({c});
  EXPECT_EQ(bend.find(1.0), 0);
  Strip wider(40);
  for (Int c = 0; c < 40; ++c)
    if (c != 30) wider.stand({c});
  EXPECT_EQ(wider.find(1.0), 2);
}

TEST(FlangeOfRimTest, AnUprightSheetHasNone) {
  Strip wall(3);
  wall.stand({0, 1, 2});
  EXPECT_EQ(wall.find(1.0), 0);
}

}  // namespace
}  // namespace forces
