// Strains per element of triangles whose deformation is known.
#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "refusals.hpp"

namespace extension {
namespace {

using ElementStrains = ExtensionTest;

constexpr double ulp = 2.3e-16;

constexpr double unitTriangle[6] = {0, 0, 1, 0, 0, 1}, largeTriangle[6] = {2, 1, 14, 3, 5, 17};

/// A blank triangle (u, v of each corner), stretched by `major` along the angle (radians) and by `minor`
/// across, then laid on a plane that is turned about x.
struct Stretched {
  double knots[9], rx[6];
  std::int32_t inzi[3] = {1, 2, 3};
  double axis[3];

  Stretched(double major, double minor, double angle, double tilt, const double (&blank)[6] = unitTriangle) {
    std::copy(blank, blank + 6, rx);
    const double c = std::cos(angle), s = std::sin(angle);
    for (int n = 0; n < 3; ++n) {
      const double along = major * (c * rx[2 * n] + s * rx[2 * n + 1]);
      const double across = minor * (c * rx[2 * n + 1] - s * rx[2 * n]);
      const double x = c * along - s * across, y = s * along + c * across;
      knots[3 * n] = x + 7.0;
      knots[3 * n + 1] = std::cos(tilt) * y;
      knots[3 * n + 2] = std::sin(tilt) * y;
    }
    axis[0] = c, axis[1] = std::cos(tilt) * s, axis[2] = std::sin(tilt) * s;
  }
  TornwalzenElementStrain evaluate(int selector = 1) const {
    TornwalzenElementStrain strain;
    EXPECT_EQ(tornwalzen_element_strains(selector, 3, 1, knots, inzi, rx, &strain), 0);
    return strain;
  }
};

TEST_F(ElementStrains, AreThoseOfAKnownStretchInEveryDirection) {
  const double angles[] = {0.0, 0.3, 0.8, 1.5707963267948966, 2.0, 3.0};
  for (const auto* const blank : {&unitTriangle, &largeTriangle})
    for (const double angle : angles) {
      const Stretched triangle(1.3, 0.9, angle, 0.7, *blank);
      const TornwalzenElementStrain S = triangle.evaluate();
      EXPECT_NEAR(S.major, std::log(1.3), 100 * ulp);
      EXPECT_NEAR(S.minor, std::log(0.9), 100 * ulp);
      EXPECT_NEAR(S.thickness, -std::log(1.3 * 0.9), 100 * ulp);
      const double sign = S.direction_blank[0] * std::cos(angle) + S.direction_blank[1] * std::sin(angle);
      EXPECT_NEAR(std::fabs(sign), 1.0, 100 * ulp) << "along the stretch, either way";
      double onPart = 0.0, length = 0.0;
      for (int i = 0; i < 3; ++i) {
        onPart += S.direction_part[i] * triangle.axis[i];
        length += S.direction_part[i] * S.direction_part[i];
      }
      EXPECT_NEAR(onPart, sign, 100 * ulp) << "the same direction on the part";
      EXPECT_NEAR(length, 1.0, 100 * ulp);
    }
}

TEST_F(ElementStrains, EquivalentStrainFollowsTheAnisotropy) {
  for (const double r : {1.0, 1.8}) {
    ASSERT_EQ(tornwalzen_set_normal_anisotropy(r), 0);
    const TornwalzenElementStrain S = Stretched(1.2, 1.1, 0.4, 0.0).evaluate();
    const double e1 = std::log(1.2), e2 = std::log(1.1);
    const double expected =
        (1 + r) / std::sqrt(1 + 2 * r) * std::sqrt(e1 * e1 + e2 * e2 + 2 * r / (1 + r) * e1 * e2 + 1e-10);
    EXPECT_NEAR(S.equivalent, expected, 2e-8 * expected) << "2/sqrt(3) is held in single precision";
  }
}

TEST_F(ElementStrains, FlowStressIsThatOfTheSelectorsCurveInMegapascal) {
  // uniaxial stress: e2 = -e1/2, so the equivalent strain is e1 and can be put on a point of the curve
  const double e1 = 0.1 / 1.0000000178;  // 2/√3 in single precision over 2/√3
  const Stretched triangle(std::exp(e1), std::exp(-0.5 * e1), 0.4, 0.0);
  EXPECT_NEAR(triangle.evaluate(1).flow_stress, 495.27, 1e-3)
      << "the slope is some 800 MPa, times 1e-7 of strain";
  EXPECT_NEAR(triangle.evaluate(2).flow_stress, 272.1, 1e-3);
  const double strain[4] = {0.0, 0.05, 0.1, 0.2}, stress[4] = {640.0, 700.0, 720.0, 600.0};
  ASSERT_EQ(tornwalzen_set_flow_curve(1, 4, strain, stress), TORNWALZEN_CURVE_NOT_POSITIVE);
  const double rising[4] = {640.0, 700.0, 720.0, 730.0};
  ASSERT_EQ(tornwalzen_set_flow_curve(1, 4, strain, rising), 0);
  EXPECT_NEAR(triangle.evaluate(1).flow_stress, 720.0, 1e-3);
}

TEST_F(ElementStrains, UndeformedTriangleHasTheRegulariserAlone) {
  const TornwalzenElementStrain S = Stretched(1.0, 1.0, 0.0, 0.0).evaluate();
  EXPECT_NEAR(S.major, 0.0, 4 * ulp);
  EXPECT_NEAR(S.minor, 0.0, 4 * ulp);
  EXPECT_NEAR(S.equivalent, 1.154700517654419e-5, 1e-15);
  EXPECT_NEAR(S.flow_stress, 366.0, 1e-2);
  EXPECT_EQ(S.direction_blank[0], 1.0);
  EXPECT_EQ(S.direction_blank[1], 0.0);
}

TEST_F(ElementStrains, OrientationDoesNotMatter) {
  Stretched triangle(1.3, 0.9, 0.5, 0.2);
  const TornwalzenElementStrain one = triangle.evaluate();
  std::swap(triangle.inzi[1], triangle.inzi[2]);
  const TornwalzenElementStrain other = triangle.evaluate();
  EXPECT_NEAR(one.major, other.major, 10 * ulp);
  EXPECT_NEAR(one.minor, other.minor, 10 * ulp);
}

TEST_F(ElementStrains, TriangleWithoutAreaGivesNoNumbersAndSparesTheOthers) {
  Stretched triangle(1.3, 0.9, 0.5, 0.2);
  const std::int32_t inzi[6] = {1, 2, 2, 1, 2, 3};
  TornwalzenElementStrain strains[2];
  ASSERT_EQ(tornwalzen_element_strains(1, 3, 2, triangle.knots, inzi, triangle.rx, strains), 0);
  EXPECT_FALSE(std::isfinite(strains[0].equivalent));
  EXPECT_FALSE(std::isfinite(strains[0].thickness));
  EXPECT_NEAR(strains[1].major, std::log(1.3), 100 * ulp);
}

TEST_F(ElementStrains, NoElementsNeedNoArrays) {
  EXPECT_EQ(tornwalzen_element_strains(1, 0, 0, nullptr, nullptr, nullptr, nullptr), 0);
}

TEST_F(ElementStrains, RefuseBadArgumentsAndWriteNothing) {
  Stretched t(1.3, 0.9, 0.5, 0.2);
  TornwalzenElementStrain out{};
  out.major = 7.0;
  const auto call = [&](int selector, int nn, int ne, const double* knots, const std::int32_t* inzi,
                        const double* rx) {
    return [=, &out] { return tornwalzen_element_strains(selector, nn, ne, knots, inzi, rx, &out); };
  };
  expectRefused(call(3, 3, 1, t.knots, t.inzi, t.rx), TORNWALZEN_BAD_SELECTOR,
                "die Fliesskurve 3 gibt es nicht oder sie kann nicht ersetzt werden",
                "there is no flow curve 3, or it cannot be replaced");
  expectRefused(call(1, -1, 1, t.knots, t.inzi, t.rx), TORNWALZEN_BAD_COUNT,
                "Argument 2, eine Anzahl, ist -1", "argument 2, a count, is -1");
  expectRefused(call(1, 3, -4, t.knots, t.inzi, t.rx), TORNWALZEN_BAD_COUNT,
                "Argument 3, eine Anzahl, ist -4", "argument 3, a count, is -4");
  expectRefused(call(1, 2, 1, t.knots, t.inzi, t.rx), TORNWALZEN_BAD_NODE,
                "Eintrag 3 der Inzidenzen ist 3, das ist keine Knotennummer",
                "entry 3 of the incidences is 3, which is no node number");
  expectRefused(call(1, 3, 1, nullptr, t.inzi, t.rx), TORNWALZEN_NULL_POINTER,
                "Argument 4 ist ein Nullzeiger", "argument 4 is a null pointer");
  expectRefused(call(1, 3, 1, t.knots, nullptr, t.rx), TORNWALZEN_NULL_POINTER,
                "Argument 5 ist ein Nullzeiger", "argument 5 is a null pointer");
  expectRefused(call(1, 3, 1, t.knots, t.inzi, nullptr), TORNWALZEN_NULL_POINTER,
                "Argument 6 ist ein Nullzeiger", "argument 6 is a null pointer");
  expectRefused([&] { return tornwalzen_element_strains(1, 3, 1, t.knots, t.inzi, t.rx, nullptr); },
                TORNWALZEN_NULL_POINTER, "Argument 7 ist ein Nullzeiger", "argument 7 is a null pointer");
  EXPECT_EQ(out.major, 7.0);
}

}  // namespace
}  // namespace extension
