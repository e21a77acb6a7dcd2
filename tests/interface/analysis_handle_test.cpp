// An analysis with a handle: the same bits as through the fixed interface, what it refuses, and how a host ends it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "handle.hpp"
#include "refusals.hpp"
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace extension {
namespace {

/// What the fixed interface leaves for the same input, in the order of resultsOf.
std::vector<double> throughTheFixedInterface(const HostPart& part, std::int32_t material) {
  testing::internal::CaptureStdout();
  const WholeRun run(part, material);
  testing::internal::GetCapturedStdout();
  std::vector<double> all = run.RX;
  const std::size_t nn = static_cast<std::size_t>(run.nodes());
  for (std::size_t n = 0; n < nn; ++n) all.insert(all.end(), {run.KNA[n], run.KNA[nn + n]});
  all.insert(all.end(), run.EVAL.begin(), run.EVAL.end());
  return all;
}

class AnalysisHandle : public ExtensionTest {};

TEST_F(AnalysisHandle, GivesTheBitsOfTheFixedInterface) {
  for (const char* sample : {"square_cup", "hat", "s_rail"})
    for (const std::int32_t material : {0, 1, 2, 10}) {
      const HostPart part = samplePart(sample, 300);
      const std::vector<double> wanted = throughTheFixedInterface(part, material);
      for (const std::int32_t first : {0, 1}) {
        const Handle handle = newHandle();
        ASSERT_EQ(take(handle, part, first), 0);
        ASSERT_EQ(tornwalzen_analysis_set_material(handle.get(), material), 0);
        ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
        EXPECT_EQ(reportOf(handle).converged, 1) << sample << material;
        EXPECT_TRUE(sameBits(resultsOf(handle), wanted)) << sample << material;
      }
    }
}

TEST_F(AnalysisHandle, WithCurveAnisotropyReferenceAndTolerancesGivesTheBitsOfTheFixedInterface) {
  const HostPart part = samplePart("round_cup", 300);
  double strain[25], stress[25];
  ASSERT_EQ(tornwalzen_points_swift(549.03, 0.007, 0.22, 1.0, 25, strain, stress), 0);
  ASSERT_EQ(tornwalzen_set_flow_curve(1, 25, strain, stress), 0);
  ASSERT_EQ(tornwalzen_set_normal_anisotropy(1.6), 0);
  ASSERT_EQ(tornwalzen_set_energy_reference(1), 0);
  ASSERT_EQ(tornwalzen_set_tolerance_factors(0.001, 0.5), 0);
  const std::vector<double> wanted = throughTheFixedInterface(part, 1);
  ASSERT_EQ(tornwalzen_reset(), 0);

  const Handle handle = newHandle();
  ASSERT_EQ(take(handle, part), 0);
  ASSERT_EQ(tornwalzen_analysis_set_flow_curve(handle.get(), 25, strain, stress), 0);
  ASSERT_EQ(tornwalzen_analysis_set_normal_anisotropy(handle.get(), 1.6), 0);
  ASSERT_EQ(tornwalzen_analysis_set_energy_reference(handle.get(), 1), 0);
  ASSERT_EQ(tornwalzen_analysis_set_tolerance_factors(handle.get(), 0.001, 0.5), 0);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_TRUE(sameBits(resultsOf(handle), wanted));
}

TEST_F(AnalysisHandle, ALawIsItsFortyNinePoints) {
  const HostPart part = samplePart("square_cup", 200);
  double strain[49], stress[49];
  ASSERT_EQ(tornwalzen_points_voce(200.0, 400.0, 8.0, 0.8, 49, strain, stress), 0);
  const Handle byPoints = newHandle(), byLaw = newHandle();
  for (const Handle* handle : {&byPoints, &byLaw}) ASSERT_EQ(take(*handle, part), 0);
  ASSERT_EQ(tornwalzen_analysis_set_flow_curve(byPoints.get(), 49, strain, stress), 0);
  const double parameters[] = {200.0, 400.0, 8.0};
  ASSERT_EQ(tornwalzen_analysis_set_law(byLaw.get(), TORNWALZEN_VOCE, parameters, 0.8), 0);
  for (const Handle* handle : {&byPoints, &byLaw}) ASSERT_EQ(tornwalzen_analysis_run(handle->get()), 0);
  EXPECT_TRUE(sameBits(resultsOf(byLaw), resultsOf(byPoints)));
}

TEST_F(AnalysisHandle, LeavesTheDefaultAnalysisAlone) {
  const HostPart part = samplePart("square_cup", 200);
  testing::internal::CaptureStdout();
  const std::uint64_t alone = WholeRun(part, 1).hash();
  ASSERT_EQ(tornwalzen_reset(), 0);
  const Handle other = newHandle();
  ASSERT_EQ(take(other, samplePart("hat", 300)), 0);
  ASSERT_EQ(tornwalzen_analysis_set_normal_anisotropy(other.get(), 3.0), 0);
  ASSERT_EQ(tornwalzen_analysis_run(other.get()), 0);
  EXPECT_EQ(WholeRun(part, 1).hash(), alone);
  testing::internal::GetCapturedStdout();
}

TEST_F(AnalysisHandle, RunsAgainWithOtherSettingsOnTheStructureThatStands) {
  const HostPart part = samplePart("hat", 300);
  const Handle handle = newHandle();
  ASSERT_EQ(take(handle, part), 0);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  const std::vector<double> first = resultsOf(handle);
  ASSERT_EQ(tornwalzen_analysis_set_material(handle.get(), 2), 0);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_FALSE(sameBits(resultsOf(handle), first));
  ASSERT_EQ(tornwalzen_analysis_set_material(handle.get(), 1), 0);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_TRUE(sameBits(resultsOf(handle), first));
}

/// A slightly wavy strip of 5 x 3 nodes, 10 mm apart, turned past the upright about y by `tilt` and then about z (rad):
/// the sure path sees it from its other side and turns its triangles.
HostPart steepStrip(double tilt) {
  HostPart part;
  for (int j = 0; j < 5; ++j)
    for (int i = 0; i < 3; ++i) {
      const double z = 0.6 * std::sin(1.0 + 3.0 * i + 5.0 * j), x = 10.0 * i, y = 10.0 * j;
      const double u = std::cos(tilt) * x + std::sin(tilt) * z;
      part.knots.insert(part.knots.end(),
                        {0.8 * u - 0.6 * y, 0.6 * u + 0.8 * y, std::cos(tilt) * z - std::sin(tilt) * x});
    }
  for (int j = 0; j < 4; ++j)
    for (int i = 0; i < 2; ++i) {
      const std::int32_t n = 3 * j + i + 1;
      part.inzi.insert(part.inzi.end(), {n, n + 1, n + 4, n, n + 4, n + 3});
    }
  holdRigidMotion(part);
  return part;
}

TEST_F(AnalysisHandle, RunsAgainToTheBitWhereTheFirstRunTurnedTheTriangles) {
  for (const double tilt : {1.6, 1.8, 2.2, 2.9})
    for (const std::int32_t start : {0, 1}) {
      const HostPart part = steepStrip(tilt);
      const Handle handle = newHandle();
      ASSERT_EQ(take(handle, part), 0);
      ASSERT_EQ(tornwalzen_analysis_set_path(handle.get(), 1), 0);
      ASSERT_EQ(tornwalzen_analysis_set_start(handle.get(), start), 0);
      ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
      const std::vector<double> first = resultsOf(handle);
      ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
      EXPECT_TRUE(sameBits(resultsOf(handle), first)) << "tilt " << tilt << ", start " << start;
    }
}

TEST_F(AnalysisHandle, OrientsTrianglesInTheHostsCounting) {
  HostPart part = samplePart("square_cup", 200);
  for (std::size_t e = 0; e < part.inzi.size(); e += 3)
    std::swap(part.inzi[e + 1], part.inzi[e + 2]);  // clockwise
  const Handle handle = newHandle();
  ASSERT_EQ(take(handle, part, 0), 0);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  const std::int32_t* triangles = tornwalzen_analysis_oriented_triangles(handle.get());
  const double* blank = tornwalzen_analysis_blank(handle.get());
  for (std::size_t e = 0; e < part.inzi.size(); e += 3) {
    const double* p[3] = {blank + 2 * triangles[e], blank + 2 * triangles[e + 1],
                          blank + 2 * triangles[e + 2]};
    EXPECT_GT((p[1][0] - p[0][0]) * (p[2][1] - p[0][1]) - (p[1][1] - p[0][1]) * (p[2][0] - p[0][0]), 0.0);
    EXPECT_EQ(triangles[e], part.inzi[e] - 1);
  }
}

TEST_F(AnalysisHandle, StrainsAreThoseOfTheExtension) {
  const HostPart part = samplePart("round_cup", 300);
  const Handle handle = newHandle();
  ASSERT_EQ(take(handle, part), 0);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  std::vector<TornwalzenElementStrain> own(static_cast<std::size_t>(part.elements())), other = own;
  ASSERT_EQ(tornwalzen_analysis_strains(handle.get(), own.data()), 0);
  ASSERT_EQ(tornwalzen_element_strains(1, part.nodes(), part.elements(), part.knots.data(), part.inzi.data(),
                                       tornwalzen_analysis_blank(handle.get()), other.data()),
            0);
  for (std::size_t e = 0; e < own.size(); ++e) {
    EXPECT_NEAR(own[e].major, other[e].major, 1e-12);
    EXPECT_NEAR(own[e].flow_stress, other[e].flow_stress, 1e-9);
  }
}

/// Keeps the steps, and asks for the end at the first one that `ends` accepts.
struct Steps {
  std::vector<TornwalzenStep> seen;
  std::int32_t endPhase = 0, endIncrement = 0, endIteration = 0;
  static std::int32_t take(void* self, const TornwalzenStep* step) {
    auto& steps = *static_cast<Steps*>(self);
    steps.seen.push_back(*step);
    return step->phase == steps.endPhase && step->increment >= steps.endIncrement &&
           step->iteration >= steps.endIteration;
  }
};

TEST_F(AnalysisHandle, TellsItsPhasesInOrderWithFractionsThatRise) {
  const Handle handle = newHandle();
  ASSERT_EQ(take(handle, samplePart("square_cup", 300)), 0);
  Steps steps;
  ASSERT_EQ(tornwalzen_analysis_on_step(handle.get(), Steps::take, &steps), 0);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  ASSERT_FALSE(steps.seen.empty());
  std::int32_t phase = 0;
  for (const TornwalzenStep& step : steps.seen) {
    EXPECT_EQ(step.size, static_cast<std::int32_t>(sizeof step));
    EXPECT_GE(step.phase, phase);
    phase = step.phase;
    EXPECT_GE(step.fraction, 0.0);
    EXPECT_LE(step.fraction, 1.0);
    if (step.phase == TORNWALZEN_PHASE_INCREMENTS) {
      EXPECT_EQ(step.residual >= 0.0, step.iteration > 0);
    }
  }
  EXPECT_EQ(phase, TORNWALZEN_PHASE_INCREMENTS);
  EXPECT_EQ(steps.seen.front().phase, TORNWALZEN_PHASE_STRUCTURE);
}

TEST_F(AnalysisHandle, EndsWhereTheHostAsksInEveryPhase) {
  const HostPart part = samplePart("square_cup", 300);
  const std::vector<double> whole = [&] {
    const Handle handle = newHandle();
    take(handle, part);
    tornwalzen_analysis_run(handle.get());
    return resultsOf(handle);
  }();
  const Steps ends[] = {{{}, TORNWALZEN_PHASE_STRUCTURE, 0, 0},  {{}, TORNWALZEN_PHASE_ORDERING, 0, 0},
                        {{}, TORNWALZEN_PHASE_SYMBOLIC, 0, 0},   {{}, TORNWALZEN_PHASE_DEVELOPMENT, 0, 3},
                        {{}, TORNWALZEN_PHASE_INCREMENTS, 2, 0}, {{}, TORNWALZEN_PHASE_INCREMENTS, 3, 1}};
  for (Steps end : ends) {
    const Handle handle = newHandle();
    ASSERT_EQ(take(handle, part), 0);
    ASSERT_EQ(tornwalzen_analysis_on_step(handle.get(), Steps::take, &end), 0);
    EXPECT_EQ(tornwalzen_analysis_run(handle.get()), 0);
    EXPECT_EQ(reportOf(handle).reason, TORNWALZEN_STOPPED_BY_HOST) << end.endPhase;
    EXPECT_EQ(reportOf(handle).converged, 0);
    EXPECT_EQ(end.seen.back().phase, end.endPhase) << "asked no more";
    EXPECT_EQ(end.seen.back().increment, end.endIncrement);
    ASSERT_EQ(tornwalzen_analysis_on_step(handle.get(), nullptr, nullptr), 0);
    EXPECT_EQ(tornwalzen_analysis_run(handle.get()), 0) << "and runs whole afterwards";
    EXPECT_TRUE(sameBits(resultsOf(handle), whole)) << end.endPhase;
  }
}

TEST_F(AnalysisHandle, GoesTheSurePathAsTheFixedInterfaceDoes) {
  const HostPart part = samplePart("square_cup", 300);
  ASSERT_EQ(tornwalzen_set_path(1), 0);
  ASSERT_EQ(tornwalzen_set_start(1), 0);
  const std::vector<double> wanted = throughTheFixedInterface(part, 2);
  ASSERT_EQ(tornwalzen_reset(), 0);
  const Handle handle = newHandle();
  ASSERT_EQ(take(handle, part), 0);
  ASSERT_EQ(tornwalzen_analysis_set_material(handle.get(), 2), 0);
  ASSERT_EQ(tornwalzen_analysis_set_path(handle.get(), 1), 0);
  ASSERT_EQ(tornwalzen_analysis_set_start(handle.get(), 1), 0);
  Steps steps;
  ASSERT_EQ(tornwalzen_analysis_on_step(handle.get(), Steps::take, &steps), 0);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_EQ(reportOf(handle).converged, 1);
  EXPECT_EQ(reportOf(handle).path, 1);
  EXPECT_TRUE(sameBits(resultsOf(handle), wanted));
  std::int32_t phase = 0;
  for (const TornwalzenStep& step : steps.seen) {
    EXPECT_GE(step.phase, phase);
    phase = step.phase;
    EXPECT_EQ(step.residual >= 0.0, step.iteration > 0);
  }
  EXPECT_EQ(phase, TORNWALZEN_PHASE_NEWTON);

  for (Steps end : {Steps{{}, TORNWALZEN_PHASE_START, 0, 0}, Steps{{}, TORNWALZEN_PHASE_NEWTON, 0, 2}}) {
    ASSERT_EQ(tornwalzen_analysis_on_step(handle.get(), Steps::take, &end), 0);
    ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
    EXPECT_EQ(reportOf(handle).reason, TORNWALZEN_STOPPED_BY_HOST) << end.endPhase;
    EXPECT_EQ(end.seen.back().phase, end.endPhase) << "asked no more";
  }
  ASSERT_EQ(tornwalzen_analysis_on_step(handle.get(), nullptr, nullptr), 0);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_TRUE(sameBits(resultsOf(handle), wanted));
}

TEST_F(AnalysisHandle, HandsItsMessagesToTheHostAndPrintsNothing) {
  const HostPart part = samplePart("square_cup", 200);
  testing::internal::CaptureStdout();
  const WholeRun fixed(part, 1);
  const std::string printed = testing::internal::GetCapturedStdout();
  const Handle handle = newHandle(), silent = newHandle();
  std::string told;
  testing::internal::CaptureStdout();
  ASSERT_EQ(
      tornwalzen_analysis_on_message(
          handle.get(),
          [](void* text, const char* line) { *static_cast<std::string*>(text) += std::string(line) + '\n'; },
          &told),
      0);
  for (const Handle* h : {&handle, &silent}) {
    ASSERT_EQ(take(*h, part), 0);
    ASSERT_EQ(tornwalzen_analysis_run(h->get()), 0);
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(told, printed);
}

/// From within a step everything but the report and the texts is refused.
struct Meddler {
  TornwalzenAnalysis* analysis;
  std::vector<int> codes;
  int report = -99;
};

TEST_F(AnalysisHandle, RefusesChangesWhileItRuns) {
  const HostPart part = samplePart("plate", 50);
  const Handle handle = newHandle();
  ASSERT_EQ(take(handle, part), 0);
  Meddler meddler{handle.get(), {}};
  const auto meddle = [](void* self, const TornwalzenStep*) -> std::int32_t {
    auto& m = *static_cast<Meddler*>(self);
    if (!m.codes.empty()) return 0;
    const double p[9] = {};
    const std::int32_t t[3] = {1, 2, 3};
    TornwalzenElementStrain strain;
    TornwalzenPress press{};
    TornwalzenPressResult result{};
    m.codes = {tornwalzen_analysis_set_mesh(m.analysis, 3, 1, p, t, 1),
               tornwalzen_analysis_set_holds(m.analysis, t),
               tornwalzen_analysis_set_material(m.analysis, 1),
               tornwalzen_analysis_set_flow_curve(m.analysis, 3, p, p),
               tornwalzen_analysis_set_law(m.analysis, 1, p, 1.0),
               tornwalzen_analysis_set_normal_anisotropy(m.analysis, 2.0),
               tornwalzen_analysis_set_energy_reference(m.analysis, 1),
               tornwalzen_analysis_set_path(m.analysis, 1),
               tornwalzen_analysis_set_start(m.analysis, 1),
               tornwalzen_analysis_set_tolerance_factors(m.analysis, 1.0, 1.0),
               tornwalzen_analysis_set_threads(m.analysis, 2),
               tornwalzen_analysis_set_model(m.analysis, 1),
               tornwalzen_analysis_set_press(m.analysis, &press),
               tornwalzen_analysis_set_flange(m.analysis, nullptr),
               tornwalzen_analysis_set_beads(m.analysis, 0, nullptr, nullptr, nullptr),
               tornwalzen_analysis_press_result(m.analysis, &result),
               tornwalzen_analysis_on_step(m.analysis, nullptr, nullptr),
               tornwalzen_analysis_on_message(m.analysis, nullptr, nullptr),
               tornwalzen_analysis_run(m.analysis),
               tornwalzen_analysis_strains(m.analysis, &strain),
               tornwalzen_analysis_destroy(m.analysis)};
    TornwalzenReport report{};
    report.size = sizeof report;
    m.report = tornwalzen_analysis_report(m.analysis, &report);
    return 0;
  };
  ASSERT_EQ(tornwalzen_analysis_on_step(handle.get(), meddle, &meddler), 0);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_THAT(meddler.codes, testing::AllOf(testing::SizeIs(21), testing::Each(TORNWALZEN_BUSY)));
  EXPECT_EQ(meddler.report, 0);
}

TEST_F(AnalysisHandle, NamesWhatItRefuses) {
  const Handle handle = newHandle();
  TornwalzenAnalysis* const a = handle.get();
  const double points[9] = {0, 0, 0, 1, 0, 0, 0, 1, 0};
  double broken[9] = {0, 0, 0, 1, 0, 0, 0, std::numeric_limits<double>::quiet_NaN(), 0};
  const std::int32_t one[3] = {1, 2, 3}, zero[3] = {0, 1, 2}, flags[6] = {1, 1, 0, 1, 0, 7};
  const auto expect = [&](int got, int code, const char* english) {
    EXPECT_EQ(got, code);
    EXPECT_STREQ(tornwalzen_analysis_error_text(a, code, 1), english);
  };
  expect(tornwalzen_analysis_run(a), TORNWALZEN_NO_MESH, "no mesh is set");
  expect(tornwalzen_analysis_set_holds(a, flags), TORNWALZEN_NO_MESH, "no mesh is set");
  expect(tornwalzen_analysis_set_mesh(a, 0, 1, points, one, 1), TORNWALZEN_BAD_COUNT,
         "argument 2, a count, is 0");
  expect(tornwalzen_analysis_set_mesh(a, 800000000, 1, points, one, 1), TORNWALZEN_BAD_COUNT,
         "argument 2, a count, is 800000000");
  expect(tornwalzen_analysis_set_mesh(a, 3, 0, points, one, 1), TORNWALZEN_BAD_COUNT,
         "argument 3, a count, is 0");
  expect(tornwalzen_analysis_set_mesh(a, 3, 800000000, points, one, 1), TORNWALZEN_BAD_COUNT,
         "argument 3, a count, is 800000000");
  expect(tornwalzen_analysis_set_mesh(a, 3, 1, nullptr, one, 1), TORNWALZEN_NULL_POINTER,
         "argument 4 is a null pointer");
  expect(tornwalzen_analysis_set_mesh(a, 3, 1, points, nullptr, 1), TORNWALZEN_NULL_POINTER,
         "argument 5 is a null pointer");
  expect(tornwalzen_analysis_set_mesh(a, 3, 1, points, one, 2), TORNWALZEN_BAD_FIRST_INDEX,
         "the first index is 2, allowed are 0 and 1");
  expect(tornwalzen_analysis_set_mesh(a, 3, 1, broken, one, 1), TORNWALZEN_COORDINATE_NOT_FINITE,
         "coordinate 8 of the points is not a finite number: nan");
  expect(tornwalzen_analysis_set_mesh(a, 3, 1, points, one, 0), TORNWALZEN_BAD_NODE,
         "entry 3 of the incidences is 3, which is no node number");
  expect(tornwalzen_analysis_set_mesh(a, 3, 1, points, zero, 1), TORNWALZEN_BAD_NODE,
         "entry 1 of the incidences is 0, which is no node number");
  ASSERT_EQ(tornwalzen_analysis_set_mesh(a, 3, 1, points, one, 1), 0);
  expect(tornwalzen_analysis_set_holds(a, nullptr), TORNWALZEN_NULL_POINTER, "argument 2 is a null pointer");
  expect(tornwalzen_analysis_set_holds(a, flags), TORNWALZEN_BAD_HOLD,
         "flag 6 of the held unknowns is 7, allowed are 0 (free) and 1 (held)");
  expect(tornwalzen_analysis_set_material(a, 3), TORNWALZEN_BAD_SELECTOR,
         "there is no flow curve 3, or it cannot be replaced");
  expect(tornwalzen_analysis_set_flow_curve(a, 0, points, points), TORNWALZEN_BAD_POINT_COUNT,
         "a flow curve takes 3 to 49 points, not 0");
  expect(tornwalzen_analysis_set_law(a, 6, points, 1.0), TORNWALZEN_BAD_SELECTOR_OF_LAW,
         "there is no hardening law 6");
  expect(tornwalzen_analysis_set_law(a, TORNWALZEN_SWIFT, nullptr, 1.0), TORNWALZEN_NULL_POINTER,
         "argument 3 is a null pointer");
  expect(tornwalzen_analysis_set_law(a, TORNWALZEN_SWIFT, points, 1.0), TORNWALZEN_BAD_LAW,
         "parameter 1 of the hardening law is 0, outside its range");
  TornwalzenElementStrain strain;
  expect(tornwalzen_analysis_strains(a, &strain), TORNWALZEN_NO_RESULTS,
         "there are no results, nothing has run yet");
  EXPECT_EQ(tornwalzen_analysis_blank(a), nullptr);
  EXPECT_EQ(tornwalzen_analysis_element_table(a), nullptr);
  EXPECT_EQ(tornwalzen_analysis_starting_blank(a), nullptr);
  EXPECT_EQ(tornwalzen_analysis_oriented_triangles(a), nullptr);
  EXPECT_EQ(tornwalzen_analysis_run(a), 0) << "the mesh that was taken still stands";
}

// On the sure path a part that is no sheet is refused by its code; nothing has run then.
TEST_F(AnalysisHandle, NamesThePartThatIsNoSheet) {
  const Handle handle = newHandle();
  const double points[15] = {0, 0, 0, 10, 0, 0, 0, 10, 0, 0, 0, 10, 7, 7, 7};
  const std::int32_t disagreeing[6] = {1, 2, 3, 1, 2, 4}, sheet[6] = {1, 2, 3, 3, 2, 5};
  ASSERT_EQ(tornwalzen_analysis_set_path(handle.get(), 1), 0);
  ASSERT_EQ(tornwalzen_analysis_set_mesh(handle.get(), 5, 2, points, disagreeing, 1), 0);
  EXPECT_EQ(tornwalzen_analysis_run(handle.get()), TORNWALZEN_MIXED_ORIENTATION);
  EXPECT_EQ(reportOf(handle).converged, 0);
  EXPECT_EQ(tornwalzen_analysis_blank(handle.get()), nullptr);
  ASSERT_EQ(tornwalzen_analysis_set_mesh(handle.get(), 5, 2, points, sheet, 1), 0);
  EXPECT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  EXPECT_EQ(reportOf(handle).converged, 1);
}

TEST_F(AnalysisHandle, ARefusedMeshLeavesTheOneBefore) {
  const HostPart part = samplePart("plate", 50);
  const Handle handle = newHandle();
  ASSERT_EQ(take(handle, part), 0);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0);
  const std::vector<double> before = resultsOf(handle);
  const std::int32_t bad[3] = {1, 2, 99};
  EXPECT_EQ(tornwalzen_analysis_set_mesh(handle.get(), 3, 1, part.knots.data(), bad, 1), TORNWALZEN_BAD_NODE);
  EXPECT_TRUE(sameBits(resultsOf(handle), before));
  EXPECT_EQ(tornwalzen_analysis_nodes(handle.get()), part.nodes());
}

TEST_F(AnalysisHandle, ANullHandleIsRefusedByEveryFunction) {
  const double p[9] = {};
  const std::int32_t t[3] = {1, 2, 3};
  TornwalzenReport report{};
  TornwalzenElementStrain strain;
  TornwalzenPress press{};
  TornwalzenPressResult result{};
  EXPECT_EQ(tornwalzen_analysis_destroy(nullptr), 0);
  for (const int code : {tornwalzen_analysis_set_mesh(nullptr, 3, 1, p, t, 1),
                         tornwalzen_analysis_set_holds(nullptr, t),
                         tornwalzen_analysis_set_material(nullptr, 1),
                         tornwalzen_analysis_set_flow_curve(nullptr, 3, p, p),
                         tornwalzen_analysis_set_law(nullptr, 1, p, 1.0),
                         tornwalzen_analysis_set_normal_anisotropy(nullptr, 1.0),
                         tornwalzen_analysis_set_energy_reference(nullptr, 1),
                         tornwalzen_analysis_set_path(nullptr, 1),
                         tornwalzen_analysis_set_start(nullptr, 1),
                         tornwalzen_analysis_set_tolerance_factors(nullptr, 1.0, 1.0),
                         tornwalzen_analysis_set_threads(nullptr, 2),
                         tornwalzen_analysis_set_model(nullptr, 1),
                         tornwalzen_analysis_set_press(nullptr, &press),
                         tornwalzen_analysis_set_flange(nullptr, t),
                         tornwalzen_analysis_set_beads(nullptr, 0, t, t, p),
                         tornwalzen_analysis_press_result(nullptr, &result),
                         tornwalzen_analysis_on_step(nullptr, nullptr, nullptr),
                         tornwalzen_analysis_on_message(nullptr, nullptr, nullptr),
                         tornwalzen_analysis_run(nullptr),
                         tornwalzen_analysis_report(nullptr, &report),
                         tornwalzen_analysis_strains(nullptr, &strain)})
    EXPECT_EQ(code, TORNWALZEN_NULL_POINTER);
  EXPECT_EQ(tornwalzen_analysis_nodes(nullptr), 0);
  EXPECT_EQ(tornwalzen_analysis_triangles(nullptr), 0);
  EXPECT_EQ(tornwalzen_analysis_matrix_entries(nullptr), 0);
  EXPECT_EQ(tornwalzen_analysis_blank(nullptr), nullptr);
  EXPECT_EQ(tornwalzen_analysis_starting_blank(nullptr), nullptr);
  EXPECT_EQ(tornwalzen_analysis_element_table(nullptr), nullptr);
  EXPECT_EQ(tornwalzen_analysis_oriented_triangles(nullptr), nullptr);
  EXPECT_STREQ(tornwalzen_analysis_error_text(nullptr, 0, 1), "");
}

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(AnalysisHandle, AHundredLivesLeaveNoMemoryBehind) {
  const HostPart part = samplePart("square_cup", 300);
  const auto life = [&part] {
    const Handle handle = newHandle();
    take(handle, part);
    tornwalzen_analysis_run(handle.get());
  };
  life();
  const std::size_t before = mallinfo2().uordblks;
  for (int k = 0; k < 100; ++k) life();
  EXPECT_EQ(mallinfo2().uordblks, before);
}
#endif

}  // namespace
}  // namespace extension
