#include "run/verdict.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "app/run/sample_run.hpp"

using namespace host;
using testing::HasSubstr;

namespace {

// The sample with a report that ended so.
SampleRun ended(std::int32_t reason, double progress = 0.95) {
  SampleRun sample;
  sample.run.report.converged = 0;
  sample.run.report.reason = reason;
  sample.run.report.progress = progress;
  return sample;
}

Verdict verdictOf(const SampleRun& sample) {
  return judge(sample.part, sample.run);
}

}  // namespace

TEST(Verdict, ConvergedRunEndsWithZero) {
  const Verdict verdict = verdictOf(SampleRun());
  EXPECT_TRUE(verdict.converged);
  EXPECT_EQ(verdict.status, 0);
  EXPECT_EQ(verdict.reason, "");
}

TEST(Verdict, SolverFailureIsAFailureHoweverFarTheRunCame) {
  const Verdict verdict = verdictOf(ended(TORNWALZEN_SOLVER_FAILED, 1.0));
  EXPECT_FALSE(verdict.converged);
  EXPECT_EQ(verdict.status, exitRunFailed);
  EXPECT_THAT(verdict.reason, HasSubstr("could not be factorized"));
}

TEST(Verdict, FailedDevelopmentIsNamed) {
  const Verdict verdict = verdictOf(ended(TORNWALZEN_NOT_DEVELOPED, 0.0));
  EXPECT_EQ(verdict.status, exitUnconverged);
  EXPECT_THAT(verdict.reason, HasSubstr("could not be developed onto the plane"));
}

TEST(Verdict, StepTooSmallTellsHowFarTheRunCame) {
  EXPECT_EQ(verdictOf(ended(TORNWALZEN_STEP_TOO_SMALL, 0.625)).reason,
            "increments failed until their step became too small, at 62.5 % of the part");
}

TEST(Verdict, MissedToleranceAtTheEndTellsTheGradient) {
  SampleRun sample = ended(TORNWALZEN_FINAL_UNCONVERGED);
  sample.run.report.last_gradient = 0.05;
  sample.run.report.gradient_limit = 0.01;
  EXPECT_EQ(verdictOf(sample).reason,
            "the gradient of the last increment stayed at 0.05 mm, above its tolerance of 0.01 mm");
}

TEST(Verdict, CollapsedLineSearchWithinTheToleranceIsNotCalledAMissedTolerance) {
  SampleRun sample = ended(TORNWALZEN_FINAL_UNCONVERGED);
  sample.run.report.last_gradient = 0.05;
  sample.run.report.gradient_limit = 0.1;
  EXPECT_EQ(
      verdictOf(sample).reason,
      "the line search found no better blank in the last increment, which then does not count as converged, "
      "although its gradient of 0.05 mm is within the tolerance of 0.1 mm");
}

TEST(Verdict, RefusedRunCarriesTheLibrarysText) {
  SampleRun sample = ended(TORNWALZEN_REFUSED, 0.0);
  std::strcpy(sample.run.report.fatal_text, "FATALER FEHLER : Argument RX fehlt");
  const Verdict verdict = verdictOf(sample);
  EXPECT_EQ(verdict.status, exitRunFailed);
  EXPECT_EQ(verdict.reason, "the library refused the run: FATALER FEHLER : Argument RX fehlt");
}

TEST(Verdict, AFlatPartIsExplained) {
  for (const std::int32_t reason : {TORNWALZEN_FINAL_UNCONVERGED, TORNWALZEN_STEP_TOO_SMALL}) {
    SampleRun sample = ended(reason);
    EXPECT_THAT(verdictOf(sample).reason, testing::Not(HasSubstr("flat")));
    sample.part.points[14] = 0.0;
    EXPECT_THAT(verdictOf(sample).reason, HasSubstr("the part is flat and is its own blank"));
  }
}

