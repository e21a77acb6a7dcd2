// Friction of binder, punch, die and beads against hand calculations.
#include "forces/tool_forces.hpp"

#include <gtest/gtest.h>

#include "flat_sheet.hpp"
#include "forces/draw_beads.hpp"

namespace forces {
namespace {

using namespace tornwalzen;

struct ToolForcesTest : ::testing::Test {
  FlatSheet sheet{6, 4, 2.0, 1.1, 1.0};
  std::vector<double> FORCE = std::vector<double>(2 * static_cast<std::size_t>(sheet.elements), 0.0),
                      PRESSURE = FORCE;
  std::vector<Int> FLANGE = std::vector<Int>(static_cast<std::size_t>(sheet.elements), 1);
  Table<double> force() { return {"FORCE", FORCE.data(), 2, sheet.elements}; }
  Vector<double> pressure() { return {"PRESSURE", PRESSURE.data(), sheet.elements}; }
  Vector<const Int> flange() { return {"FLANGE", FLANGE.data(), sheet.elements}; }
  void slide(double s1, double s2) {
    for (std::size_t e = 0; e < FLANGE.size(); ++e) sheet.SLIP[2 * e] = s1, sheet.SLIP[2 * e + 1] = s2;
  }
  double sum(Int row) {
    double total = 0.0;
    for (Int e = 1; e <= sheet.elements; ++e) total += force()(row, e);
    return total;
  }
};

TEST_F(ToolForcesTest, AFlatFlangeUnderABinderIsHeldOnBothFaces) {
  slide(-3.0, 4.0);  // 5 mm: d is shorter than 1 by the 0.2 mm alone
  const BinderGrip grip = addBinderFriction(sheet.view(1.0), flange(), 1000.0, 0.1, force(), pressure());
  const double d = 1.0 / std::sqrt(25.0 + 0.04), area = 12.0 * 8.0;
  EXPECT_NEAR(sum(1), 2 * 0.1 * 1000.0 * 3.0 * d, 1e-9);
  EXPECT_NEAR(sum(2), -2 * 0.1 * 1000.0 * 4.0 * d, 1e-9);
  EXPECT_NEAR(grip.area, area, 1e-9);
  EXPECT_NEAR(grip.largest, 1000.0 / area, 1e-9);
  EXPECT_NEAR(grip.gap, 1.1 - 1000.0 / area / 2000.0, 1e-12);  // the sheet is 1.1 mm thick now
}

TEST_F(ToolForcesTest, ARigidBinderPressesWhereTheSheetIsThick) {
  slide(1.0, 0.0);
  sheet.MAPS[0] = 1.3;  // one triangle thicker by 0.2 mm: it bears alone up to 2000·0.2·2 = 800 N
  const BinderGrip grip = addBinderFriction(sheet.view(1.0), flange(), 700.0, 0.1, force(), pressure());
  EXPECT_NEAR(pressure()(1), 350.0, 1e-9);
  for (Int e = 2; e <= sheet.elements; ++e) EXPECT_EQ(pressure()(e), 0.0) << e;
  EXPECT_NEAR(grip.area, 2.0, 1e-12);
  double total = 0.0;
  FORCE.assign(FORCE.size(), 0.0);
  addBinderFriction(sheet.view(1.0), flange(), 1600.0, 0.1, force(), pressure());
  for (Int e = 1; e <= sheet.elements; ++e)
    total += pressure()(e) * sheet.AREA[static_cast<std::size_t>(e) - 1];
  EXPECT_NEAR(total, 1600.0, 1e-9);
  EXPECT_GT(pressure()(2), 0.0);
}

TEST_F(ToolForcesTest, NothingBearsWithoutAFlange) {
  FLANGE.assign(FLANGE.size(), 0);
  const BinderGrip grip = addBinderFriction(sheet.view(1.0), flange(), 1000.0, 0.1, force(), pressure());
  EXPECT_EQ(grip.area, 0.0);
  EXPECT_EQ(sum(1), 0.0);
}

// A sheet drawn over a cylinder: N' = μ·N/R along the way, so N grows by e^{μθ} (L. Euler, 1762). The friction of each
// column of the sheet lifts N to the next.
TEST_F(ToolForcesTest, OverACylinderTheForceGrowsAsOnACapstan) {
  constexpr Int columns = 400;
  const double radius = 10.0, mu = 0.15, side = 0.05, theta = columns * side / radius;
  sheet = FlatSheet(columns, 1, side, 1.0, 1.0);
  FORCE.assign(2 * static_cast<std::size_t>(sheet.elements), 0.0);
  PRESSURE = FORCE;
  double N = 50.0;  // N/mm
  for (Int column = 0; column < columns; ++column) {
    std::fill(FORCE.begin(), FORCE.end(), 0.0);
    for (std::size_t e = 0; e < sheet.AREA.size(); ++e) {
      sheet.CURVATURE[3 * e] = 1.0 / radius;
      sheet.SLIP[2 * e] = 100.0;
      sheet.FORCES[3 * e] = e / 2 == static_cast<std::size_t>(column) ? N : 0.0;
    }
    addContactFriction(sheet.view(1.0), {mu, 0.0}, force(), pressure());
    N -= sum(1) / side;  // held back: more is needed ahead
  }
  EXPECT_NEAR(N / 50.0, std::exp(mu * theta), 1e-3);
  EXPECT_NEAR(theta, 2.0, 1e-12);
}

TEST_F(ToolForcesTest, TheDieSideHasItsOwnFriction) {
  slide(0.0, 50.0);
  for (std::size_t e = 0; e < FLANGE.size(); ++e) sheet.FORCES[3 * e] = 100.0, sheet.CURVATURE[3 * e] = -0.1;
  addContactFriction(sheet.view(1.0), {0.3, 0.05}, force(), pressure());
  EXPECT_NEAR(sum(2), -0.05 * 10.0 * 96.0, 0.01);
  EXPECT_NEAR(pressure()(1), -10.0, 1e-12);
}

TEST_F(ToolForcesTest, ABeadHoldsBackWhatIsDrawnAcrossIt) {
  slide(7.0, 20.0);
  const Int a = sheet.node(3, 1), b = sheet.node(3, 2), side = sideBetween(sheet.triangles(), a, b);
  ASSERT_NE(side, 0);
  addBeadForce(sheet.view(1.0), sheet.twins(), {(side - 1) / 3 + 1, (side - 1) % 3 + 1, 80.0}, sheet.knots(),
               force());
  EXPECT_NEAR(sum(1), -80.0 * 2.0 * 7.0 / std::sqrt(49.0 + 0.04), 1e-9);
  EXPECT_NEAR(sum(2), 0.0, 1e-12);  // along it the sheet is free
  EXPECT_EQ(sideBetween(sheet.triangles(), sheet.node(0, 0), sheet.node(2, 2)), 0);
}

// At the rim there is no triangle behind the bead to share its force with.
TEST_F(ToolForcesTest, ABeadOnTheRimHoldsItsOneTriangle) {
  slide(7.0, 20.0);
  const Int side = sideBetween(sheet.triangles(), sheet.node(0, 2), sheet.node(0, 1));
  ASSERT_NE(side, 0);
  const Int e = (side - 1) / 3 + 1;
  addBeadForce(sheet.view(1.0), sheet.twins(), {e, (side - 1) % 3 + 1, 80.0}, sheet.knots(), force());
  EXPECT_NEAR(force()(1, e), -80.0 * 2.0 * 7.0 / std::sqrt(49.0 + 0.04), 1e-9);
  EXPECT_EQ(sum(1), force()(1, e));
}

TEST_F(ToolForcesTest, ABeadOnAnEdgeWithoutLengthHoldsNothing) {
  slide(7.0, 20.0);
  const Int a = sheet.node(3, 1), b = sheet.node(3, 2), side = sideBetween(sheet.triangles(), a, b);
  for (Int i = 1; i <= 3; ++i) sheet.knots()(b, i) = sheet.knots()(a, i);
  addBeadForce(sheet.view(1.0), sheet.twins(), {(side - 1) / 3 + 1, (side - 1) % 3 + 1, 80.0}, sheet.knots(),
               force());
  EXPECT_EQ(sum(1), 0.0);
  EXPECT_EQ(sum(2), 0.0);
}

TEST_F(ToolForcesTest, WhatIsHeldKeepsItsLoads) {
  std::vector<double> LOAD(sheet.RX.size(), 0.0), WEIGHT(sheet.RX.size() / 2);
  const Vector<double> L("LOAD", LOAD.data(), 2 * sheet.nodes), W("WEIGHT", WEIGHT.data(), sheet.nodes);
  const Vector<const double> RX("RX", sheet.RX.data(), 2 * sheet.nodes);
  nodeWeights(sheet.view(1.0), W);
  L(1) = 5.0, L(2) = -3.0;
  const std::vector<double> given = LOAD;
  balanceLoads({false, false, false}, W, RX, L);
  EXPECT_EQ(LOAD, given);
  balanceLoads({true, false, false}, W, RX, L);
  double u = 0.0, v = 0.0;
  for (Int n = 1; n <= sheet.nodes; ++n) u += L(2 * n - 1), v += L(2 * n);
  EXPECT_NEAR(u, 0.0, 1e-12);
  EXPECT_EQ(v, -3.0);
}

// All nodes in one place have no arm: their moment cannot be balanced, and nothing becomes other than a number.
TEST_F(ToolForcesTest, ABlankWithoutAnArmIsNotTurned) {
  std::vector<double> LOAD(sheet.RX.size(), 1.0), WEIGHT(sheet.RX.size() / 2), RX(sheet.RX.size(), 2.0);
  const Vector<double> L("LOAD", LOAD.data(), 2 * sheet.nodes), W("WEIGHT", WEIGHT.data(), sheet.nodes);
  nodeWeights(sheet.view(1.0), W);
  balanceLoads({true, true, true}, W, {"RX", RX.data(), 2 * sheet.nodes}, L);
  for (const double load : LOAD) EXPECT_LT(std::fabs(load), 10.0);
  const double view[2][3] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}};
  slipOfSheet(sheet.view(1.0), sheet.knots(), view, {true, true, true}, W, {"RX", RX.data(), 2 * sheet.nodes},
              {"SLIP", sheet.SLIP.data(), 2, sheet.elements});
  double sumU = 0.0;
  for (std::size_t e = 0; e < sheet.AREA.size(); ++e) sumU += sheet.SLIP[2 * e];
  EXPECT_NEAR(sumU, 0.0, 1e-9) << "as far on one side as on the other";
}

