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
