// The press model on the drawn parts against their forward simulations, on exact developments, on symmetric and turned parts.
#include "verification/press_parts.hpp"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <map>

#include "verification/developments.hpp"

namespace verification {
namespace {

struct Limits {
  double mean, largest, rms, correlation;  // mm, mm, mm, dimensionless
};
struct Wanted {
  Limits tools, alone;
};
// in the order of processes()
constexpr Wanted wanted[] = {{{0.33, 0.55, 0.0090, 0.97}, {0.26, 0.52, 0.0112, 0.95}},
                             {{0.15, 0.17, 0.020, 0.94}, {0.20, 0.22, 0.028, 0.88}},
                             {{0.08, 0.09, 0.0055, 0.99}, {0.16, 0.17, 0.0090, 0.975}}};

class PressPartsTest : public ::testing::TestWithParam<std::size_t> {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(TORNWALZEN_PARTS))
      GTEST_SKIP() << "skipped: there is no folder " TORNWALZEN_PARTS;
  }
  void check(const TornwalzenPress& press, const Limits& limits) {
    const Process& process = processes()[GetParam()];
    const DrawnCup cup = readDrawnPart(TORNWALZEN_PARTS, process.name);
    const Handle handle = handleOf(cup.part, process.ownCurve);
    const PressRun run = runPress(handle.get(), press);
    ASSERT_EQ(run.code, TORNWALZEN_OK);
    EXPECT_EQ(run.report.converged, 1);
    EXPECT_EQ(run.result.exponent, 1.0);
    const CupErrors errors = compareCup(cup, run.RX, process.thickness);
    EXPECT_LE(errors.edgeMean, limits.mean);
    EXPECT_LE(errors.edgeLargest, limits.largest);
    EXPECT_LE(errors.thicknessRms, limits.rms);
    EXPECT_GE(errors.correlation, limits.correlation);
  }
};

INSTANTIATE_TEST_SUITE_P(Parts, PressPartsTest,
                         ::testing::Values(std::size_t{0}, std::size_t{1}, std::size_t{2}),
                         [](const auto& which) { return std::string(processes()[which.param].name); });

TEST_P(PressPartsTest, WithItsProcessData) {
  check(pressOf(processes()[GetParam()]), wanted[GetParam()].tools);
}

TEST_P(PressPartsTest, WithoutToolData) {
  check(sheetOf(processes()[GetParam()].thickness), wanted[GetParam()].alone);
}

TEST(PressDevelopmentTest, IsExactWithoutTools) {
  for (const Development& development : developments())
    for (const int bending : {TORNWALZEN_AUTOMATIC, TORNWALZEN_BENDING_RELEASED}) {
      shapes::MeshChoice choice;
      choice.size = 5.0;
      const shapes::Sheet sheet = shapes::makeShape(development.shape, choice, development.changes);
      const Handle handle = handleOf(host_kit::fromSheet(sheet), false);
      TornwalzenPress press = sheetOf(1.0);
      press.bending = bending;
      const PressRun run = runPress(handle.get(), press);
      ASSERT_EQ(run.code, TORNWALZEN_OK);
      EXPECT_EQ(run.result.exponent, 1.0) << development.name;
      EXPECT_LE(largestError(run.RX, sheet.blank), 0.001) << development.name;
    }
}

TornwalzenPress cupPress() {
  TornwalzenPress press = sheetOf(1.0);
  press.friction_punch = press.friction_die = 0.1;
  press.binder_force_n = 10000.0;
  press.flange_of_rim = 1;
  return press;
}

/// A turn about x and then about z.
host_kit::HostPart turnedPart(const host_kit::HostPart& part, double aboutX, double aboutZ) {
  host_kit::HostPart result = part;
  for (std::size_t n = 0; n < part.knots.size(); n += 3) {
    const double x = part.knots[n],
                 y = std::cos(aboutX) * part.knots[n + 1] - std::sin(aboutX) * part.knots[n + 2];
    result.knots[n] = std::cos(aboutZ) * x - std::sin(aboutZ) * y;
    result.knots[n + 1] = std::sin(aboutZ) * x + std::cos(aboutZ) * y;
    result.knots[n + 2] = std::sin(aboutX) * part.knots[n + 1] + std::cos(aboutX) * part.knots[n + 2];
  }
  host_kit::holdRigidMotion(result);
  return result;
}

TEST(PressAttitudeTest, TheBlankDoesNotDependOnHowThePartLies) {
  const host_kit::HostPart part = host_kit::samplePart("round_cup", 2000);
  const Handle one = handleOf(part, false), other = handleOf(turnedPart(part, 0.7, 2.0), false);
  const PressRun lying = runPress(one.get(), cupPress()), turned = runPress(other.get(), cupPress());
  ASSERT_EQ(lying.result.loads_held, 1);
  ASSERT_EQ(turned.result.loads_held, 1);
  EXPECT_LE(largestError(turned.RX, lying.RX), 1e-4);
}

// Beyond the exponent 1 too, where the way ends by a test of its own.
TEST(PressAttitudeTest, NeitherDoesTheExponentThatIsReached) {
  const host_kit::HostPart part = host_kit::samplePart("box", 1500);
  const Handle one = handleOf(part, false), other = handleOf(turnedPart(part, 1.1, -0.4), false);
  const PressRun lying = runPress(one.get(), sheetOf(1.0)), turned = runPress(other.get(), sheetOf(1.0));
  EXPECT_EQ(lying.result.exponent, turned.result.exponent);
  EXPECT_LE(largestError(turned.RX, lying.RX), 1e-4);
}