TEST_F(ToolForcesTest, LoadsArePulledBackAndBalanced) {
  for (std::size_t e = 0; e < FLANGE.size(); ++e) FORCE[2 * e] = 3.0, FORCE[2 * e + 1] = -1.0;
  std::vector<double> LOAD(sheet.RX.size(), 0.0), WEIGHT(sheet.RX.size() / 2);
  const Vector<double> L("LOAD", LOAD.data(), 2 * sheet.nodes), W("WEIGHT", WEIGHT.data(), sheet.nodes);
  const Vector<const double> RX("RX", sheet.RX.data(), 2 * sheet.nodes);
  addToolLoads(sheet.view(1.0), force(), 2.0, L);
  double u = 0.0, v = 0.0, moment = 0.0;
  for (Int n = 1; n <= sheet.nodes; ++n) u += L(2 * n - 1), v += L(2 * n);
  EXPECT_NEAR(u, -3.0 * sheet.elements / 1.1 / 2.0, 1e-9);  // Fᵀ·f, F = 1/1.1 along u
  EXPECT_NEAR(v, 1.0 * sheet.elements / 2.0, 1e-9);
  nodeWeights(sheet.view(1.0), W);
  L(1) += 5.0;
  balanceLoads({true, true, true}, W, RX, L);
  u = v = 0.0;
  for (Int n = 1; n <= sheet.nodes; ++n) {
    u += L(2 * n - 1), v += L(2 * n);
    moment += RX(2 * n - 1) * L(2 * n) - RX(2 * n) * L(2 * n - 1);
  }
  EXPECT_NEAR(u, 0.0, 1e-12);
  EXPECT_NEAR(v, 0.0, 1e-12);
  EXPECT_NEAR(moment, 0.0, 1e-10);
}