TEST(Verdict, ATighterPathHelpsStalledIncrementsOfAPartThatIsNotFlat) {
  for (const std::int32_t reason : {TORNWALZEN_FINAL_UNCONVERGED, TORNWALZEN_STEP_TOO_SMALL}) {
    SampleRun sample = ended(reason);
    EXPECT_TRUE(tighterPathMayHelp(sample.part, sample.run));
    sample.part.points[14] = 0.0;
    EXPECT_FALSE(tighterPathMayHelp(sample.part, sample.run));
  }
  for (const std::int32_t reason :
       {TORNWALZEN_CONVERGED, TORNWALZEN_NOT_DEVELOPED, TORNWALZEN_SOLVER_FAILED}) {
    const SampleRun sample = ended(reason);
    EXPECT_FALSE(tighterPathMayHelp(sample.part, sample.run));
  }
}

namespace {

// A converged run of the sure path whose blank was checked and is right.
SampleRun checkedRun() {
  SampleRun sample;
  TornwalzenReport& r = sample.run.report;
  r.path = 1;
  r.checked = 1;
  r.minimum_certified = 1;
  r.part_area = 100.0;
  r.energy = 5.0;
  return sample;
}

template <class Change>
Verdict changed(Change change) {
  SampleRun sample = checkedRun();
  change(sample.run.report);
  return verdictOf(sample);
}

void expectNoBlank(const Verdict& verdict, const std::string& why) {
  EXPECT_EQ(verdict.worth, Worth::notABlank);
  EXPECT_EQ(verdict.status, exitUnconverged);
  EXPECT_EQ(verdict.why, std::vector<std::string>{why});
}

}  // namespace

TEST(Verdict, ARightBlankIsGood) {
  const Verdict verdict = verdictOf(checkedRun());
  EXPECT_EQ(verdict.worth, Worth::good);
  EXPECT_TRUE(verdict.why.empty());
  EXPECT_EQ(verdict.status, 0);
}

TEST(Verdict, WhatIsNoBlankIsToldWithItsPlace) {
  using R = TornwalzenReport;
  expectNoBlank(changed([](R& r) { r.not_finite = 2, r.first_not_finite = 1; }),
                "2 triangles with a position that is no number, the first is triangle 1");
  expectNoBlank(changed([](R& r) { r.blank_inverted = 1, r.first_inverted = 2; }),
                "1 triangle turned over in the blank, the first is triangle 2");
  expectNoBlank(changed([](R& r) { r.crossings = 4, r.crossing_u = 1.25, r.crossing_v = -3.0; }),
                "the outline of the blank crosses itself, first at u 1.25, v -3.00 mm");
  expectNoBlank(changed([](R& r) { r.misplaced_loops = 1, r.first_misplaced_node = 5; }),
                "holes and outline of the blank do not lie in one another, see node 5");
  expectNoBlank(changed([](R& r) { r.overlapped_area = 0.5; }), "the blank covers 0.50 mm2 more than once");
  expectNoBlank(changed([](R& r) { r.open_nodes = 2, r.first_open_node = 4; }),
                "the triangles around node 4 do not close once (nodes like this: 2)");
  expectNoBlank(changed([](R& r) { r.minimum_certified = 0; }), "the equilibrium found is no minimum");
}

TEST(Verdict, ARunThatGaveUpOffersTheFixedPath) {
  SampleRun sample = ended(TORNWALZEN_GAVE_UP);
  std::strcpy(sample.run.report.fatal_text, "SICHERER WEG: KEINE KONVERGENZ");
  const Verdict verdict = verdictOf(sample);
  EXPECT_EQ(verdict.worth, Worth::notABlank);
  EXPECT_EQ(verdict.status, exitUnconverged);
  EXPECT_EQ(verdict.reason,
            "the sure path gave up (SICHERER WEG: KEINE KONVERGENZ); --path fixed tries the way by "
            "load increments");
}

