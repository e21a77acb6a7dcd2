// Points of the hardening laws against their formulas, and what their parameters may be.
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <utility>

#include "refusals.hpp"

namespace extension {
namespace {

using HardeningLaw = ExtensionTest;

constexpr int n = 25;
constexpr double strainTo = 0.8;

struct Curve {
  double strain[49] = {}, stress[49] = {};
  void expect(const std::function<double(double)>& law) const {
    for (int i = 0; i < n; ++i) {
      EXPECT_NEAR(strain[i], strainTo * i * i / 576.0, 1e-15);
      EXPECT_NEAR(stress[i], law(strain[i]), 1e-12 * law(strain[i])) << i;  // powers are good to a few ulp
    }
    EXPECT_EQ(strain[0], 0.0);
    EXPECT_EQ(strain[n - 1], strainTo);
    EXPECT_EQ(strain[n], 0.0) << "nothing is written behind the points";
    EXPECT_EQ(tornwalzen_set_flow_curve(1, n, strain, stress), 0) << "usable as it is";
  }
};

TEST_F(HardeningLaw, HollomonHoldsItsProofStressBelowTheProofStrain) {
  Curve c;
  ASSERT_EQ(tornwalzen_points_hollomon(530.0, 0.23, strainTo, n, c.strain, c.stress), 0);
  c.expect([](double e) { return 530.0 * std::exp(0.23 * std::log(std::max(e, 0.002))); });
  EXPECT_NEAR(c.stress[0], 530.0 * std::pow(0.002, 0.23), 1e-10);
}

TEST_F(HardeningLaw, Swift) {
  Curve c;
  ASSERT_EQ(tornwalzen_points_swift(549.03, 0.007, 0.22, strainTo, n, c.strain, c.stress), 0);
  c.expect([](double e) { return 549.03 * std::exp(0.22 * std::log(0.007 + e)); });
}

TEST_F(HardeningLaw, Ludwik) {
  Curve c;
  ASSERT_EQ(tornwalzen_points_ludwik(150.0, 400.0, 0.5, strainTo, n, c.strain, c.stress), 0);
  c.expect([](double e) { return 150.0 + 400.0 * std::sqrt(e); });
}

TEST_F(HardeningLaw, Voce) {
  Curve c;
  ASSERT_EQ(tornwalzen_points_voce(120.0, 280.0, 9.0, strainTo, n, c.strain, c.stress), 0);
  c.expect([](double e) { return 120.0 - 160.0 * std::expm1(-9.0 * e); });
}

TEST_F(HardeningLaw, HockettSherby) {
  Curve c;
  ASSERT_EQ(tornwalzen_points_hockett_sherby(120.0, 400.0, 4.0, 0.5, strainTo, n, c.strain, c.stress), 0);
  c.expect([](double e) { return 120.0 - 280.0 * std::expm1(-4.0 * std::sqrt(e)); });
}

TEST_F(HardeningLaw, RefusesParametersOutsideTheirRangeByPlaceAndValue) {
  double strain[49] = {7.0}, stress[49] = {7.0};
  const auto swift = [&](double K, double e0, double m, double to) {
    return [=, &strain, &stress] { return tornwalzen_points_swift(K, e0, m, to, n, strain, stress); };
  };
  const auto texts = [](int place, const std::string& value) {
    return std::pair{
        "Parameter " + std::to_string(place) + " des Verfestigungsgesetzes ist " + value +
            ", ausserhalb seines Bereichs",
        "parameter " + std::to_string(place) + " of the hardening law is " + value + ", outside its range"};
  };
  const auto expect = [&](const auto& call, int place, const std::string& value) {
    const auto [german, english] = texts(place, value);
    expectRefused(call, TORNWALZEN_BAD_LAW, german, english);
  };
  expect(swift(0.0, 0.007, 0.22, 1.0), 1, "0");
  expect(swift(500.0, -0.5, 0.22, 1.0), 2, "-0.5");
  expect(swift(500.0, 0.007, std::numeric_limits<double>::infinity(), 1.0), 3, "inf");
  expect(swift(500.0, 0.007, 0.22, 5.0), 4, "5");
  EXPECT_EQ(strain[0], 7.0);
  EXPECT_EQ(stress[0], 7.0);
}

TEST_F(HardeningLaw, RefusesCountsAndNullPointers) {
  double strain[49], stress[49];
  for (const int count : {2, 50})
    expectRefused([&] { return tornwalzen_points_voce(120.0, 280.0, 9.0, 1.0, count, strain, stress); },
                  TORNWALZEN_BAD_POINT_COUNT,
                  "eine Fliesskurve braucht 3 bis 49 Punkte, nicht " + std::to_string(count),
                  "a flow curve takes 3 to 49 points, not " + std::to_string(count));
  expectRefused([&] { return tornwalzen_points_voce(120.0, 280.0, 9.0, 1.0, 9, nullptr, stress); },
                TORNWALZEN_NULL_POINTER, "Argument 6 ist ein Nullzeiger", "argument 6 is a null pointer");
  expectRefused([&] { return tornwalzen_points_hollomon(530.0, 0.2, 1.0, 9, strain, nullptr); },
                TORNWALZEN_NULL_POINTER, "Argument 6 ist ein Nullzeiger", "argument 6 is a null pointer");
}

}  // namespace
}  // namespace extension
