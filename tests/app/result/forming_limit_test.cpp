#include "result/forming_limit.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "result/fld_picture.hpp"

using namespace host;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

double trueStrain(double percent) {
  return std::log(1 + percent / 100);
}

// The published form itself, in percent of engineering strain.
double keelerPercent(double t, double n, double minor) {
  const double flc0 = (23.3 + 14.13 * std::min(t, 3.0)) * std::min(n, 0.21) / 0.21;
  if (minor < 0) return 100 * ((1 + flc0 / 100) / (1 + minor / 100) - 1);  // constant thickness
  return flc0 + 0.6 * std::min(minor, 20.0);
}

}  // namespace

TEST(Keeler, IsThePublishedFormula) {
  for (const double t : {0.5, 1.0, 2.9, 3.0, 4.0})
    for (const double n : {0.1, 0.18, 0.21, 0.25}) {
      const LimitCurve curve = keelerCurve(t, n);
      for (double minor = -40; minor <= 40; minor += 0.7)
        EXPECT_NEAR(engineeringPercent(limitAt(curve, trueStrain(minor))), keelerPercent(t, n, minor), 2e-3)
            << t << " " << n << " " << minor;
    }
  // by hand: 1 mm and n = 0.21
  EXPECT_NEAR(engineeringPercent(limitAt(keelerCurve(1.0, 0.21), 0.0)), 37.43, 1e-10);
}

TEST(Keeler, SaysWhatItCountsAs) {
  EXPECT_EQ(keelerCurve(1.0, 0.21).basis, "FLC0 37.4 % after Keeler and Brazier, t 1 mm, n 0.21");
  EXPECT_EQ(keelerCurve(4.0, 0.25).basis,
            "FLC0 65.7 % after Keeler and Brazier, t 4 mm (counts as 3), n 0.25 (counts as 0.21)");
}

TEST(LimitAt, IsLinearBetweenAndLevelBeyondThePoints) {
  const LimitCurve curve{{{-0.2, 0.5}, {0.0, 0.3}, {0.2, 0.4}}, ""};
  EXPECT_NEAR(limitAt(curve, -0.1), 0.4, 1e-15);
  EXPECT_EQ(limitAt(curve, 0.0), 0.3);
  EXPECT_EQ(limitAt(curve, -5.0), 0.5);
  EXPECT_EQ(limitAt(curve, 5.0), 0.4);
  EXPECT_EQ(limitAt({{{0.0, 0.3}}, ""}, 0.1), 0.3);
}

TEST(FormingLimit, ZonesCountsAndAreas) {
  const LimitCurve curve{{{-1.0, trueStrain(40)}, {1.0, trueStrain(40)}}, ""};
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  //                                safe, marginal, on the curve, beyond, wrinkling, none, flat noise
  const std::vector<double> major{
      trueStrain(20), trueStrain(31), trueStrain(40), trueStrain(80), 0.10, nan, 1e-4};
  const std::vector<double> minor{0.0, 0.05, 0.0, -0.1, -0.15, 0.0, -2e-4};
  const std::vector<double> area{1, 2, 4, 8, 16, 32, 64};
  const LimitResult result = classifyStrains(major, minor, area, curve, 10.0);
  EXPECT_THAT(result.zone, ElementsAre(0, 1, 2, 2, 3, -1, 0));
  EXPECT_THAT(result.count, ElementsAre(2, 1, 2, 1));
  EXPECT_THAT(result.area, ElementsAre(65, 2, 12, 16));
  EXPECT_EQ(result.nearest, 4);
  EXPECT_NEAR(result.distance[0], 20.0, 1e-12);
  EXPECT_NEAR(result.distance[3], -40.0, 1e-12);
  EXPECT_TRUE(std::isnan(result.distance[5]));
}

TEST(FormingLimit, TheMarginCounts) {
  const LimitCurve curve{{{0.0, trueStrain(40)}}, ""};
  EXPECT_THAT(classifyStrains({trueStrain(31)}, {0.0}, {1}, curve, 8.0).zone, ElementsAre(0));
  EXPECT_THAT(classifyStrains({trueStrain(31)}, {0.0}, {1}, curve, 10.0).zone, ElementsAre(1));
  EXPECT_EQ(classifyStrains({}, {}, {}, curve, 10.0).nearest, 0);
}

TEST(FldPicture, ALongCaptionIsBrokenAtBlanks) {
  const LimitCurve curve{{{0.0, 0.3}},
                         std::string(30, 'a') + " " + std::string(60, 'b') + " " + std::string(200, 'c')};
  const std::string svg =
      fldPicture({0.1}, {0.0}, classifyStrains({0.1}, {0.0}, {1}, curve, 10.0), curve, 10.0, "");
  for (const char letter : {'a', 'b', 'c'})
    EXPECT_THAT(svg, HasSubstr(">" + std::string(letter == 'a' ? 30 : letter == 'b' ? 60 : 200, letter)));
  EXPECT_THAT(svg, HasSubstr("margin 10 %</text>"));
  LimitCurve hostile = curve;
  hostile.basis = "--flc </text><script>alert(1)</script>";
  EXPECT_THAT(fldPicture({0.1}, {0.0}, classifyStrains({0.1}, {0.0}, {1}, hostile, 10.0), hostile, 10.0, ""),
              testing::Not(HasSubstr("<script>")));
}

TEST(FldPicture, ShowsCurveZonesAndCounts) {
  const LimitCurve curve = keelerCurve(1.0, 0.21);
  const std::vector<double> major{0.1, 0.5, 40.0, std::numeric_limits<double>::infinity()};
  const std::vector<double> minor{0.0, 0.0, 0.0, 0.0};
  const LimitResult result = classifyStrains(major, minor, {1, 1, 1, 1}, curve, 10.0);
  const std::string svg = fldPicture(major, minor, result, curve, 10.0, "<b>");
  EXPECT_THAT(svg, HasSubstr("minor strain, engineering, %"));
  EXPECT_THAT(svg, HasSubstr("FLC0 37.4 % after Keeler and Brazier"));
  EXPECT_THAT(svg, HasSubstr("split: 2 triangles"));
  EXPECT_THAT(svg, HasSubstr("<title>&lt;b&gt;</title>"));
  EXPECT_THAT(svg, testing::Not(HasSubstr("nan")));
  EXPECT_LT(svg.size(), 30000u);
}
