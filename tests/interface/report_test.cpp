// The report of a run: sizes, counts against what the messages tell, and every reason not to be converged.
#include <cmath>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "host_kit/parts.hpp"
#include "refusals.hpp"

namespace extension {

using namespace host_kit;
namespace {

using Report = ExtensionTest;

TornwalzenReport currentReport() {
  TornwalzenReport report;
  std::memset(&report, 0x7f, sizeof report);
  report.size = sizeof report;
  EXPECT_EQ(tornwalzen_get_report(&report), 0);
  return report;
}

int countOf(const std::string& text, const std::string& part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

/// A part of few nodes with its held unknowns.
HostPart smallPart(std::vector<double> knots, std::vector<std::int32_t> inzi,
                   std::vector<std::int32_t> held) {
  HostPart part{std::move(knots), std::move(inzi), {}};
  part.arfa.assign(2 * part.knots.size() / 3, 1);
  for (const std::int32_t unknown : held) part.arfa[static_cast<std::size_t>(unknown) - 1] = 0;
  return part;
}

struct Observed {
  WholeRun run;
  std::string lines;
};

Observed observe(const HostPart& part, int material) {
  testing::internal::CaptureStdout();
  WholeRun run(part, material);
  return {std::move(run), testing::internal::GetCapturedStdout()};
}

TEST_F(Report, RefusesAShortStructureAndANullPointer) {
  TornwalzenReport report;
  std::memset(&report, 0x7f, sizeof report);
  // the first version of the structure ended with the fatal text
  report.size = offsetof(TornwalzenReport, fatal_text) + sizeof report.fatal_text - 1;
  const TornwalzenReport before = report;
  const std::string size = std::to_string(report.size);
  expectRefused([&] { return tornwalzen_get_report(&report); }, TORNWALZEN_SHORT_REPORT,
                "die Berichtsstruktur ist mit " + size + " Bytes zu kurz (Feld size)",
                "the report structure is too short with " + size + " bytes (field size)");
  EXPECT_EQ(std::memcmp(&report, &before, sizeof report), 0);
  expectRefused([] { return tornwalzen_get_report(nullptr); }, TORNWALZEN_NULL_POINTER,
                "Argument 1 ist ein Nullzeiger", "argument 1 is a null pointer");
}

TEST_F(Report, FillsWhatAHostOfTheFirstVersionKnows) {
  TornwalzenReport report;
  std::memset(&report, 0x7f, sizeof report);
  const std::int32_t first = offsetof(TornwalzenReport, fatal_text) + sizeof report.fatal_text;
  report.size = first;
  ASSERT_EQ(tornwalzen_get_report(&report), 0);
  EXPECT_EQ(report.size, first);
  EXPECT_EQ(report.reason, TORNWALZEN_NO_RUN);
  EXPECT_EQ(report.path, 0x7f7f7f7f) << "behind the structure that the host has";
}

TEST_F(Report, FillsTheFrontOfALargerStructureAndTellsHowMuch) {
  struct Larger {
    TornwalzenReport front;
    double later;
  } larger;
  larger.front.size = sizeof larger;
  larger.later = 7.0;
  ASSERT_EQ(tornwalzen_get_report(&larger.front), 0);
  EXPECT_EQ(larger.front.size, static_cast<std::int32_t>(sizeof(TornwalzenReport)));
  EXPECT_EQ(larger.later, 7.0);
}

TEST_F(Report, CountsWhatTheMessagesTellOfAConvergedRun) {
  const Observed o = observe(samplePart("l_bend", 600), 1);
  const TornwalzenReport r = currentReport();
  EXPECT_EQ(r.converged, 1);
  EXPECT_EQ(r.reason, TORNWALZEN_CONVERGED);
  EXPECT_EQ(r.newton_iterations, countOf(o.lines, "MAX.GRAD, LS-FAK, EN"));
  EXPECT_EQ(r.factorizations, r.newton_iterations);
  EXPECT_EQ(r.repeats, countOf(o.lines, "INKREMENT WIRD WIEDERHOLT"));
  EXPECT_EQ(r.increments, countOf(o.lines, " START INKRMEMENT") - r.repeats);
  EXPECT_EQ(r.accepted_unconverged, 0);
  EXPECT_GE(r.line_search_trials, 3 * r.newton_iterations) << "full step, half of it, and the accepted point";
  EXPECT_EQ(r.progress, 1.0);
  EXPECT_GT(r.last_gradient, 0.0);
  EXPECT_LE(r.last_gradient, r.gradient_limit);
  EXPECT_EQ(r.gradient_limit, 0.1);
  EXPECT_GE(r.unfolding_iterations, 20);
  EXPECT_EQ(r.inverted_elements, 0);
  EXPECT_LE(r.largest_measure, 0.8);
  EXPECT_EQ(r.negative_pivots, 0);
  EXPECT_GT(r.smallest_pivot, 0.0);
  EXPECT_GE(r.factor_entries, o.run.MNSYSM[0]);
  EXPECT_GT(r.factor_flops, static_cast<double>(r.factor_entries));
  const double parts =
      r.time_development + r.time_assembly + r.time_factorization + r.time_solve + r.time_line_search;
  EXPECT_GT(parts, 0.0);
  EXPECT_LE(parts, r.time_analysis + 1e-3) << "clock ticks";
  EXPECT_GE(r.time_structure + r.time_ordering + r.time_symbolic, 0.0);
  EXPECT_STREQ(r.fatal_text, "");
  EXPECT_EQ(r.size, static_cast<std::int32_t>(sizeof r));
}

TEST_F(Report, TellsTheToleranceThatAFactorSets) {
  ASSERT_EQ(tornwalzen_set_tolerance_factors(0.001, 1.0), 0);
  observe(samplePart("half_pipe", 300), 1);
  const TornwalzenReport r = currentReport();
  EXPECT_EQ(r.converged, 1);
  EXPECT_NEAR(r.gradient_limit, 1e-4, 1e-19);
  EXPECT_LE(r.last_gradient, r.gradient_limit);
}

TEST_F(Report, AGradientThatEqualsItsLimitConverges) {
  const HostPart part = samplePart("half_pipe", 300);
  observe(part, 1);
  const TornwalzenReport first = currentReport();
  ASSERT_EQ(first.converged, 1);
  double factor = first.last_gradient / first.gradient_limit;
  for (int attempt = 0; attempt < 4; ++attempt, factor = std::nextafter(factor, 1.0)) {
    ASSERT_EQ(tornwalzen_set_tolerance_factors(factor, 1.0), 0);
    observe(part, 1);
    if (currentReport().gradient_limit >= first.last_gradient) break;
  }
  const TornwalzenReport r = currentReport();
  ASSERT_EQ(r.gradient_limit, first.last_gradient);
  EXPECT_EQ(r.converged, 1);
  EXPECT_EQ(r.last_gradient, first.last_gradient);
  EXPECT_EQ(r.newton_iterations, first.newton_iterations);
}

TEST_F(Report, LargestStrainIsThatOfTheElementStrainsWhereverItsElementStands) {
  HostPart part = samplePart("round_cup", 500);
  // the element of the largest strain is made the only one, then moved to the front, then to the end
  std::int32_t at = -1;
  for (const std::int32_t place : {-2, -1, 0, part.elements() - 1}) {
    if (place == -1) part.knots[3 * (part.inzi[3 * at] - 1) + 2] += 1.0;
    if (place >= 0)
      for (int c = 0; c < 3; ++c) std::swap(part.inzi[3 * at + c], part.inzi[3 * place + c]);
    const Observed o = observe(part, 1);
    std::vector<TornwalzenElementStrain> strains(static_cast<std::size_t>(part.elements()));
    ASSERT_EQ(tornwalzen_element_strains(1, part.nodes(), part.elements(), part.knots.data(),
                                         part.inzi.data(), o.run.RX.data(), strains.data()),
              0);
    const auto largest = std::max_element(strains.begin(), strains.end(), [](const auto& a, const auto& b) {
      return a.equivalent < b.equivalent;
    });
    EXPECT_NEAR(currentReport().largest_strain, largest->equivalent, 1e-14);
    at = static_cast<std::int32_t>(largest - strains.begin());
    if (place >= 0) {
      EXPECT_NEAR(strains[place].equivalent, largest->equivalent, 1e-9);
    }
  }
}

TEST_F(Report, TellsWhetherTheLargestStrainLiesBeyondTheData) {
  const HostPart part = samplePart("round_cup", 500);
  observe(part, 1);
  const double largest = currentReport().largest_strain;
  for (const double end : {0.5 * largest, 2.0 * largest}) {
    const double strain[3] = {0.0, 0.5 * end, end}, stress[3] = {300.0, 400.0, 450.0};
    ASSERT_EQ(tornwalzen_set_flow_curve(1, 3, strain, stress), 0);
    observe(part, 1);
    EXPECT_EQ(currentReport().beyond_curve, end < largest ? 1 : 0);
  }
  observe(part, 10);
  EXPECT_EQ(currentReport().beyond_curve, 0) << "the geometric density reads no curve";
}

TEST_F(Report, NoRunYet) {
  EXPECT_EQ(currentReport().reason, TORNWALZEN_NO_RUN);
  EXPECT_EQ(currentReport().converged, 0);
  EXPECT_EQ(currentReport().negative_pivots, -1);
}

TEST_F(Report, ANewMeshForgetsTheRunBefore) {
  observe(samplePart("plate", 50), 1);
  EXPECT_EQ(currentReport().converged, 1);
  const std::int32_t mode = 1, counts = -1;
  std::int32_t mnsysm = 0, niwor = 0, nrk = 0, istat = 0;
  OSINIT(&mode, &counts, &counts, &counts, &mnsysm, &niwor, &nrk, nullptr, nullptr, nullptr, nullptr, nullptr,
         nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
         nullptr, nullptr, nullptr, &istat);
  EXPECT_EQ(istat, -1);
  EXPECT_EQ(currentReport().reason, TORNWALZEN_NO_RUN);
  EXPECT_EQ(currentReport().converged, 0);
}

TEST_F(Report, RefusedIndexArrays) {
  const HostPart part = samplePart("plate", 50);
  Observed o = observe(part, 1);
  o.run.INTA[3] = 99999;
  testing::internal::CaptureStderr();
  o.run.analyse();
  const std::string line = testing::internal::GetCapturedStderr();
  EXPECT_EQ(o.run.ISTAT[0], -1);
  EXPECT_EQ(currentReport().reason, TORNWALZEN_REFUSED);
  EXPECT_EQ(currentReport().fatal_text + std::string("\n"), line);
  EXPECT_EQ(line.substr(0, 51), "fort: (2): Subscript #1 of the array KNG has value ");
}

TEST_F(Report, PartThatCannotBeDeveloped) {
  // two triangles that share a node far above the plane, and nothing but that node may move along
  const HostPart part = smallPart({0, 0, 0, 0, 1, 0, 0.4, 0.5, 20, 1, 0, -3, 1, 1, -3}, {1, 3, 2, 4, 5, 3},
                                  {1, 2, 3, 4, 6, 7, 8, 9, 10});
  observe(part, 1);
  const TornwalzenReport r = currentReport();
  EXPECT_EQ(r.converged, 0);
  EXPECT_EQ(r.reason, TORNWALZEN_NOT_DEVELOPED);
  EXPECT_GT(r.largest_measure, 0.8);
  EXPECT_EQ(r.unfolding_iterations, 5000);
  EXPECT_EQ(r.increments, 0);
  EXPECT_NE(std::string(r.fatal_text).find("KEINE KONVERGENZ -> ABBRUCH !!!"), std::string::npos);

  observe(samplePart("plate", 50), 1);
  EXPECT_EQ(currentReport().reason, TORNWALZEN_LEFTOVER_ERROR);
}

TEST_F(Report, StepThatBecameTooSmall) {
  // walls that stay closed, since nothing may move
  HostPart part = samplePart("box", 200);
  part.arfa.assign(part.arfa.size(), 0);
  observe(part, 1);
  const TornwalzenReport r = currentReport();
  EXPECT_EQ(r.reason, TORNWALZEN_STEP_TOO_SMALL);
  EXPECT_EQ(r.increments, 0);
  EXPECT_EQ(r.repeats, 10);
  EXPECT_EQ(r.progress, 0.0);
  EXPECT_STREQ(r.fatal_text, "KEINE KONVERGENZ, MINIMLAE SCHRITTWEITE");
}

TEST_F(Report, FinalIncrementThatStalls) {
  // a flat plate under the geometric density has an exactly zero gradient, which no step improves
  const HostPart part = smallPart({0, 0, 0, 8, 0, 0, 8, 8, 0, 0, 8, 0}, {1, 2, 3, 1, 3, 4}, {1, 2, 4});
  observe(part, 10);
  const TornwalzenReport r = currentReport();
  EXPECT_EQ(r.converged, 0);
  EXPECT_EQ(r.reason, TORNWALZEN_FINAL_UNCONVERGED);
  EXPECT_GT(r.accepted_unconverged, 100);
  EXPECT_EQ(r.increments, r.accepted_unconverged);
  EXPECT_LT(r.progress, 1.0);
  EXPECT_GT(r.progress, 0.98);
}

TEST_F(Report, SolverThatFailed) {
  // node 5 is free but in no triangle
  const HostPart part =
      smallPart({0, 0, 0, 10, 0, 0, 10, 10, 4, 0, 10, 0, 50, 50, 0}, {1, 2, 3, 1, 3, 4}, {1, 2, 4});
  const Observed o = observe(part, 1);
  EXPECT_EQ(o.run.ISTAT[0], -1);
  const TornwalzenReport r = currentReport();
  EXPECT_EQ(r.converged, 0);
  EXPECT_EQ(r.reason, TORNWALZEN_SOLVER_FAILED);
  EXPECT_EQ(r.negative_pivots, -1);
  EXPECT_STREQ(r.fatal_text, "FATALER FEHLER : FEHLER 3 IN LOESUNGSPHASE");
}

}  // namespace
}  // namespace extension
