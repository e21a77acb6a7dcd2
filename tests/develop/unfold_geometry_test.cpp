// The penalty of the unfolding, its gradient, the sums over elements, and the selection of visited elements.
#include "develop/unfold_geometry.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>

#include "develop/test_part.hpp"

using namespace tornwalzen;
using namespace tornwalzen::test;

namespace {

/// One triangle in the plane with a given area ratio to its table entry A3.
TestPart oneTriangle(double spatialArea, std::vector<double> plane) {
  TestPart part({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{1, 2, 3}});
  part.RX = std::move(plane);
  part.ELG[4] = spatialArea;
  return part;
}

const std::vector<double> unitSquareHalf{0, 0, 1, 0, 0, 1};  // area ½, counter-clockwise
const std::vector<double> turnedOver{0, 0, 0, 1, 1, 0};      // area −½
const std::vector<double> collapsed{0, 0, 1, 1, 2, 2};       // area 0

struct Measured {
  double penalty, area, qmax;
};
Measured measure(TestPart& part) {
  run.qmax = 0.0;
  Measured m{};
  unfoldElementMeasure(run, 1, part.arrays(), m.penalty, m.area);
  m.qmax = run.qmax;
  return m;
}

/// q⁴ as the definition states it, in long double and for the ratio alone.
long double penaltyOfRatio(long double r) {
  const long double b = r < 0.5L ? 2.0L * (0.5L - r) : 0.0L, inversion = r < 0.0L ? -r : 0.0L;
  const long double q = b * b + 10.0L * inversion * inversion;
  return q * q * q * q;
}

long double penaltyOfPoints(const std::vector<long double>& p, long double spatialArea) {
  const long double area = 0.5L * ((p[2] - p[0]) * (p[5] - p[1]) - (p[4] - p[0]) * (p[3] - p[1]));
  return penaltyOfRatio(area / spatialArea);
}

}  // namespace

TEST(UnfoldElementMeasure, HalfTheSpatialAreaHasNoPenaltyAndNoGradient) {
  TestPart part = oneTriangle(1.0, unitSquareHalf);
  const Measured m = measure(part);
  EXPECT_EQ(m.penalty, 0.0);
  EXPECT_EQ(m.area, 0.5);
  EXPECT_EQ(m.qmax, 0.0);
  double penalty, area, g[6];
  unfoldElementGradient(run, 1, part.arrays(), penalty, area, g);
  EXPECT_THAT(g, testing::Each(testing::Eq(0.0)));
}

TEST(UnfoldElementMeasure, CollapsedTriangleHasMeasureOneAndCountsAsDegenerate) {
  TestPart part = oneTriangle(0.5, collapsed);
  const Measured m = measure(part);
  EXPECT_EQ(m.area, 0.0);
  EXPECT_EQ(m.qmax, 1.0);
  EXPECT_EQ(m.penalty, 1.0);
  Int degenerate;
  double E;
  unfoldObjective(run, part.arrays(), VisitedElements(run.nele, false), degenerate, E);
  EXPECT_EQ(degenerate, 1);
  EXPECT_EQ(E, 1.0);
  EXPECT_EQ(part.ELG[3], 1.0);
}

TEST(UnfoldElementMeasure, TriangleTurnedOverHasMeasureNineteen) {
  TestPart part = oneTriangle(0.5, turnedOver);
  const Measured m = measure(part);
  EXPECT_EQ(m.area, -0.5);
  EXPECT_EQ(m.qmax, 19.0);
  EXPECT_EQ(m.penalty, 130321.0);
}

TEST(UnfoldElementMeasure, ZeroSpatialAreaDividesByZero) {
  TestPart inverted = oneTriangle(0.0, turnedOver);
  EXPECT_EQ(measure(inverted).penalty, std::numeric_limits<double>::infinity());
  TestPart nothing = oneTriangle(0.0, collapsed);
  EXPECT_TRUE(std::isnan(measure(nothing).penalty));
}

TEST(UnfoldElementMeasure, RaisesTheWorstMeasureOnlyToALargerOne) {
  TestPart part = oneTriangle(0.5, collapsed);
  double penalty, area;
  run.qmax = 5.0;
  unfoldElementMeasure(run, 1, part.arrays(), penalty, area);
  EXPECT_EQ(run.qmax, 5.0);
  run.qmax = 0.5;
  unfoldElementMeasure(run, 1, part.arrays(), penalty, area);
  EXPECT_EQ(run.qmax, 1.0);
}

TEST(UnfoldElementMeasure, MeasureThatIsNotANumberStaysInTheWorstMeasure) {
  TestPart part({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}}, {{1, 2, 3}, {2, 4, 3}});
  part.RX = {std::nan(""), 0, 1, 0, 0, 1, 1, 1};
  part.ELG[8] = part.ELG[9] = 0.5;
  Int degenerate;
  double E;
  unfoldObjective(run, part.arrays(), VisitedElements(run.nele, false), degenerate, E);
  EXPECT_TRUE(std::isnan(run.qmax));
  EXPECT_EQ(degenerate, 0);
}

