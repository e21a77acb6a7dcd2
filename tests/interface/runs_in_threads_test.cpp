// One analysis on several threads: the bits of one, whatever the path, the material, the model and the end of the run; the
// host's handlers hear on the thread that runs it. The same tests run under the thread sanitizer (preset tsan).
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <thread>

#include "handle.hpp"
#include "tornwalzen_ext.h"

namespace extension {
namespace {

constexpr std::int32_t counts[] = {1, 2, 3, 8};

using Settings = std::function<void(TornwalzenAnalysis*)>;

/// What a run told and found.
struct Told {
  std::vector<double> results;
  std::string lines;
  std::int32_t code = 0;
  TornwalzenReport report{};
};

Told runOn(std::int32_t threads, const HostPart& part, const Settings& settings) {
  const Handle handle = newHandle();
  Told told;
  struct Ear {
    std::string& lines;
    std::thread::id caller;
  } ear{told.lines, std::this_thread::get_id()};
  tornwalzen_analysis_on_message(
      handle.get(),
      [](void* seen, const char* line) {
        auto& its = *static_cast<Ear*>(seen);
        EXPECT_EQ(std::this_thread::get_id(), its.caller);
        its.lines += std::string(line) + "\n";
      },
      &ear);
  take(handle, part);
  settings(handle.get());
  EXPECT_EQ(tornwalzen_analysis_set_threads(handle.get(), threads), TORNWALZEN_OK);
  told.code = tornwalzen_analysis_run(handle.get());
  told.results = resultsOf(handle);
  told.report = reportOf(handle);
  EXPECT_EQ(told.report.threads, threads);
  return told;
}

void expectTheSame(const HostPart& part, const Settings& settings, const std::string& name) {
  const Told alone = runOn(1, part, settings);
  EXPECT_FALSE(alone.results.empty()) << name;
  for (const std::int32_t threads : counts) {
    const Told shared = runOn(threads, part, settings);
    EXPECT_EQ(shared.code, alone.code) << name << " on " << threads;
    EXPECT_TRUE(sameBits(shared.results, alone.results)) << name << " on " << threads;
    EXPECT_EQ(shared.lines, alone.lines) << name << " on " << threads;
    EXPECT_EQ(shared.report.reason, alone.report.reason) << name;
    EXPECT_EQ(shared.report.factorizations, alone.report.factorizations) << name;
    EXPECT_EQ(shared.report.energy, alone.report.energy) << name;
    EXPECT_STREQ(shared.report.fatal_text, alone.report.fatal_text) << name;
    EXPECT_EQ(alone.report.thread_bytes, 0);
  }
}

void goesSure(TornwalzenAnalysis* analysis) {
  tornwalzen_analysis_set_path(analysis, 1);
  tornwalzen_analysis_set_energy_reference(analysis, 1);
  tornwalzen_analysis_set_tolerance_factors(analysis, 0.001, 1.0);
}

constexpr std::int32_t enough = 3000;  // triangles: passes over them are shared from 2048 on

// On all samples, by the sure path.
class SampleInThreads : public ::testing::TestWithParam<std::string> {};
INSTANTIATE_TEST_SUITE_P(Every, SampleInThreads, ::testing::ValuesIn([] {
                           std::vector<std::string> names;
                           for (const auto& shape : shapes::catalogue()) names.push_back(shape.name);
                           return names;
                         }()),
                         [](const auto& which) { return which.param; });
TEST_P(SampleInThreads, HasTheBitsOfOneThreadOnTheSurePath) {
  expectTheSame(samplePart(GetParam().c_str(), enough), goesSure, GetParam());
}

TEST(RunsInThreads, HaveTheBitsOfOneThreadOnTheFixedPath) {
  for (const char* sample : {"hat", "round_cup"})
    expectTheSame(
        samplePart(sample, enough), [](auto*) {}, sample);
}

TEST(RunsInThreads, HaveTheBitsOfOneThreadWithEveryEnergy) {
  const HostPart part = samplePart("hat", enough);
  expectTheSame(
      part,
      [](TornwalzenAnalysis* a) {
        goesSure(a);
        tornwalzen_analysis_set_energy_reference(a, 0);
      },
      "over the blank");
  expectTheSame(
      part,
      [](TornwalzenAnalysis* a) {
        goesSure(a);
        tornwalzen_analysis_set_material(a, 10);
      },
      "geometric");
}

/// The press model on a steel sheet of 1 mm.
TornwalzenPress steelSheet() {
  TornwalzenPress press{};
  press.size = sizeof press;
  press.thickness_mm = 1.0;
  return press;
}

void goesThroughThePress(TornwalzenAnalysis* a, const TornwalzenPress& press) {
  constexpr double steel[] = {549.03, 0.007, 0.22};  // K (MPa), prestrain, exponent of Swift's law
  goesSure(a);
  EXPECT_EQ(tornwalzen_analysis_set_law(a, TORNWALZEN_SWIFT, steel, 1.0), TORNWALZEN_OK);
  EXPECT_EQ(tornwalzen_analysis_set_model(a, 1), TORNWALZEN_OK);
  EXPECT_EQ(tornwalzen_analysis_set_press(a, &press), TORNWALZEN_OK);
}

TornwalzenPressResult pressedOn(std::int32_t threads, const HostPart& part, const TornwalzenPress& press) {
  const Handle handle = newHandle();
  take(handle, part);
  goesThroughThePress(handle.get(), press);
  EXPECT_EQ(tornwalzen_analysis_set_threads(handle.get(), threads), TORNWALZEN_OK);
  EXPECT_EQ(tornwalzen_analysis_run(handle.get()), TORNWALZEN_OK);
  EXPECT_EQ(reportOf(handle).converged, 1);
  TornwalzenPressResult result{};
  result.size = sizeof result;
  EXPECT_EQ(tornwalzen_analysis_press_result(handle.get(), &result), TORNWALZEN_OK);
  return result;
}

void expectThePressToBeTheSame(const TornwalzenPress& press, const char* name) {
  const HostPart part = samplePart("round_cup", enough);
  expectTheSame(
      part, [&](TornwalzenAnalysis* a) { goesThroughThePress(a, press); }, name);
  const TornwalzenPressResult alone = pressedOn(1, part, press), shared = pressedOn(3, part, press);
  EXPECT_EQ(std::memcmp(&alone, &shared, sizeof alone), 0) << name;
}

TEST(RunsInThreads, HaveTheBitsOfOneThreadWithASheetInThePress) {
  TornwalzenPress press = steelSheet();
  press.r0 = 1.8, press.r45 = 1.3, press.r90 = 2.2, press.rolling_angle_deg = 20.0;
  expectThePressToBeTheSame(press, "planar anisotropy");
}

TEST(RunsInThreads, HaveTheBitsOfOneThreadWithFrictionAndBinder) {
  TornwalzenPress press = steelSheet();
  press.friction_punch = press.friction_die = 0.1;
  press.binder_force_n = 10000.0;
  press.flange_of_rim = 1;
  expectThePressToBeTheSame(press, "friction and binder");
}

// A surface so crumpled that the start turns too many triangles over.
TEST(RunsInThreads, EndWithTheTextOfOneThread) {
  HostPart part = samplePart("hat", enough);
  for (std::size_t i = 0; i < part.knots.size(); ++i)
    part.knots[i] += 3000.0 * std::sin(12.9898 * static_cast<double>(i));
  const TornwalzenReport report = runOn(1, part, goesSure).report;
  EXPECT_EQ(report.converged, 0);
  EXPECT_NE(std::string(report.fatal_text), "");
  expectTheSame(part, goesSure, "crumpled");
}

TEST(RunsInThreads, TellWhatTheirThreadsTake) {
  const Told shared = runOn(2, samplePart("hat", enough), goesSure);
  EXPECT_GT(shared.report.thread_bytes, 0);
}

TEST(Threads, AreRefusedOutsideOfOneToSixtyFour) {
  const Handle handle = newHandle();
  EXPECT_EQ(tornwalzen_analysis_set_threads(nullptr, 2), TORNWALZEN_NULL_POINTER);
  EXPECT_EQ(tornwalzen_analysis_set_threads(handle.get(), 2), TORNWALZEN_OK);
  for (const std::int32_t bad : {0, -1, 65}) {
    EXPECT_EQ(tornwalzen_analysis_set_threads(handle.get(), bad), TORNWALZEN_BAD_THREADS);
    EXPECT_NE(std::string(tornwalzen_analysis_error_text(handle.get(), TORNWALZEN_BAD_THREADS, 1))
                  .find(std::to_string(bad)),
              std::string::npos);
    EXPECT_EQ(reportOf(handle).threads, 2);
  }
  EXPECT_EQ(tornwalzen_set_threads(0), TORNWALZEN_BAD_THREADS);
  EXPECT_EQ(tornwalzen_set_threads(3), TORNWALZEN_OK);
  EXPECT_EQ(tornwalzen_set_threads(1), TORNWALZEN_OK);
}

}  // namespace
}  // namespace extension
