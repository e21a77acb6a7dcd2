// Work over the total strain against its own integral and differences, and Hill's equivalent strain against the flow rule.
#include "material/sheet_work.hpp"

#include <gtest/gtest.h>

#include <cmath>

#include "ground/analysis.hpp"
#include "material/hill_strain.hpp"
#include "material/material_setup.hpp"

namespace tornwalzen {
namespace {

struct SheetWorkTest : ::testing::Test {
  Analysis run;
  void SetUp() override { materialSetup(run, 1); }
};

// W = ∫ σ dε over the total strain, by Simpson's rule on strains given by the plastic strain.
TEST_F(SheetWorkTest, IsTheIntegralOfTheStress) {
  const FlowCurve CURVE(run);
  const double modulus = 206000.0 / run.smin, foot = 0.1 * modulus;
  SheetWork work(CURVE, modulus, 50.0 / run.smin);
  double sum = 0.5 * std::pow(flowStress(CURVE, 0.0).sigma, 2) / foot;
  const double h = 1e-5;
  for (double plastic = 0.0; plastic < 0.3; plastic += h) {
    const auto total = [&](double e) { return e + flowStress(CURVE, e).sigma / foot; };
    const double a = total(plastic), b = total(plastic + h);
    sum += 0.5 * (flowStress(CURVE, plastic).sigma + flowStress(CURVE, plastic + h).sigma) * (b - a);
    if (std::fmod(plastic, 0.05) < h) {
      EXPECT_NEAR(work.at(b * b).value, sum, 1e-7) << "plastic strain " << plastic;
      EXPECT_NEAR(work.at(b * b).sigma, flowStress(CURVE, plastic + h).sigma, 1e-9);
    }
  }
}

TEST_F(SheetWorkTest, DerivativesAreThoseOfTheValueForEveryExponent) {
  const FlowCurve CURVE(run);
  SheetWork work(CURVE, 206000.0 / run.smin, 50.0 / run.smin);
  for (const double exponent : {1.0, 1.05, 1.4, 2.0}) {
    work.choose(exponent);
    EXPECT_NEAR(work.at(0.0).value, 0.0, 1e-14);
    for (const double strain : {0.001, 0.003, 0.01, 0.05, 0.3, 1.2}) {
      const double q = strain * strain, h = 1e-5 * q;
      const WorkOfSquare at = work.at(q), more = work.at(q + h), less = work.at(q - h);
      EXPECT_NEAR(at.rate, (more.value - less.value) / (2 * h), 1e-5 * at.rate) << exponent << ' ' << strain;
      EXPECT_NEAR(at.curve, (more.rate - less.rate) / (2 * h),
                  1e-4 * std::fabs(at.curve) + 1e-5 * at.rate / q)
          << exponent << ' ' << strain;
    }
  }
}

TEST_F(SheetWorkTest, IsSmoothAtTheEndOfTheFoot) {
  const FlowCurve CURVE(run);
  const double modulus = 206000.0 / run.smin, end = flowStress(CURVE, 0.0).sigma / (0.1 * modulus);
  const SheetWork work(CURVE, modulus, 50.0 / run.smin);
  const double below = std::pow(end * (1 - 1e-9), 2), above = std::pow(end * (1 + 1e-9), 2);
  EXPECT_NEAR(work.at(below).value, work.at(above).value, 1e-8 * work.at(below).value);
  EXPECT_NEAR(work.at(below).rate, work.at(above).rate, 1e-6 * work.at(below).rate);
}

TEST(HillStrainTest, IsTheBuiltInStrainWithoutARollingDirection) {
  for (const double r : {0.5, 1.0, 1.8}) {
    const StrainQuadratic Q = hillStrain({r, r, r, 0.0});
    const double factor = (1 + r) * (1 + r) / (1 + 2 * r);
    for (const auto& x : {std::pair{0.1, -0.03}, {0.2, 0.1}, {-0.1, 0.04}})
      EXPECT_NEAR(Q.at(x.first, x.second, 0.0),
                  factor * (x.first * x.first + x.second * x.second + 2 * r / (1 + r) * x.first * x.second),
                  1e-15);
  }
}

// In a tensile test along θ the strain of least work has the ratio r(θ) of width to thickness strain.
TEST(HillStrainTest, TensileTestsHaveTheRatiosThatWereGiven) {
  const Anisotropy given{1.79, 1.51, 2.27, 0.0};
  const double r[] = {given.r0, given.r45, given.r90};
  for (int k = 0; k < 3; ++k) {
    const double angle = k * std::atan(1.0);
    const StrainQuadratic Q = turned(hillStrain(given), std::cos(angle), std::sin(angle));
    // X1 = 1; least over X2 and X3: Q.a12 + a22·X2 + a23·X3 = 0, a13 + a23·X2 + a33·X3 = 0
    const double determinant = Q.a22 * Q.a33 - Q.a23 * Q.a23;
    const double width = (-Q.a12 * Q.a33 + Q.a13 * Q.a23) / determinant;
    EXPECT_NEAR(width / (-1.0 - width), r[k], 1e-12) << "degrees " << 45 * k;
  }
}

TEST(HillStrainTest, AlongTheRollingDirectionTheEquivalentStrainIsTheStrain) {
  const StrainQuadratic Q = hillStrain({0.71, 0.58, 0.70, 0.0});
  const double width = -0.71 / 1.71 * 0.1;
  EXPECT_NEAR(std::sqrt(Q.at(0.1, width, 0.0)), 0.1, 1e-15);
}

TEST(HillStrainTest, ATurnAndBackChangesNothing) {
  const StrainQuadratic Q = hillStrain({1.79, 1.51, 2.27, 0.0});
  const StrainQuadratic back = turned(turned(Q, 0.8, 0.6), 0.8, -0.6);
  EXPECT_NEAR(back.a11, Q.a11, 1e-15);
  EXPECT_NEAR(back.a33, Q.a33, 1e-15);
  EXPECT_NEAR(back.a13, 0.0, 1e-15);
}

}  // namespace
}  // namespace tornwalzen
