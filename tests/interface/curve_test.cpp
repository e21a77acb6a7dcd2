// Flow curves of the host: what makes a usable one, what becomes of it, and the way back.
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "material/material_setup.hpp"
#include "refusals.hpp"

namespace extension {
namespace {

using tornwalzen::flowCurve;
using tornwalzen::materialSetup;
using tornwalzen::run;

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

struct Points {
  std::vector<double> strain, stress;
  int set(int selector = 1) const {
    return tornwalzen_set_flow_curve(selector, static_cast<std::int32_t>(strain.size()), strain.data(),
                                     stress.data());
  }
};

const Points usable{{0.0, 0.1, 0.3}, {200.0, 300.0, 350.0}};

using FlowCurveOfTheHost = ExtensionTest;

TEST_F(FlowCurveOfTheHost, ReplacesItsSelectorAloneAndEndsAtTheFarPointAlongTheLastSlope) {
  ASSERT_EQ(usable.set(2), 0);
  materialSetup(2);
  ASSERT_EQ(run.npkt, 4);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(flowCurve()(i + 1, 1), usable.strain[i]);
    EXPECT_EQ(flowCurve()(i + 1, 2), usable.stress[i] / 200.0);
  }
  EXPECT_EQ(flowCurve()(4, 1), 5.0);
  EXPECT_NEAR(flowCurve()(4, 2), (350.0 + 250.0 * 4.7) / 200.0, 1e-14);
  EXPECT_EQ(flowCurve()(4, 3), flowCurve()(3, 3)) << "the row behind the last segment repeats its slope";
  materialSetup(1);
  EXPECT_EQ(run.npkt, 26);
}

TEST_F(FlowCurveOfTheHost, ZeroPointsRestoreTheBuiltInCurve) {
  materialSetup(0);
  const std::vector<double> builtIn(run.FC, run.FC + 350);
  ASSERT_EQ(usable.set(0), 0);
  materialSetup(0);
  EXPECT_EQ(run.npkt, 4);
  ASSERT_EQ(tornwalzen_set_flow_curve(0, 0, nullptr, nullptr), 0);
  materialSetup(0);
  EXPECT_EQ(run.npkt, 25);
  for (int k = 0; k < 25; ++k)
    for (int j = 0; j < 7; ++j) EXPECT_EQ(run.FC[50 * j + k], builtIn[static_cast<std::size_t>(50 * j + k)]);
}

TEST_F(FlowCurveOfTheHost, TakesThreeToFortyNinePoints) {
  for (const int n : {3, 49}) {
    Points points;
    for (int i = 0; i < n; ++i) points.strain.push_back(0.01 * i), points.stress.push_back(100.0 + i);
    EXPECT_EQ(points.set(), 0);
    materialSetup(1);
    EXPECT_EQ(run.npkt, n + 1);
  }
  for (const int n : {-1, 1, 2, 50, 2147483647})
    expectRefused([&] { return tornwalzen_set_flow_curve(1, n, usable.strain.data(), usable.stress.data()); },
                  TORNWALZEN_BAD_POINT_COUNT,
                  "eine Fliesskurve braucht 3 bis 49 Punkte, nicht " +
                      std::string(n > 1000 ? "2.14748365e+09" : std::to_string(n)),
                  "a flow curve takes 3 to 49 points, not " +
                      std::string(n > 1000 ? "2.14748365e+09" : std::to_string(n)));
}

TEST_F(FlowCurveOfTheHost, KeepsAnEarlierCurveWhereANewOneIsRefused) {
  ASSERT_EQ(usable.set(), 0);
  Points bad = usable;
  bad.stress[1] = -1.0;
  EXPECT_EQ(bad.set(), TORNWALZEN_STRESS_NOT_POSITIVE);
  materialSetup(1);
  EXPECT_EQ(run.npkt, 4);
  EXPECT_EQ(flowCurve()(2, 2), 1.5);
}

TEST_F(FlowCurveOfTheHost, RefusesOtherSelectors) {
  for (const int selector : {-1, 3, 10})
    expectRefused(
        [&] { return usable.set(selector); }, TORNWALZEN_BAD_SELECTOR,
        "die Fliesskurve " + std::to_string(selector) + " gibt es nicht oder sie kann nicht ersetzt werden",
        "there is no flow curve " + std::to_string(selector) + ", or it cannot be replaced");
}

TEST_F(FlowCurveOfTheHost, RefusesNullPointers) {
  expectRefused([] { return tornwalzen_set_flow_curve(1, 3, nullptr, usable.stress.data()); },
                TORNWALZEN_NULL_POINTER, "Argument 3 ist ein Nullzeiger", "argument 3 is a null pointer");
  expectRefused([] { return tornwalzen_set_flow_curve(1, 3, usable.strain.data(), nullptr); },
                TORNWALZEN_NULL_POINTER, "Argument 4 ist ein Nullzeiger", "argument 4 is a null pointer");
}

TEST_F(FlowCurveOfTheHost, RefusesNumbersThatAreNotFiniteByIndexAndValue) {
  Points bad = usable;
  bad.strain[2] = inf;
  expectRefused([&] { return bad.set(); }, TORNWALZEN_POINT_NOT_FINITE,
                "Punkt 3 der Fliesskurve ist keine endliche Zahl: inf",
                "point 3 of the flow curve is not a finite number: inf");
  bad = usable;
  bad.stress[0] = notANumber;
  expectRefused([&] { return bad.set(); }, TORNWALZEN_POINT_NOT_FINITE,
                "Punkt 1 der Fliesskurve ist keine endliche Zahl: nan",
                "point 1 of the flow curve is not a finite number: nan");
}

TEST_F(FlowCurveOfTheHost, RefusesAFirstStrainThatIsNotExactlyZero) {
  Points bad = usable;
  bad.strain[0] = 1e-9;
  expectRefused([&] { return bad.set(); }, TORNWALZEN_FIRST_STRAIN_NOT_ZERO,
                "die erste Dehnung der Fliesskurve muss genau 0 sein, nicht 1e-09",
                "the first strain of the flow curve must be exactly 0, not 1e-09");
}

TEST_F(FlowCurveOfTheHost, RefusesStrainsThatDoNotIncrease) {
  Points bad = usable;
  bad.strain[2] = 0.1;
  expectRefused([&] { return bad.set(); }, TORNWALZEN_STRAIN_NOT_INCREASING,
                "Dehnung 3 der Fliesskurve ist 0.1, nicht groesser als die davor",
                "strain 3 of the flow curve is 0.1, not larger than the one before it");
}

TEST_F(FlowCurveOfTheHost, RefusesStrainsFromTheFarPointOn) {
  const Points bad{{0.0, 1.0, 5.0, 6.0}, {1.0, 1.0, 1.0, 1.0}};
  expectRefused([&] { return bad.set(); }, TORNWALZEN_STRAIN_TOO_LARGE,
                "Dehnung 3 der Fliesskurve ist 5, sie muss kleiner als 5 sein",
                "strain 3 of the flow curve is 5, it must be below 5");
}

TEST_F(FlowCurveOfTheHost, RefusesStressesThatMustBePascal) {
  Points bad = usable;
  for (double& stress : bad.stress) stress *= 1e6;
  const double first = bad.stress[0];
  char value[32];
  std::snprintf(value, sizeof value, "%.9g", first);
  expectRefused(
      [&] { return bad.set(); }, TORNWALZEN_STRESS_TOO_LARGE,
      "Spannung 1 der Fliesskurve ist " + std::string(value) + " MPa, kein Blech traegt so viel: sind es Pa?",
      "stress 1 of the flow curve is " + std::string(value) + " MPa, which no sheet bears: is it Pa?");
  Points large{{0.0, 0.1, 0.2}, {20000.0, 20000.0, 20000.0}};
  EXPECT_EQ(large.set(), 0);
}

TEST(LoadedCurveOfAnySize, IsDividedByItsSmallestStress) {
  tornwalzen::RunOptions options;
  options.curves[1].points = 3;
  for (int k = 0; k < 3; ++k) {
    options.curves[1].strain[k] = 0.1 * k;
    options.curves[1].stress[k] = 2e10 * (k + 1);
  }
  std::vector<double> memory(tornwalzen::curveRows * tornwalzen::curveColumns);
  const tornwalzen::Table<double> FC("FC", memory.data(), tornwalzen::curveRows, tornwalzen::curveColumns);
  tornwalzen::Int npkt = 0;
  double smin = 0.0;
  ASSERT_TRUE(tornwalzen::loadFlowCurve(options, 1, FC, npkt, smin));
  EXPECT_EQ(smin, 2e10);
  EXPECT_EQ(FC(1, 2), 1.0);
  EXPECT_EQ(FC(3, 2), 3.0);
}

TEST_F(FlowCurveOfTheHost, RefusesStressesThatAreNotPositive) {
  for (const double stress : {0.0, -20.0}) {
    Points bad = usable;
    bad.stress[2] = stress;
    const std::string value = stress == 0.0 ? "0" : "-20";
    expectRefused([&] { return bad.set(); }, TORNWALZEN_STRESS_NOT_POSITIVE,
                  "Spannung 3 der Fliesskurve ist " + value + " MPa, nicht positiv",
                  "stress 3 of the flow curve is " + value + " MPa, not positive");
  }
}

TEST_F(FlowCurveOfTheHost, RefusesACubicThatDipsBelowZeroBetweenPositivePoints) {
  // a steep fall before a flat piece: the mean slope at the joint, -4995 MPa, carries the cubic 4/27 of it times 0.1
  // below the points
  const Points bad{{0.0, 0.1, 0.2, 0.3, 0.4}, {1000.0, 1000.0, 1.0, 1.0, 2.0}};
  const std::string before = libraryState();
  EXPECT_EQ(bad.set(), TORNWALZEN_CURVE_NOT_POSITIVE);
  EXPECT_EQ(libraryState(), before);
  EXPECT_EQ(std::string(tornwalzen_error_text(TORNWALZEN_CURVE_NOT_POSITIVE, 1)).substr(0, 28),
            "the flow curve falls to -73.");
  EXPECT_NE(std::string(tornwalzen_error_text(TORNWALZEN_CURVE_NOT_POSITIVE, 1)).find("behind point 3,"),
            std::string::npos);
  EXPECT_EQ(std::string(tornwalzen_error_text(TORNWALZEN_CURVE_NOT_POSITIVE, 0)).substr(0, 49),
            "die Fliesskurve faellt hinter Punkt 3 bis auf -73");
}

TEST_F(FlowCurveOfTheHost, RefusesASofteningThatReachesZeroBeforeTheFarPoint) {
  const Points bad{{0.0, 0.1, 1.0}, {400.0, 300.0, 200.0}};
  expectRefused([&] { return bad.set(); }, TORNWALZEN_CURVE_NOT_POSITIVE,
                "die Fliesskurve faellt hinter Punkt 3 bis auf -244.444444 MPa, sie muss positiv bleiben",
                "the flow curve falls to -244.444444 MPa behind point 3, it must stay positive");
  const Points mild{{0.0, 0.1, 1.0}, {400.0, 300.0, 280.0}};
  EXPECT_EQ(mild.set(), 0) << "280 MPa less 4 times 22.2 MPa";
}

TEST_F(FlowCurveOfTheHost, EveryAcceptedCubicIsPositiveWhereItIsSampled) {
  unsigned seed = 1;
  const auto next = [&seed] { return (seed = seed * 1103515245u + 12345u) / 4294967296.0; };
  int accepted = 0, refused = 0;
  for (int trial = 0; trial < 2000; ++trial) {
    Points points;
    double strain = 0.0;
    for (int i = 0; i < 6; ++i) {
      points.strain.push_back(strain);
      points.stress.push_back(std::pow(10.0, 3.0 * next()));
      strain += 0.01 + next();
      if (strain >= 5.0) break;
    }
    if (points.strain.size() < 3) continue;
    const int code = points.set();
    tornwalzen::HostCurve curve;
    curve.points = static_cast<int>(points.strain.size());
    std::copy(points.strain.begin(), points.strain.end(), curve.strain);
    std::copy(points.stress.begin(), points.stress.end(), curve.stress);
    double table[50 * 7];
    const tornwalzen::Table<double> FC("FC", table, 50, 7);
    int npkt;
    tornwalzen::copyHostCurve(curve, FC, npkt);
    tornwalzen::prepareFlowCurve(FC, npkt);
    double smallest = inf;
    for (int k = 1; k < npkt; ++k)
      for (int s = 0; s <= 400; ++s) {
        const double e = FC(k, 1) + (FC(k + 1, 1) - FC(k, 1)) * s / 400.0;
        smallest = std::min(smallest, ((FC(k, 4) * e + FC(k, 5)) * e + FC(k, 6)) * e + FC(k, 7));
      }
    if (code == 0) {
      ++accepted;
      EXPECT_GT(smallest, 0.0);
    } else {
      ++refused;
      EXPECT_LT(smallest, 0.1) << "a dip between two samples is shallow";
    }
  }
  EXPECT_GT(accepted, 100);
  EXPECT_GT(refused, 100);
}

}  // namespace
}  // namespace extension
