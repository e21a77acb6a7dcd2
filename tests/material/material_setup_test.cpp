// The built-in flow curves and their interpolation. The curves are written down here a second time; strains
// on a regular grid come from their rule.
#include "material/material_setup.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "host_kit/default_run.hpp"

namespace {

using namespace tornwalzen;

constexpr double eps = std::numeric_limits<double>::epsilon();

struct Curve {
  Int selector;
  std::vector<double> strains, stresses;
};

void PrintTo(const Curve& curve, std::ostream* out) {
  *out << "Curve" << curve.selector;
}

// The decimals whose nearest single-precision numbers the table holds, those numbers spelled out.
constexpr double widened024 = 0.23999999463558197, widened158621 = 1.5862100124359131;
constexpr double widened566876 = 566.8759765625, widened570104 = 570.10400390625,
                 widened85323 = 853.22998046875;

Curve curve0() {
  Curve c{
      0, {0.0}, {153,     283.505, 329.4,   360.294, 384.162, 403.852,       420.736,     435.591, 448.902,
                 460.995, 472.097, 482.378, 491.965, 500.957, 509.432,       517.454,     525.074, 532.337,
                 539.278, 545.929, 552.315, 558.461, 564.385, widened570104, widened85323}};
  for (int k = 1; k <= 22; ++k) c.strains.push_back(std::round(k * 2.0 / 29.0 * 1e5) / 1e5);  // five decimals
  c.strains.push_back(widened158621);
  c.strains.push_back(5.0);
  return c;
}
Curve curve1() {
  Curve c{1, {}, {366,     369.333, 379.545, 402.435, 421.82,  438.375, 452.413,       464.642, 475.012,
                  485.903, 495.27,  502.253, 510.108, 517.186, 523.885, 529.764,       534.457, 539.845,
                  544.459, 549.96,  553.687, 557.85,  561.553, 564.782, widened566876, 1563}};
  for (int k = 0; k <= 23; ++k) c.strains.push_back(k / 100.0);
  c.strains.push_back(widened024);
  c.strains.push_back(5.0);
  return c;
}
Curve curve2() {
  return {2,
          {0, 0.03, 0.058, 0.1, 0.14, 0.191, 0.223, 0.247, 2.0, 5.0},
          {152, 191, 236.6, 272.1, 311.9, 332, 340, 344, 370, 415}};
}
Curve curve10() {
  Curve c = curve0();
  c.selector = 10;
  c.strains.insert(c.strains.begin() + 1, 0.03);
  c.stresses.insert(c.stresses.begin() + 1, 210.0);
  return c;
}

/// Into a table of the test's own; the count of points goes into the state.
void load(Int selector, Table<double> FC) {
  double smin;
  loadFlowCurve(run.options, selector, FC, run.npkt, smin);
}

class FlowCurve : public testing::TestWithParam<Curve> {
 protected:
  void SetUp() override {
    load(GetParam().selector, FC);
    points = static_cast<Int>(GetParam().strains.size());
  }
  // Value and slope of segment i at strain e, and the size of their largest term, by which rounding is
  // measured.
  double value(Int i, double e) const { return ((FC(i, 4) * e + FC(i, 5)) * e + FC(i, 6)) * e + FC(i, 7); }
  double slope(Int i, double e) const { return (3.0 * FC(i, 4) * e + 2.0 * FC(i, 5)) * e + FC(i, 6); }
  double valueScale(Int i, double e) const {
    return std::fabs(FC(i, 4) * e * e * e) + std::fabs(FC(i, 5) * e * e) + std::fabs(FC(i, 6) * e) +
           std::fabs(FC(i, 7));
  }
  double slopeScale(Int i, double e) const {
    return std::fabs(3.0 * FC(i, 4) * e * e) + std::fabs(2.0 * FC(i, 5) * e) + std::fabs(FC(i, 6));
  }
  // Rounding of the coefficients: each is a handful of operations on quantities of this size.
  double slopeTolerance(Int i, double e) const {
    const double h = FC(i + 1, 1) - FC(i, 1);
    const double secants = std::fabs(FC(i, 3)) + std::fabs(nodeSlope(i)) + std::fabs(nodeSlope(i + 1));
    return 16.0 * eps * (slopeScale(i, e) + secants * (1.0 + e / h) * (1.0 + e / h));
  }
  double valueTolerance(Int i, double e) const {
    return 16.0 * eps * valueScale(i, e) + slopeTolerance(i, e) * (e + FC(i, 1));
  }
  double secant(Int i) const {
    i = std::min(i, points - 1);
    return (FC(i + 1, 2) - FC(i, 2)) / (FC(i + 1, 1) - FC(i, 1));
  }
  double nodeSlope(Int i) const {
    return i == 1 ? 2.0 * secant(1) - nodeSlope(2) : (secant(i - 1) + secant(i)) / 2.0;
  }