TEST(Verdict, WhatIsDoubtfulEndsWithZeroAndItsReason) {
  using R = TornwalzenReport;
  const Verdict strained = changed([](R& r) { r.share_beyond_one = 0.02, r.first_beyond_one = 2; });
  EXPECT_EQ(strained.worth, Worth::doubtful);
  EXPECT_EQ(strained.status, 0);
  EXPECT_EQ(strained.why[0], "the equivalent strain passes 1 on 2.0 % of the area, first at triangle 2");
  EXPECT_EQ(changed([](R& r) { r.checked = 0; }).why[0], "there was no memory to check the blank");
  EXPECT_EQ(changed([](R& r) { r.path = 0, r.minimum_certified = 0; }).why[0],
            "the last tangent was not positive definite: the equilibrium may be no minimum");
  EXPECT_EQ(changed([](R& r) { r.accepted_unconverged = 3; }).why[0],
            "3 increments on the way did not converge");
  EXPECT_EQ(changed([](R& r) { r.share_beyond_one = 0.0005; }).worth, Worth::good) << "a corner may";
  EXPECT_EQ(changed([](R& r) { r.share_beyond_curve = 0.4; }).worth, Worth::good)
      << "built-in curves end early";
}

TEST(Verdict, ASecondStartIsMadeWhereItMayHelp) {
  SampleRun good = checkedRun();
  EXPECT_FALSE(secondStartMayHelp(verdictOf(good), good.run));
  good.run.report.undercut_share = 0.01;
  EXPECT_TRUE(secondStartMayHelp(verdictOf(good), good.run)) << "undercut";
  SampleRun bad = checkedRun();
  bad.run.report.crossings = 1;
  EXPECT_TRUE(secondStartMayHelp(verdictOf(bad), bad.run));
  bad.run.report.path = 0;
  EXPECT_FALSE(secondStartMayHelp(verdictOf(bad), bad.run));
}

TEST(Verdict, StartsThatDisagreeMakeTheBlankDoubtful) {
  const SampleRun one = checkedRun();
  SampleRun other = checkedRun();
  Verdict verdict = verdictOf(one);
  SecondStart second = compareStarts(one.run, other.run, false);
  EXPECT_TRUE(second.agrees);
  noteSecondStart(second, verdict);
  EXPECT_EQ(verdict.worth, Worth::good);
  other.run.report.energy = 6.0;
  second = compareStarts(one.run, other.run, false);
  EXPECT_FALSE(second.agrees);
  noteSecondStart(second, verdict);
  EXPECT_EQ(verdict.worth, Worth::doubtful);
  EXPECT_EQ(verdict.why[0],
            "a second start ends in another blank: potential 6 against 5 mm2 of the one taken");
}

TEST(Verdict, WhatTheSheetDoesNotBearIsDoubtfulAndNoMatterOfTheStart) {
  SampleRun sample;
  sample.run.report.path = 1;
  sample.run.report.checked = 1;
  sample.run.report.minimum_certified = 1;
  sample.run.press.exponent = 1.0;
  EXPECT_EQ(verdictOf(sample).worth, Worth::good);
  sample.run.loadsGiven = true;
  EXPECT_THAT(verdictOf(sample).why, testing::ElementsAre(HasSubstr("does not bear the tools' forces")));
  sample.run.press.exponent = 1.1225;
  EXPECT_THAT(verdictOf(sample).why, testing::Contains(HasSubstr("down to the exponent 1.1225 alone")));
  sample.run.press.loads_held = 1;
  sample.run.report.minimum_certified = 0;
  const Verdict verdict = verdictOf(sample);
  EXPECT_EQ(verdict.why.size(), 2u);
  EXPECT_FALSE(secondStartMayHelp(verdict, sample.run));
  sample.run.report.share_beyond_one = 0.5;
  sample.run.report.first_beyond_one = 1;
  EXPECT_TRUE(secondStartMayHelp(verdictOf(sample), sample.run));
}

TEST(Verdict, OfTwoBlanksTheOneNearerToTheWorkIsTaken) {
  RunOutput low, high;
  low.press.exponent = 1.1, low.report.energy = 5.0;
  high.press.exponent = 1.2, high.report.energy = 4.0;
  EXPECT_TRUE(isNearer(low, high));
  EXPECT_FALSE(isNearer(high, low));
  high.press.exponent = 1.1;
  EXPECT_TRUE(isNearer(high, low));
}