TEST_F(ToolForcesTest, SlipIsSeenFromTheBestLieOfAFreeBlank) {
  // the blank turned and shifted: no way at all but what it is wider by
  FlatSheet same(6, 4, 2.0, 1.0, 1.0);
  for (std::size_t n = 0; n < same.RX.size(); n += 2) {
    const double x = same.RX[n], y = same.RX[n + 1];
    same.RX[n] = 0.6 * x - 0.8 * y + 30.0, same.RX[n + 1] = 0.8 * x + 0.6 * y - 7.0;
  }
  std::vector<double> WEIGHT(same.RX.size() / 2);
  const Vector<double> W("WEIGHT", WEIGHT.data(), same.nodes);
  const double view[2][3] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}};
  nodeWeights(same.view(1.0), W);
  slipOfSheet(same.view(1.0), same.knots(), view, {true, true, true}, W,
              {"RX", same.RX.data(), 2 * same.nodes}, {"SLIP", same.SLIP.data(), 2, same.elements});
  for (const double s : same.SLIP) EXPECT_NEAR(s, 0.0, 1e-12);
  slipOfSheet(same.view(1.0), same.knots(), view, {false, false, false}, W,
              {"RX", same.RX.data(), 2 * same.nodes}, {"SLIP", same.SLIP.data(), 2, same.elements});
  EXPECT_GT(std::fabs(same.SLIP[0]), 1.0);
}

}  // namespace
}  // namespace forces