  Int points = 0;
  const Table<double> FC = flowCurve();
};

TEST_P(FlowCurve, HoldsTheListedPointsOverTheSmallestStress) {
  const Curve& curve = GetParam();
  ASSERT_EQ(curve.stresses.size(), curve.strains.size());
  EXPECT_EQ(run.npkt, points);
  const double smallest = *std::min_element(curve.stresses.begin(), curve.stresses.end());
  for (Int i = 1; i <= points; ++i) {
    EXPECT_EQ(FC(i, 1), curve.strains[static_cast<std::size_t>(i - 1)]) << "point " << i;
    EXPECT_EQ(FC(i, 2), curve.stresses[static_cast<std::size_t>(i - 1)] / smallest) << "point " << i;
  }
  EXPECT_EQ(FC(1, 2), 1.0);
}

TEST_P(FlowCurve, ColumnThreeHoldsTheSecantSlopes) {
  for (Int i = 1; i <= points; ++i) EXPECT_EQ(FC(i, 3), secant(i)) << "point " << i;
}

TEST_P(FlowCurve, EachSegmentPassesThroughBothItsPoints) {
  for (Int i = 1; i < points; ++i) {
    EXPECT_NEAR(value(i, FC(i, 1)), FC(i, 2), valueTolerance(i, FC(i, 1))) << "segment " << i;
    EXPECT_NEAR(value(i, FC(i + 1, 1)), FC(i + 1, 2), valueTolerance(i, FC(i + 1, 1))) << "segment " << i;
  }
}

TEST_P(FlowCurve, SlopesMeetAtTheInnerPoints) {
  for (Int i = 2; i < points; ++i) {
    const double e = FC(i, 1);
    EXPECT_NEAR(slope(i - 1, e), slope(i, e), slopeTolerance(i - 1, e) + slopeTolerance(i, e))
        << "point " << i;
  }
}

TEST_P(FlowCurve, TheSlopeAtAPointIsTheMeanOfItsSecants) {
  for (Int i = 2; i <= points; ++i) {
    const double e = FC(i, 1);
    EXPECT_NEAR(slope(i - 1, e), nodeSlope(i), slopeTolerance(i - 1, e)) << "point " << i;
  }
}

TEST_P(FlowCurve, TheFirstSegmentIsAQuadratic) {
  EXPECT_EQ(FC(1, 4), 0.0);
}

TEST_P(FlowCurve, TheLastPointEndsWithTheLastSecant) {
  EXPECT_NEAR(slope(points - 1, 5.0), secant(points - 1), slopeTolerance(points - 1, 5.0));
}

INSTANTIATE_TEST_SUITE_P(BuiltIn, FlowCurve, testing::Values(curve0(), curve1(), curve2(), curve10()),
                         [](const auto& instance) {
                           return "Curve" + std::to_string(instance.param.selector);
                         });

TEST(MaterialSetup, CurveTwoIsNormalisedBy152) {
  const Table<double> FC = flowCurve();
  load(2, FC);
  EXPECT_EQ(run.npkt, 10);
  EXPECT_EQ(FC(1, 2), 1.0);
  EXPECT_EQ(FC(10, 2), 415.0 / 152.0);
}

TEST(MaterialSetup, AnUnknownSelectorLoadsNoCurve) {
  std::vector<double> memory(curveRows * curveColumns, 0.0);
  const Table<double> FC("FC", memory.data(), curveRows, curveColumns);
  const Int before = run.npkt;
  for (Int selector : {5, 3, -1, 11, 2147483647}) load(selector, FC);
  EXPECT_EQ(run.npkt, before);
  EXPECT_EQ(memory, std::vector<double>(curveRows * curveColumns, 0.0));
}

TEST(MaterialSetup, AnUnknownSelectorKeepsTheCurveBefore) {
  const Table<double> FC = flowCurve();
  load(1, FC);
  const std::vector<double> before(FC.data(), FC.data() + curveRows * curveColumns);
  load(5, FC);
  EXPECT_EQ(run.npkt, 26);
  EXPECT_EQ(std::vector<double>(FC.data(), FC.data() + curveRows * curveColumns), before);
}

TEST(MaterialSetup, EachCallReplacesTheCurve) {
  const Table<double> FC = flowCurve();
  load(10, FC);
  EXPECT_EQ(run.npkt, 26);
  EXPECT_EQ(FC(2, 2), 210.0 / 153.0);
  load(2, FC);
  EXPECT_EQ(run.npkt, 10);
  EXPECT_EQ(FC(2, 2), 191.0 / 152.0);
  load(0, FC);
  EXPECT_EQ(run.npkt, 25);
  EXPECT_EQ(FC(2, 2), 283.505 / 153.0);
}

TEST(MaterialSetup, OnlyFiveTableValuesAreWidenedSinglePrecision) {
  const Table<double> FC = flowCurve();
  load(1, FC);
  EXPECT_EQ(FC(25, 1), static_cast<double>(0.24f));
  EXPECT_EQ(FC(24, 1), 0.23);
  EXPECT_EQ(FC(25, 2), static_cast<double>(566.876f) / 366.0);
  EXPECT_EQ(FC(26, 2), 1563.0 / 366.0);
  load(0, FC);
  EXPECT_EQ(FC(24, 1), static_cast<double>(1.58621f));
  EXPECT_EQ(FC(23, 1), 1.51724);
  EXPECT_EQ(FC(24, 2), static_cast<double>(570.104f) / 153.0);
  EXPECT_EQ(FC(25, 2), static_cast<double>(853.23f) / 153.0);
  EXPECT_EQ(FC(23, 2), 564.385 / 153.0);
}

TEST(MaterialSetup, ACurveMayHaveTwoPointsOnly) {  // then its one segment is the straight line
  std::vector<double> memory(curveRows * curveColumns, 0.0);
  const Table<double> FC("FC", memory.data(), curveRows, curveColumns);
  FC(2, 1) = 2.0;
  FC(1, 2) = 1.0;
  FC(2, 2) = 4.0;
  prepareFlowCurve(FC, 2);
  EXPECT_EQ(FC(1, 3), 1.5);
  EXPECT_EQ(FC(2, 3), 1.5);
  EXPECT_EQ(FC(1, 4), 0.0);
  EXPECT_EQ(FC(1, 5), 0.0);
  EXPECT_EQ(FC(1, 6), 1.5);
  EXPECT_EQ(FC(1, 7), 1.0);
}

}  // namespace
