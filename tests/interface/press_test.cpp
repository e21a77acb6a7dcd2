// The press model behind the handle: what it refuses, by name and value, and that nothing changes then; what it leaves alone;
// the ends of runs that cannot reach it; beads, flange marks, sides of the mesh.
#include <cmath>
#include <functional>
#include <limits>

#include "gmock/gmock.h"
#include "handle.hpp"

namespace extension {
namespace {

constexpr double steel[] = {549.03, 0.007, 0.22};  // K (MPa), prestrain, exponent of Swift's law

TornwalzenPress sheet() {
  TornwalzenPress press{};
  press.size = sizeof press;
  press.thickness_mm = 1.0;
  return press;
}

TornwalzenPress allTools() {
  TornwalzenPress press = sheet();
  press.friction_punch = press.friction_die = 0.1;
  press.binder_force_n = 10000.0;
  press.flange_of_rim = 1;
  return press;
}

TornwalzenPressResult resultOf(const Handle& handle) {
  TornwalzenPressResult result{};
  result.size = sizeof result;
  EXPECT_EQ(tornwalzen_analysis_press_result(handle.get(), &result), 0);
  return result;
}

struct PressTest : ::testing::Test {
  Handle handle = newHandle();
  HostPart part = samplePart("round_cup", 1500);
  void SetUp() override {
    ASSERT_EQ(take(handle, part), 0);
    ASSERT_EQ(tornwalzen_analysis_set_law(handle.get(), TORNWALZEN_SWIFT, steel, 1.0), 0);
  }
  void model(const TornwalzenPress& press) {
    ASSERT_EQ(tornwalzen_analysis_set_model(handle.get(), 1), 0);
    ASSERT_EQ(tornwalzen_analysis_set_press(handle.get(), &press), 0);
  }
  std::string text(int code) { return tornwalzen_analysis_error_text(handle.get(), code, 1); }
  double width() {
    const double* blank = tornwalzen_analysis_blank(handle.get());
    double low = 1e300, high = -1e300;
    for (std::int32_t n = 0; n < part.nodes(); ++n)
      low = std::min(low, blank[2 * n]), high = std::max(high, blank[2 * n]);
    return high - low;
  }
};

struct Bad {
  const char* words;
  int code;
  std::function<void(TornwalzenPress&)> change;
};

TEST_F(PressTest, RefusesByNameAndValueAndChangesNothing) {
  const double nan = std::numeric_limits<double>::quiet_NaN(), infinite = HUGE_VAL;
  const Bad all[] = {
      {"thickness of the sheet is missing or not positive: 0 mm", TORNWALZEN_BAD_THICKNESS,
       [](TornwalzenPress& p) { p.thickness_mm = 0.0; }},
      {"not positive: -0.8 mm", TORNWALZEN_BAD_THICKNESS, [](TornwalzenPress& p) { p.thickness_mm = -0.8; }},
      {"thickness", TORNWALZEN_BAD_THICKNESS, [=](TornwalzenPress& p) { p.thickness_mm = nan; }},
      {"Young's modulus is -1 MPa", TORNWALZEN_BAD_YOUNG, [](TornwalzenPress& p) { p.young_mpa = -1.0; }},
      {"Young's modulus is 2.06e+11 MPa", TORNWALZEN_BAD_YOUNG,
       [](TornwalzenPress& p) { p.young_mpa = 2.06e11; }},
      {"4 points through the thickness", TORNWALZEN_BAD_THICKNESS_POINTS,
       [](TornwalzenPress& p) { p.thickness_points = 4; }},
      {"r45 is 0", TORNWALZEN_BAD_PLANAR_ANISOTROPY, [](TornwalzenPress& p) { p.r0 = p.r90 = 1.5; }},
      {"r0 is 0", TORNWALZEN_BAD_PLANAR_ANISOTROPY, [](TornwalzenPress& p) { p.r45 = p.r90 = 1.5; }},
      {"r90 is -2", TORNWALZEN_BAD_PLANAR_ANISOTROPY,
       [](TornwalzenPress& p) { p.r0 = p.r45 = 1.5, p.r90 = -2; }},
      {"rolling direction", TORNWALZEN_BAD_ROLLING, [=](TornwalzenPress& p) { p.rolling_angle_deg = nan; }},
      {"friction coefficient 1 (1 punch, 2 die) is -0.1", TORNWALZEN_BAD_FRICTION,
       [](TornwalzenPress& p) { p.friction_punch = -0.1; }},
      {"friction coefficient 2 (1 punch, 2 die) is 15", TORNWALZEN_BAD_FRICTION,
       [](TornwalzenPress& p) { p.friction_die = 15.0; }},
      {"binder force is -5 N", TORNWALZEN_BAD_BINDER, [](TornwalzenPress& p) { p.binder_force_n = -5.0; }},
      {"choice 1 of the press is 4", TORNWALZEN_BAD_PRESS_CHOICE, [](TornwalzenPress& p) { p.bending = 4; }},
      {"choice 2 of the press is -1", TORNWALZEN_BAD_PRESS_CHOICE, [](TornwalzenPress& p) { p.edge = -1; }},
      {"choice 3 of the press is 3", TORNWALZEN_BAD_PRESS_CHOICE,
       [](TornwalzenPress& p) { p.mesh_side = 3; }},
      {"choice 4 of the press is 2", TORNWALZEN_BAD_PRESS_CHOICE,
       [](TornwalzenPress& p) { p.punch_above = 2; }},
      {"choice 5 of the press is 7", TORNWALZEN_BAD_PRESS_CHOICE,
       [](TornwalzenPress& p) { p.flange_of_rim = 7; }},
      {"choice 1 of the press is -1", TORNWALZEN_BAD_PRESS_CHOICE,
       [](TornwalzenPress& p) { p.bending = -1; }},
      {"choice 2 of the press is 3", TORNWALZEN_BAD_PRESS_CHOICE, [](TornwalzenPress& p) { p.edge = 3; }},
      {"choice 3 of the press is -2", TORNWALZEN_BAD_PRESS_CHOICE,
       [](TornwalzenPress& p) { p.mesh_side = -2; }},
      {"choice 4 of the press is -1", TORNWALZEN_BAD_PRESS_CHOICE,
       [](TornwalzenPress& p) { p.punch_above = -1; }},
      {"choice 5 of the press is -1", TORNWALZEN_BAD_PRESS_CHOICE,
       [](TornwalzenPress& p) { p.flange_of_rim = -1; }},
      {"not positive: inf mm", TORNWALZEN_BAD_THICKNESS,
       [=](TornwalzenPress& p) { p.thickness_mm = infinite; }},
      {"Young's modulus is nan", TORNWALZEN_BAD_YOUNG, [=](TornwalzenPress& p) { p.young_mpa = nan; }},
      {"r45 is inf", TORNWALZEN_BAD_PLANAR_ANISOTROPY,
       [=](TornwalzenPress& p) { p.r0 = p.r90 = 1.5, p.r45 = infinite; }},
      {"r45 is 0", TORNWALZEN_BAD_PLANAR_ANISOTROPY, [](TornwalzenPress& p) { p.r0 = 1.5; }},
      {"r0 is 0", TORNWALZEN_BAD_PLANAR_ANISOTROPY, [](TornwalzenPress& p) { p.r90 = 1.5; }},
      {"rolling direction", TORNWALZEN_BAD_ROLLING,
       [=](TornwalzenPress& p) { p.rolling_angle_deg = -infinite; }},
      {"friction coefficient 1 (1 punch, 2 die) is nan", TORNWALZEN_BAD_FRICTION,
       [=](TornwalzenPress& p) { p.friction_punch = nan; }},
      {"binder force is inf N", TORNWALZEN_BAD_BINDER,
       [=](TornwalzenPress& p) { p.binder_force_n = infinite; }},
      {"binder force is nan N", TORNWALZEN_BAD_BINDER, [=](TornwalzenPress& p) { p.binder_force_n = nan; }},
      {"too short with 8 bytes", TORNWALZEN_SHORT_PRESS, [](TornwalzenPress& p) { p.size = 8; }}};
  model(sheet());
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  const std::vector<double> before = resultsOf(handle);
  for (const Bad& bad : all) {
    TornwalzenPress press = allTools();
    bad.change(press);
    EXPECT_EQ(tornwalzen_analysis_set_press(handle.get(), &press), bad.code) << bad.words;
    EXPECT_THAT(text(bad.code), ::testing::HasSubstr(bad.words));
  }
  EXPECT_EQ(tornwalzen_analysis_set_press(handle.get(), nullptr), TORNWALZEN_NULL_POINTER);
  EXPECT_EQ(tornwalzen_analysis_set_model(handle.get(), -1), TORNWALZEN_BAD_MODEL);
  EXPECT_EQ(tornwalzen_analysis_set_model(handle.get(), 2), TORNWALZEN_BAD_MODEL);
  EXPECT_THAT(text(TORNWALZEN_BAD_MODEL), ::testing::HasSubstr("the model is 2"));
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_TRUE(sameBits(before, resultsOf(handle)));
}

TEST_F(PressTest, RefusesToRunWithoutWhatItNeeds) {
  ASSERT_EQ(tornwalzen_analysis_set_model(handle.get(), 1), 0);
  EXPECT_EQ(tornwalzen_analysis_run(handle.get()), TORNWALZEN_BAD_THICKNESS);
  TornwalzenPress press = allTools();
  press.flange_of_rim = 0;
  model(press);
  EXPECT_EQ(tornwalzen_analysis_run(handle.get()), TORNWALZEN_NO_FLANGE);
  EXPECT_THAT(text(TORNWALZEN_NO_FLANGE), ::testing::HasSubstr("binder of 10000 N has no flange"));
  model(sheet());
  ASSERT_EQ(tornwalzen_analysis_set_material(handle.get(), 10), 0);
  EXPECT_EQ(tornwalzen_analysis_run(handle.get()), TORNWALZEN_PRESS_WITHOUT_CURVE);
}

TEST_F(PressTest, MarksThatAreAllZeroAreNoFlange) {
  TornwalzenPress press = allTools();
  press.flange_of_rim = 0;
  model(press);
  const std::vector<std::int32_t> marks(static_cast<std::size_t>(part.elements()), 0);
  ASSERT_EQ(tornwalzen_analysis_set_flange(handle.get(), marks.data()), 0);
  EXPECT_EQ(tornwalzen_analysis_run(handle.get()), TORNWALZEN_NO_FLANGE);
}

TEST_F(PressTest, RefusesFlangeMarksAndBeadsThatAreNone) {
  std::vector<std::int32_t> marks(static_cast<std::size_t>(part.elements()), 0);
  marks[6] = 3;
  EXPECT_EQ(tornwalzen_analysis_set_flange(handle.get(), marks.data()), TORNWALZEN_BAD_FLANGE);
  EXPECT_THAT(text(TORNWALZEN_BAD_FLANGE), ::testing::HasSubstr("flange mark 7 is 3"));
  marks[6] = 1, marks[9] = -1;
  EXPECT_EQ(tornwalzen_analysis_set_flange(handle.get(), marks.data()), TORNWALZEN_BAD_FLANGE);
  EXPECT_THAT(text(TORNWALZEN_BAD_FLANGE), ::testing::HasSubstr("flange mark 10 is -1"));
  const std::int32_t two[] = {2}, one[] = {1}, a = part.inzi[0], b = part.inzi[1];
  const double force[] = {60.0}, none[] = {0.0}, endless[] = {HUGE_VAL};
  const auto beads = [&](const std::int32_t* lengths, std::vector<std::int32_t> nodes, const double* f) {
    return tornwalzen_analysis_set_beads(handle.get(), 1, lengths, nodes.data(), f);
  };
  EXPECT_EQ(beads(two, {a, part.nodes() + 1}, force), TORNWALZEN_BAD_BEAD_NODE);
  EXPECT_EQ(beads(two, {0, b}, force), TORNWALZEN_BAD_BEAD_NODE);
  EXPECT_EQ(beads(one, {a}, force), TORNWALZEN_BAD_BEAD_LENGTH);
  EXPECT_EQ(beads(two, {a, b}, none), TORNWALZEN_BAD_BEAD_FORCE);
  EXPECT_EQ(beads(two, {a, b}, endless), TORNWALZEN_BAD_BEAD_FORCE);
  EXPECT_EQ(beads(two, {1, part.nodes()}, force), TORNWALZEN_BEAD_OFF_MESH);
  EXPECT_THAT(text(TORNWALZEN_BEAD_OFF_MESH), ::testing::HasSubstr("off the mesh"));
  EXPECT_EQ(tornwalzen_analysis_set_beads(handle.get(), -1, two, two, force), TORNWALZEN_BAD_COUNT);
  EXPECT_EQ(tornwalzen_analysis_set_beads(handle.get(), 1, nullptr, two, force), TORNWALZEN_NULL_POINTER);
  EXPECT_EQ(tornwalzen_analysis_set_beads(handle.get(), 1, two, nullptr, force), TORNWALZEN_NULL_POINTER);
  EXPECT_EQ(tornwalzen_analysis_set_beads(handle.get(), 1, two, two, nullptr), TORNWALZEN_NULL_POINTER);
  EXPECT_THAT(text(TORNWALZEN_NULL_POINTER), ::testing::HasSubstr("argument 5"));
  EXPECT_EQ(beads(two, {a, b}, force), 0);
  EXPECT_EQ(beads(two, {b, a}, force), 0) << "an edge has no sense";
  EXPECT_EQ(tornwalzen_analysis_set_beads(handle.get(), 0, nullptr, nullptr, nullptr), 0);
}

TEST(PressResults, AreNoneBeforeARunAndWithoutTheModel) {
  const Handle handle = newHandle();
  TornwalzenPressResult result{};
  result.size = sizeof result;
  const std::int32_t none = 0;
  EXPECT_EQ(tornwalzen_analysis_set_flange(handle.get(), &none), TORNWALZEN_NO_MESH);
  EXPECT_EQ(tornwalzen_analysis_set_beads(handle.get(), 0, nullptr, nullptr, nullptr), TORNWALZEN_NO_MESH);
  EXPECT_EQ(tornwalzen_analysis_press_result(handle.get(), nullptr), TORNWALZEN_NULL_POINTER);
  EXPECT_EQ(tornwalzen_analysis_press_result(handle.get(), &result), TORNWALZEN_NO_RESULTS);
  EXPECT_EQ(tornwalzen_analysis_contact_pressure(handle.get()), nullptr);
  EXPECT_EQ(tornwalzen_analysis_binder_pressure(handle.get()), nullptr);
  EXPECT_EQ(tornwalzen_analysis_contact_pressure(nullptr), nullptr);
  EXPECT_EQ(tornwalzen_analysis_binder_pressure(nullptr), nullptr);
  ASSERT_EQ(take(handle, samplePart("plate", 20)), 0);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_EQ(tornwalzen_analysis_press_result(handle.get(), &result), 0);
  EXPECT_EQ(result.exponent, 0.0);
  EXPECT_EQ(tornwalzen_analysis_contact_pressure(handle.get()), nullptr);
  EXPECT_EQ(tornwalzen_analysis_binder_pressure(handle.get()), nullptr);
}

// What carries no load moves by none: the part is its own blank, to rounding, with nothing to press.
TEST_F(PressTest, AFlatSheetStaysAsItIs) {
  part = samplePart("plate", 60);
  ASSERT_EQ(take(handle, part), 0);
  TornwalzenPress press = sheet();
  press.friction_punch = press.friction_die = 0.2;
  model(press);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_EQ(reportOf(handle).converged, 1) << reportOf(handle).fatal_text;
  const double* const blank = tornwalzen_analysis_blank(handle.get());
  for (std::size_t i = 0; i < part.arfa.size(); ++i)
    EXPECT_NEAR(blank[i], part.knots[i / 2 * 3 + i % 2], 1e-9);
  const TornwalzenPressResult result = resultOf(handle);
  EXPECT_EQ(result.depth_mm, 0.0);
  EXPECT_EQ(result.punch_force_n, 0.0);
  EXPECT_NEAR(result.thinnest_mm, 1.0, 1e-9);
  EXPECT_NEAR(result.thickest_mm, 1.0, 1e-9);
}

TEST_F(PressTest, TheFixedModelKeepsItsBitsWhateverThePressKnows) {
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  const std::vector<double> before = resultsOf(handle);
  model(allTools());
  ASSERT_EQ(tornwalzen_analysis_set_model(handle.get(), 0), 0);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_TRUE(sameBits(before, resultsOf(handle)));
  EXPECT_EQ(resultOf(handle).exponent, 0.0);
  EXPECT_EQ(tornwalzen_analysis_contact_pressure(handle.get()), nullptr);
}

TEST_F(PressTest, GivesTheSameBitsRunAfterRun) {
  model(allTools());
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  const std::vector<double> before = resultsOf(handle);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_TRUE(sameBits(before, resultsOf(handle)));
}

TEST_F(PressTest, TellsWhatActed) {
  model(sheet());
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  TornwalzenPressResult result = resultOf(handle);
  EXPECT_EQ(result.exponent, 1.0);
  EXPECT_EQ(result.bending + result.edge + result.contact + result.binder + result.beads + result.loads_held,
            0);
  EXPECT_EQ(reportOf(handle).converged, 1);
  EXPECT_EQ(reportOf(handle).minimum_certified, 1);
  model(allTools());
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  result = resultOf(handle);
  EXPECT_EQ(result.bending, 2);
  EXPECT_EQ(result.edge, 1);
  EXPECT_EQ(result.contact, 1);
  EXPECT_EQ(result.binder, 1);
  EXPECT_EQ(result.loads_held, 1);
  EXPECT_GT(result.flange_elements, 100);
  EXPECT_LT(result.thinnest_mm, 1.0);
  EXPECT_GT(result.thickest_mm, 1.0);
  EXPECT_GT(result.punch_pressure_mpa, 1.0);
  EXPECT_NEAR(result.punch_force_n * result.depth_mm, result.work_nmm + result.friction_work_nmm,
              1e-9 * result.work_nmm);
  double largest = 0.0;
  const double* pressure = tornwalzen_analysis_contact_pressure(handle.get());
  for (std::int32_t e = 0; e < part.elements(); ++e) largest = std::max(largest, pressure[e]);
  EXPECT_EQ(largest, result.punch_pressure_mpa);
  double grip = 0.0;
  const double* pressed = tornwalzen_analysis_binder_pressure(handle.get());
  for (std::int32_t e = 0; e < part.elements(); ++e) grip = std::max(grip, pressed[e]);
  EXPECT_EQ(grip, result.binder_pressure_mpa);
  TornwalzenPressResult small{};
  EXPECT_EQ(tornwalzen_analysis_press_result(handle.get(), &small), TORNWALZEN_SHORT_PRESS);
}

// What holds the sheet back leaves a smaller blank: more of the part comes from stretching.
TEST_F(PressTest, BeadsAndBinderHoldTheSheetBack) {
  TornwalzenPress press = allTools();
  model(press);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  const double held = width();
  press.binder_force_n = 40000.0;
  model(press);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_LT(width(), held - 0.1);
}

TEST_F(PressTest, MarksOfTheWholeFlatRimAreThoseThatItFindsItself) {
  model(allTools());
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  const double found = width();
  const TornwalzenPressResult automatic = resultOf(handle);
  double flat = 0.0;  // height of the flange
  for (std::size_t n = 2; n < part.knots.size(); n += 3) flat = std::min(flat, part.knots[n]);
  std::vector<std::int32_t> marks;
  for (std::int32_t e = 0; e < part.elements(); ++e) {
    int level = 1;
    for (std::size_t c = 0; c < 3; ++c)
      if (part.knots[3 * (static_cast<std::size_t>(part.inzi[3 * static_cast<std::size_t>(e) + c]) - 1) + 2] >
          flat + 1e-9)
        level = 0;
    marks.push_back(level);
  }
  TornwalzenPress press = allTools();
  press.flange_of_rim = 0;
  model(press);
  ASSERT_EQ(tornwalzen_analysis_set_flange(handle.get(), marks.data()), 0);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_EQ(resultOf(handle).flange_elements, automatic.flange_elements);
  EXPECT_EQ(width(), found);
}

// A mesh of the outer skin, moved inside, is the mesh of the middle.
TEST_F(PressTest, AMeshOfASkinIsMovedToTheMiddle) {
  part = samplePart("half_pipe", 1200);
  ASSERT_EQ(take(handle, part), 0);
  model(sheet());
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  const double middle = width();
  TornwalzenPress press = sheet();
  press.mesh_side = 1;
  model(press);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  const double punch = width();
  const double* blank = tornwalzen_analysis_blank(handle.get());
  for (std::size_t i = 0; i < part.arfa.size(); ++i) {  // held where the mesh is that was given
    if (part.arfa[i] == 0) {
      EXPECT_EQ(blank[i], part.knots[i / 2 * 3 + i % 2]);
    }
  }
  press.mesh_side = 2;
  model(press);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  const double die = width();
  EXPECT_NEAR(punch - middle, middle - die, 0.01 * std::fabs(punch - die));
  EXPECT_GT(std::fabs(punch - die), 0.5);
}

TEST_F(PressTest, ABinderThatFindsNoFlangeGivesUpWithASentence) {
  part = samplePart("l_bend", 800);
  ASSERT_EQ(take(handle, part), 0);
  model(allTools());
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  const TornwalzenReport report = reportOf(handle);
  EXPECT_EQ(report.reason, TORNWALZEN_GAVE_UP);
  EXPECT_STREQ(report.fatal_text, "PRESSE: NIEDERHALTER OHNE FLANSCH");
}

TEST_F(PressTest, StopsAtTheHostsWord) {
  model(allTools());
  ASSERT_EQ(
      tornwalzen_analysis_on_step(
          handle.get(),
          [](void*, const TornwalzenStep* step) { return step->phase == TORNWALZEN_PHASE_PRESS ? 1 : 0; },
          nullptr),
      0);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_EQ(reportOf(handle).reason, TORNWALZEN_STOPPED_BY_HOST);
}

struct StopAt {
  int limit, steps;
};

/// Ends the run at the limit-th step of the press path.
int stopAt(void* data, const TornwalzenStep* step) {
  StopAt& stop = *static_cast<StopAt*>(data);
  return step->phase == TORNWALZEN_PHASE_PRESS && ++stop.steps == stop.limit ? 1 : 0;
}

// A collar that is too much for its sheet goes all the way through the family.
struct StrainedTest : PressTest {
  void SetUp() override {
    PressTest::SetUp();
    part = samplePart("flanged_hole", 800);
    ASSERT_EQ(take(handle, part), 0);
  }
};

TEST_F(StrainedTest, StopsAtEveryStepOnTheWay) {
  for (const TornwalzenPress& press : {sheet(), allTools()}) {
    model(press);
    StopAt stop{0, 0};
    ASSERT_EQ(tornwalzen_analysis_on_step(handle.get(), stopAt, &stop), 0);
    ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
    ASSERT_EQ(reportOf(handle).converged, 1);
    const int all = stop.steps;
    ASSERT_GT(all, 8);
    for (int limit = 1; limit <= all; limit += 9) {
      stop = {limit, 0};
      ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
      EXPECT_EQ(reportOf(handle).reason, TORNWALZEN_STOPPED_BY_HOST) << limit;
      EXPECT_EQ(stop.steps, limit);
    }
  }
}

TEST_F(StrainedTest, WithoutToolsItEndsInAMinimumOfALaterMember) {
  model(sheet());
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_EQ(reportOf(handle).converged, 1);
  EXPECT_EQ(reportOf(handle).minimum_certified, 1);
  EXPECT_GT(resultOf(handle).exponent, 1.0);
  EXPECT_LT(resultOf(handle).exponent, 1.3);
  TornwalzenPress planar = sheet();
  planar.r0 = 1.8, planar.r45 = 1.5, planar.r90 = 2.2;
  model(planar);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_EQ(reportOf(handle).minimum_certified, 1);
}

TEST_F(PressTest, ForcesBeyondTheSheetAreLeftAndTold) {
  TornwalzenPress press = allTools();
  press.friction_punch = press.friction_die = 1.0;
  press.binder_force_n = 1e8;
  model(press);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_EQ(reportOf(handle).converged, 1);
  EXPECT_EQ(reportOf(handle).minimum_certified, 1);
  const TornwalzenPressResult result = resultOf(handle);
  EXPECT_EQ(result.loads_held + result.edge + result.contact + result.binder, 0);
  EXPECT_EQ(result.exponent, 1.0);
}

}  // namespace
}  // namespace extension
