// Element routine and element measure: what they write, what they leave alone, when they refuse.
#include "element/element.hpp"

#include <cmath>
#include <limits>

#include "one_triangle.hpp"

namespace reference {
namespace {

using ::testing::internal::CaptureStdout;
using ::testing::internal::GetCapturedStdout;

const Blank rightTriangle = {1, 2, 5, 2, 1, 5};
const Part congruentPart = {7, 3, -2, 7, 7, -2, 7, 3, 1};  // the same edges, standing upright

constexpr double untouched = 12345.0;

void fill(OneTriangle& t) {
  t.potential = t.measured = untouched;
  for (double& x : t.gradient) x = untouched;
  for (double& x : t.hessian) x = untouched;
  for (double& x : t.ELG) x = untouched;
}

void expectUntouched(const OneTriangle& t) {
  EXPECT_EQ(t.potential, untouched);
  EXPECT_EQ(t.measured, untouched);
  for (const double x : t.gradient) EXPECT_EQ(x, untouched);
  for (const double x : t.hessian) EXPECT_EQ(x, untouched);
  for (const double x : t.ELG) EXPECT_EQ(x, untouched);
}

TEST_F(ElementTest, CongruentBlankHasNoGeometricPotentialAndNoGradient) {
  run.istat = 0;
  OneTriangle t(rightTriangle, congruentPart);
  t.evaluate(0);
  t.measure();
  EXPECT_EQ(t.potential, 0.0);
  for (const double g : t.gradient) EXPECT_EQ(g, 0.0);
  EXPECT_EQ(t.ELG[0], 0.0);
  EXPECT_EQ(t.ELG[1], 0.0);
}

TEST_F(ElementTest, CongruentBlankHasNoLogarithmicStrain) {
  OneTriangle t(rightTriangle, congruentPart);
  t.evaluate(0);
  const double D = 12.0;
  EXPECT_DOUBLE_EQ(t.potential, D * workDensity(0.0, 0.0));
  // nothing but the regulariser is left: the density stands, times the gradient of the area
  const double phi = t.potential / D, areaGradient[6] = {-3, -4, 3, 0, 0, 4};
  for (int k = 0; k < 6; ++k) EXPECT_NEAR(t.gradient[k], phi * areaGradient[k], 1e-14 * phi);
}

TEST_F(ElementTest, MeasureReportsThicknessStrainAndDensity) {
  RandomTriangles random(41);
  const Blank blank = random.blank(10.0);
  OneTriangle t(blank, random.part(blank, 1.5, 0.8, 0.1, 10.0));
  fill(t);
  t.measure();
  EXPECT_NEAR(t.ELG[0], -(0.25 - 0.1), 1e-13);
  const Metric<double> C{1.0, 1.5, 0.8, 0.1};
  EXPECT_NEAR(t.ELG[1], plasticDensity(C), 1e-12);
  for (int column = 2; column < 5; ++column) EXPECT_EQ(t.ELG[column], untouched);
  EXPECT_EQ(run.ierrel, 0);
}

TEST_F(ElementTest, MeasureAndRoutineReturnTheSamePotentialToTheBit) {
  RandomTriangles random(42);
  for (int k = 0; k < 4000; ++k) {
    run.istat = k % 2;
    const double spread = std::pow(10.0, random.between(-9.0, -0.4));
    const Blank blank = random.blank(10.0);
    OneTriangle t(blank, random.part(blank, 1.0 + random.between(-spread, spread), 1.0,
                                     random.between(-spread, spread), 10.0));
    t.measure();
    t.evaluate(1);
    EXPECT_EQ(t.potential, t.measured);
    double gradient[6];
    std::copy_n(t.gradient, 6, gradient);
    t.evaluate(0);
    EXPECT_EQ(t.potential, t.measured);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(t.gradient[i], gradient[i]);
  }
}

TEST_F(ElementTest, ModeOtherThanOneLeavesTheHessianAsItWas) {
  for (const Int mode : {0, 2, -1}) {
    OneTriangle t(rightTriangle, congruentPart);
    fill(t);
    t.evaluate(mode);
    EXPECT_NE(t.potential, untouched);
    for (const double x : t.gradient) EXPECT_NE(x, untouched);
    for (const double x : t.hessian) EXPECT_EQ(x, untouched);
  }
}

TEST_F(ElementTest, ReversedCornersAreDegenerateWhateverTheGeometry) {
  RandomTriangles random(43);
  for (int k = 0; k < 200; ++k) {
    const Blank blank = random.blank(10.0);
    OneTriangle t(blank, random.part(blank, 1.2, 0.9, 0.1, 10.0));
    std::swap(t.INTA[1], t.INTA[2]);
    fill(t);
    run.ierrel = 0;
    run.istat = k % 2;
    t.evaluate(1);
    EXPECT_EQ(run.ierrel, -1);
    expectUntouched(t);
  }
}

TEST_F(ElementTest, FlatBlankIsDegenerate) {
  for (const Blank& blank : {Blank{1, 1, 2, 2, 3, 3}, Blank{1, 1, 1, 1, 5, 0}, Blank{}}) {
    OneTriangle t(blank, congruentPart);
    fill(t);
    run.ierrel = 0;
    CaptureStdout();
    t.evaluate(1);
    EXPECT_EQ(GetCapturedStdout(), "") << "the routine stays silent";
    EXPECT_EQ(run.ierrel, -1);
    expectUntouched(t);
  }
}

TEST_F(ElementTest, MeasureSaysThatAnElementIsDegenerate) {
  OneTriangle t({1, 1, 2, 2, 3, 3}, congruentPart);
  fill(t);
  CaptureStdout();
  t.measure();
  EXPECT_EQ(GetCapturedStdout(), " DEGENERIERTES ELEMENT \n");
  EXPECT_EQ(run.ierrel, -1);
  expectUntouched(t);
}

TEST_F(ElementTest, BlankThatIsNoNumberIsNotDegenerate) {
  OneTriangle t(rightTriangle, congruentPart);
  t.RX[2] = std::numeric_limits<double>::quiet_NaN();
  for (const Int status : {0, 1}) {
    run.istat = status;
    CaptureStdout();
    t.measure();
    t.evaluate(1);
    EXPECT_EQ(GetCapturedStdout(), "");
    EXPECT_EQ(run.ierrel, 0);
    EXPECT_TRUE(std::isnan(t.potential));
    EXPECT_TRUE(std::isnan(t.measured));
    for (const double g : t.gradient) EXPECT_TRUE(std::isnan(g));
  }
}

TEST_F(ElementTest, PotentialIsTwiceTheAreaTimesTheDensity) {
  OneTriangle t(rightTriangle, {0, 0, 0, 8, 0, 0, 0, 3, 0});  // stretched to double along u
  run.istat = 0;
  t.evaluate(0);
  EXPECT_DOUBLE_EQ(t.potential, 12.0 * 1.5 * 1.5);
}

TEST_F(ElementTest, PartMayStandAnywhereInSpace) {
  RandomTriangles random(44);
  const Blank blank = random.blank(10.0);
  const double rest[3] = {0, 0, 0};
  OneTriangle t(blank, partOfMetric(blank, 1.3, 0.9, 0.2, rest, rest));
  t.evaluate(0);
  for (int k = 0; k < 50; ++k) {
    OneTriangle moved(blank, random.part(blank, 1.3, 0.9, 0.2, 100.0));
    moved.evaluate(0);
    // places of 100 mm round to 1e-14 mm, over heights of some mm
    EXPECT_NEAR(moved.potential, t.potential, 1e-12 * t.potential);
  }
}

}  // namespace
}  // namespace reference