/// Largest distance of a node from the mirror image of its own, over the size, after the turn that fits the blanks best.
double asymmetry(const host_kit::HostPart& part, const std::vector<double>& RX) {
  std::map<std::array<double, 3>, std::size_t> places;
  const std::size_t nodes = RX.size() / 2;
  for (std::size_t n = 0; n < nodes; ++n)
    places[{part.knots[3 * n], part.knots[3 * n + 1], part.knots[3 * n + 2]}] = n;
  std::vector<double> mirrored(RX.size());
  double size = 0.0;
  for (std::size_t n = 0; n < nodes; ++n) {
    const std::size_t m = places.at({0.0 - part.knots[3 * n], part.knots[3 * n + 1], part.knots[3 * n + 2]});
    mirrored[2 * n] = -RX[2 * m], mirrored[2 * n + 1] = RX[2 * m + 1];
    size = std::max({size, std::fabs(RX[2 * n]), std::fabs(RX[2 * n + 1])});
  }
  return largestError(mirrored, RX) / size;
}

TEST(PressSymmetryTest, ASymmetricPartHasASymmetricBlank) {
  for (const char* name : {"round_cup", "box", "square_cup"})
    for (const bool tools : {false, true}) {
      const host_kit::HostPart part = host_kit::samplePart(name, 1000);
      const Handle handle = handleOf(part, false);
      const PressRun run = runPress(handle.get(), tools ? cupPress() : sheetOf(1.0));
      ASSERT_EQ(run.report.converged, 1) << name;
      EXPECT_LE(asymmetry(part, run.RX), 1e-8) << name << (tools ? " with tools" : "");
    }
}

// Measured: 28.5 mm on the axes, 15.0 mm on the diagonal. The steel does not bear the corner of this cup at the work itself.
TEST(PressFamilyTest, TheSquareCupIsDrawnInAsMeasured) {
  shapes::MeshChoice choice;
  choice.triangles = 3000;
  choice.quarter = true;
  host_kit::HostPart part =
      host_kit::fromSheet(shapes::makeShape("square_cup", choice, {{"edge_on_axis", 46.5}}));
  host_kit::holdSymmetryPlanes(part);
  const double steel[] = {565.32, 0.007117, 0.2589};
  const Handle handle = handleOf(part, false);
  tornwalzen_analysis_set_law(handle.get(), TORNWALZEN_SWIFT, steel, 1.0);
  TornwalzenPress press = sheetOf(0.78);
  press.r0 = press.r45 = press.r90 = 1.77;
  press.friction_punch = press.friction_die = 0.144;
  press.binder_force_n = 4900.0;
  press.flange_of_rim = 1;
  const PressRun run = runPress(handle.get(), press);
  ASSERT_EQ(run.report.converged, 1);
  EXPECT_EQ(run.result.loads_held, 1);
  EXPECT_GT(run.result.exponent, 1.0);
  EXPECT_LT(run.result.exponent, 1.15);
  EXPECT_LT(run.report.factorizations, 45);
  for (const auto& [a, b] : outerEdge(part))
    for (const std::size_t n : {a, b}) {
      const double x = part.knots[3 * n], y = part.knots[3 * n + 1];
      const double drawnIn = std::hypot(run.RX[2 * n], run.RX[2 * n + 1]) - std::hypot(x, y);
      if (std::min(x, y) < 1e-6) {
        EXPECT_NEAR(drawnIn, 28.5, 1.5);
      }
      if (std::fabs(x - y) < 1e-6) {
        EXPECT_NEAR(drawnIn, 15.0, 0.5);
      }
    }
}

// A full cup is the quarter four times: the binder presses with four times the force.
TEST(PressSymmetryTest, AQuarterIsAQuarterOfTheWhole) {
  shapes::MeshChoice choice;
  choice.triangles = 1500;
  choice.quarter = true;
  host_kit::HostPart quarter = host_kit::fromSheet(shapes::makeShape("round_cup", choice));
  host_kit::holdSymmetryPlanes(quarter);
  TornwalzenPress press = cupPress();
  press.binder_force_n *= 0.25;
  const Handle handle = handleOf(quarter, false);
  const PressRun run = runPress(handle.get(), press);
  ASSERT_EQ(run.result.loads_held, 1);
  double largest = 0.0, smallest = 1e300;
  for (const auto& [a, b] : outerEdge(quarter))
    for (const std::size_t n : {a, b}) {
      const double radius = std::hypot(run.RX[2 * n], run.RX[2 * n + 1]);
      largest = std::max(largest, radius);
      smallest = std::min(smallest, radius);
    }
  choice.triangles = 6000;
  choice.quarter = false;
  const host_kit::HostPart whole = host_kit::fromSheet(shapes::makeShape("round_cup", choice));
  const Handle full = handleOf(whole, false);
  const PressRun all = runPress(full.get(), cupPress());
  ASSERT_EQ(all.result.loads_held, 1);
  EXPECT_LE(largest - smallest, 0.05);  // mm: a disc
  EXPECT_NEAR(all.result.thinnest_mm, run.result.thinnest_mm, 0.005);
  EXPECT_NEAR(all.result.work_nmm, 4.0 * run.result.work_nmm, 0.01 * all.result.work_nmm);
}

}  // namespace
}  // namespace verification
