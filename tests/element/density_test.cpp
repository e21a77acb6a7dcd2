// The two densities at given metrics: branches of the principal strains, segments of the flow curve.
#include <gtest/gtest.h>

#include "element/density_geometric.hpp"
#include "element/density_plastic.hpp"
#include "one_triangle.hpp"

namespace reference {
namespace {

using tornwalzen::curveRows;
using tornwalzen::Density;
using tornwalzen::flowCurve;
using tornwalzen::FlowCurve;
using tornwalzen::Order;

constexpr double ulp = 2.3e-16;
constexpr double rootFactor = 1.154700517654419;

Density plastic(double C11, double C22, double C12) {
  Density F;
  tornwalzen::plasticDensity<Order::hessian>(C11, C22, C12, FlowCurve(run), F);
  return F;
}

class DensityTest : public ElementTest {
 protected:
  /// Replaces the curve by rows of strain, quadratic, linear and constant coefficient.
  void curve(std::initializer_list<std::array<double, 4>> rows) {
    const auto FC = flowCurve();
    run.npkt = 0;
    for (const auto& row : rows) {
      const Int k = ++run.npkt;
      FC(k, 1) = row[0], FC(k, 2) = FC(k, 3) = FC(k, 4) = 0.0;
      FC(k, 5) = row[1], FC(k, 6) = row[2], FC(k, 7) = row[3];
    }
  }
  /// Constant stress 1 from strain 0: W = ε̄, and the root of a rounded square is the number itself.
  double equivalentStrain(double C11, double C22, double C12) {
    curve({{0, 0, 0, 1}, {9, 0, 0, 1}, {10, 0, 0, 1}});
    return std::sqrt(2.0 * plastic(C11, C22, C12).phi);
  }
};

TEST_F(DensityTest, GeometricDensityIsZeroWithZeroGradientAtTheIdentity) {
  Density F;
  tornwalzen::geometricDensity<Order::gradient>(1.0, 1.0, 0.0, F);
  EXPECT_EQ(F.phi, 0.0);
  EXPECT_EQ(F.g1, 0.0);
  EXPECT_EQ(F.g2, 0.0);
  EXPECT_EQ(F.g3, 0.0);
}

TEST_F(DensityTest, ZeroStrainLeavesTheRegulariserOnly) {
  EXPECT_NEAR(equivalentStrain(1.0, 1.0, 0.0), rootFactor * 1e-5, 4 * ulp * 1e-5);
  tornwalzen::materialSetup(1);
  const double strain = rootFactor * 1e-5, W = std::sqrt(2.0 * plastic(1.0, 1.0, 0.0).phi);
  EXPECT_GT(W, 0.0);
  // W = D1·ε̄ but for the slope of the first segment over so small a strain
  EXPECT_NEAR(W, flowCurve()(1, 7) * strain, std::fabs(flowCurve()(1, 6)) * strain * strain);
}

TEST_F(DensityTest, EqualBiaxialStrainGivesTwiceTheStrain) {
  for (const double e : {1e-6, 1e-3, 0.1, 1.0}) {
    const double C = std::exp(2.0 * e), strain = equivalentStrain(C, C, 0.0);
    const double expected = rootFactor * std::sqrt(3.0 * e * e + 1e-10);
    EXPECT_NEAR(strain, expected, 8 * ulp * std::max(1.0, e));  // ln C carries the rounding of C ≈ 1
  }
  EXPECT_NEAR(equivalentStrain(std::exp(2.0), std::exp(2.0), 0.0), 2.0, 1e-7);
}

TEST_F(DensityTest, StretchAlongVTakesTheShortcutUnordered) {
  const double C11 = 1.0, C22 = 1.44;
  const double expected = static_cast<double>(workDensity(0.5L * std::log(1.0L), 0.5L * std::log(1.44L)));
  for (const double C12 : {0.0, 1e-9, -1e-8, 1e-8}) {
    const Density F = plastic(C11, C22, C12);
    EXPECT_NEAR(F.phi, expected, 100 * ulp * expected);  // some twenty segments are summed
    EXPECT_EQ(F.phi, plastic(C11, C22, 0.0).phi);
    EXPECT_EQ(F.g3, 0.0) << "the gradient belongs to a value without C12";
  }
}

TEST_F(DensityTest, JustAboveTheThresholdTheOrderedEigenvaluesCount) {
  const double above = std::nextafter(1e-8, 1.0);
  // without strain C12² = 1e-16 stands against the regulariser 1e-10 and shows
  for (const double C12 : {above, -above}) {
    const double major = 1.0 + above, minor = 1.0 - above;
    const long double e1 = 0.5L * std::log((long double)major), e2 = 0.5L * std::log((long double)minor);
    ASSERT_GE(major, minor);
    const double expected = static_cast<double>(workDensity(e1, e2)), flat = plastic(1.0, 1.0, 0.0).phi;
    const double phi = plastic(1.0, 1.0, C12).phi;
    EXPECT_NEAR(phi, expected, 1e-9 * expected);
    EXPECT_GT(phi, flat * (1.0 + 1e-7));
    EXPECT_EQ(plastic(1.0, 1.0, std::copysign(1e-8, C12)).phi, flat);
    EXPECT_GT(std::copysign(1.0, C12) * plastic(1.0, 1.0, C12).g3, 0.0);
  }
}

TEST_F(DensityTest, TangentInTheShortcutCarriesTheIsotropicCurvature) {
  const Density F = plastic(1.0, 1.0, 0.0);
  EXPECT_GT(F.h33, 0.0);
  // isotropy at the identity: the curvature against shear equals that against C11 - C22
  EXPECT_NEAR(F.h33, 2.0 * (F.h11 - F.h12), 1e-12 * F.h33);
  const Density G = plastic(1.3, 0.8, 0.0), H = plastic(1.3, 0.8, 1.1e-8);
  EXPECT_NEAR(G.h33, H.h33, 1e-7 * H.h33);
}

TEST_F(DensityTest, StrainOnAPointOfTheCurveEndsTheSearchThere) {
  const double strain = equivalentStrain(1.3, 0.9, 0.1);
  // stress 1 up to the point, from there on 1 + 50·(ε - ε2): the slope tells which segment served
  curve({{0, 0, 0, 1}, {strain, 0, 50, 1 - 50 * strain}, {9, 0, 50, 1 - 50 * strain}, {10, 0, 0, 0}});
  const Density on = plastic(1.3, 0.9, 0.1);
  EXPECT_EQ(on.phi, 0.5 * (strain * strain));
  const double before = std::nextafter(strain, 0.0);
  curve({{0, 0, 0, 1}, {before, 0, 50, 1 - 50 * before}, {9, 0, 50, 1 - 50 * before}, {10, 0, 0, 0}});
  const Density past = plastic(1.3, 0.9, 0.1);
  EXPECT_NEAR(past.phi, on.phi, 4 * ulp * on.phi);
  EXPECT_GT(past.h11, 1.5 * on.h11);
}

TEST_F(DensityTest, StrainBeyondTheLastPointExtendsTheLastSegment) {
  curve({{0, 0, 0, 1}, {0.1, 0, 3, 0.7}, {0.2, 0, 0, 100}});
  const double strain = 1.154700517654419 * std::sqrt(0.75 * std::log(4.0) * std::log(4.0) + 1e-10);
  ASSERT_GT(strain, 0.2);
  // plane stretch of e1 = e2 = ln 2: 0.1 of stress 1, then 0.7 + 3ε, although the curve ends at 0.2
  const double C = 4.0, W = 0.1 + 0.7 * (strain - 0.1) + 1.5 * (strain * strain - 0.01);
  EXPECT_NEAR(plastic(C, C, 0.0).phi, 0.5 * W * W, 20 * ulp * W * W);
}

TEST_F(DensityTest, StrainBelowTheFirstPointTurnsTheWorkNegative) {
  curve({{0.1, 0, 0, 2}, {0.2, 0, 0, 2}, {0.3, 0, 0, 2}});
  const double C = std::exp(2.0 * 0.02), strain = 1.154700517654419 * std::sqrt(3.0 * 0.02 * 0.02 + 1e-10);
  const Density F = plastic(C, C, 0.0);
  const double W = 2.0 * (strain - 0.1);
  EXPECT_NEAR(F.phi, 0.5 * W * W, 40 * ulp * W * W);
  EXPECT_LT(F.g1, 0.0) << "more strain, less of the negative work";
}

TEST_F(DensityTest, TwoPointsMakeOneSegmentThatServesAllStrains) {
  curve({{0, 0, 0, 1}, {0.1, 0, 0, 7}});
  for (const double C : {1.01, 1.5, 9.0}) {
    const double strain = 1.154700517654419 * std::sqrt(0.75 * std::log(C) * std::log(C) + 1e-10);
    EXPECT_NEAR(plastic(C, C, 0.0).phi, 0.5 * strain * strain, 40 * ulp * strain);
  }
}

TEST_F(DensityTest, EmptyCurveDoesNoWork) {
  curve({{0, 0, 0, 0}});
  run.npkt = 0;
  EXPECT_EQ(plastic(1.5, 1.0, 0.0).phi, 0.0);
}

TEST_F(DensityTest, FullTableStaysInsideItsFiftyRows) {
  const auto FC = flowCurve();
  run.npkt = curveRows;
  for (Int k = 1; k <= curveRows; ++k) {
    for (Int j = 2; j <= 6; ++j) FC(k, j) = 0.0;
    FC(k, 1) = 0.01 * (k - 1), FC(k, 7) = 1.0;
  }
  const double strain = 1.154700517654419 * std::sqrt(0.75 * std::log(9.0) * std::log(9.0) + 1e-10);
  EXPECT_NEAR(plastic(9.0, 9.0, 0.0).phi, 0.5 * strain * strain, 200 * ulp * strain * strain);
}

TEST_F(DensityTest, WorkOfTheBuiltInCurvesAgreesWithTheIntegralFromTheStart) {
  for (const Int selector : {0, 1, 2, 10}) {
    tornwalzen::materialSetup(selector);
    for (double e = 1e-4; e < 3.0; e *= 1.1) {
      const double C = std::exp(2.0 * e);
      const double expected = static_cast<double>(plasticDensity(Metric<long double>{1.0L, C, 1.0L, 1e-7L}));
      EXPECT_NEAR(plastic(C, 1.0, 1e-7).phi, expected, 1e-10 * expected) << selector << ' ' << e;
    }
  }
}

TEST_F(DensityTest, LowerOrdersGiveTheSameNumbersToTheBit) {
  RandomTriangles random(31);
  const FlowCurve CURVE(run);
  for (int k = 0; k < 1000; ++k) {
    const double C11 = random.between(0.5, 2.0), C22 = random.between(0.5, 2.0),
                 C12 = random.between(-0.4, 0.4);
    Density value, gradient, hessian;
    tornwalzen::plasticDensity<Order::value>(C11, C22, C12, CURVE, value);
    tornwalzen::plasticDensity<Order::gradient>(C11, C22, C12, CURVE, gradient);
    tornwalzen::plasticDensity<Order::hessian>(C11, C22, C12, CURVE, hessian);
    EXPECT_EQ(value.phi, hessian.phi);
    EXPECT_EQ(gradient.phi, hessian.phi);
    EXPECT_EQ(gradient.g1, hessian.g1);
    EXPECT_EQ(gradient.g2, hessian.g2);
    EXPECT_EQ(gradient.g3, hessian.g3);
  }
}

}  // namespace
}  // namespace reference