// The gradient against central differences of the definition in long double, h = 1e-6 of the edge. q⁴ behaves
// like (2s)⁸ in the shortfall s, so the truncation error is of the order h²·s⁵: 1e-9 of the largest component
// covers it where that component is not small itself, and 1e-12 (where q = 1 has components of order 10)
// where it is.
TEST(UnfoldElementGradient, AgreesWithCentralDifferencesInAllBranches) {
  std::mt19937 generator(3);
  std::uniform_real_distribution<double> coordinate(-1.0, 1.0);
  int inverted = 0, shrunk = 0;
  for (int trial = 0; trial < 300; ++trial) {
    std::vector<double> plane(6);
    for (double& x : plane) x = coordinate(generator);
    TestPart part = oneTriangle(0.7, plane);
    double penalty, area, g[6];
    run.qmax = 0.0;
    unfoldElementGradient(run, 1, part.arrays(), penalty, area, g);
    const Measured m = measure(part);
    EXPECT_EQ(penalty, m.penalty);
    EXPECT_EQ(area, m.area);
    (area < 0.0 ? inverted : shrunk) += penalty > 0.0;
    const std::vector<long double> centre(plane.begin(), plane.end());
    const long double h = 1e-6L;
    long double difference[6], scale = 1e-3L;
    for (std::size_t u = 0; u < 6; ++u) {
      auto ahead = centre, behind = centre;
      ahead[u] += h;
      behind[u] -= h;
      difference[u] = (penaltyOfPoints(ahead, 0.7L) - penaltyOfPoints(behind, 0.7L)) / (2.0L * h);
      scale = std::max(scale, std::fabs(difference[u]));
    }
    for (std::size_t u = 0; u < 6; ++u)
      EXPECT_NEAR(g[u], static_cast<double>(difference[u]), 1e-9 * static_cast<double>(scale))
          << "unknown " << u;
  }
  EXPECT_GT(inverted, 50);
  EXPECT_GT(shrunk, 50);
}

TEST(UnfoldObjective, SumsPenaltiesInTheOrderOfTheElements) {
  TestPart part = hatWithVerticalWalls(2, 2);
  for (Int n = 1; n <= part.nkno; ++n) {
    part.RX[2 * static_cast<std::size_t>(n) - 2] = part.KNG[static_cast<std::size_t>(n) - 1];
    part.RX[2 * static_cast<std::size_t>(n) - 1] = part.KNG[static_cast<std::size_t>(part.nkno + n) - 1];
  }
  for (Int e = 1; e <= part.nele; ++e) part.arrays().ELG(e, 5) = 50.0;
  Int degenerate;
  double E;
  unfoldObjective(run, part.arrays(), VisitedElements(run.nele, false), degenerate, E);
  EXPECT_EQ(degenerate, 16);  // two walls of 2 × 2 squares
  EXPECT_EQ(E, 16.0);
  EXPECT_EQ(run.qmax, 1.0);
}

TEST(UnfoldForces, AreTheNegativeSumAndCountOnlyFreeUnknowns) {
  TestPart part({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}}, {{1, 2, 3}, {2, 4, 3}});
  part.RX = {0.0, 0.0, 0.3, 0.1, 0.0, 0.4, 0.1, -0.9};
  part.ELG[8] = part.ELG[9] = 0.5;
  const DriverArrays a = part.arrays();
  double penalty, area, g[2][6];
  for (Int e = 1; e <= 2; ++e) unfoldElementGradient(run, e, a, penalty, area, g[e - 1]);
  part.ARFA[7] = 0;  // the largest force is held: it stays in RR and does not count
  unfoldForces(run, a, VisitedElements(run.nele, false));
  double expected[8] = {};
  for (int e = 0; e < 2; ++e)
    for (int c = 0; c < 3; ++c)
      for (int d = 0; d < 2; ++d) expected[2 * (a.INTA(e + 1, c + 1) - 1) + d] -= g[e][2 * c + d];
  double largest = 0.0;
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(part.RR[static_cast<std::size_t>(i)], expected[i]) << "unknown " << i + 1;
    if (i != 7) largest = std::max(largest, std::fabs(expected[i]));
  }
  EXPECT_NE(part.RR[7], 0.0);
  EXPECT_EQ(run.maxgrad, largest);
}

TEST(UnfoldForces, HaveNoNormWhereNothingIsFree) {
  TestPart part = oneTriangle(0.5, collapsed);
  part.ARFA.assign(6, 2);  // neither 0 nor 1: not free either
  unfoldForces(run, part.arrays(), VisitedElements(run.nele, false));
  EXPECT_EQ(run.maxgrad, 0.0);
  EXPECT_NE(part.RR[0], 0.0);
}

TEST(VisitedElements, AreThoseThatMoveOrCarryAPenaltyInRisingOrder) {
  TestPart part = flatPlate(4, 1);  // nodes 1..5 and 6..10, triangles 1..8
  const DriverArrays a = part.arrays();
  VisitedElements visited(part.nele);
  EXPECT_EQ(visited.count(), 8);
  EXPECT_EQ(visited(8), 8);
  part.RB[2 * 5 - 1] = 1.0;  // v of node 5, a corner of triangle 7 alone
  part.arrays().ELG(2, 4) = 1e-30;
  visited.select(a);
  ASSERT_EQ(visited.count(), 2);
  EXPECT_EQ(visited(1), 2);
  EXPECT_EQ(visited(2), 7);
}

TEST(VisitedElements, StayAllElementsWithoutAList) {
  TestPart part = flatPlate(2, 1);
  VisitedElements all(part.nele, false);
  all.select(part.arrays());
  EXPECT_EQ(all.count(), 4);
  EXPECT_EQ(all(3), 3);
}
