#include "verdict.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sample_run.hpp"

using namespace host;
using testing::HasSubstr;

TEST(Verdict, ConvergedRunEndsWithZero) {
  const SampleRun sample;
  const Verdict verdict = judge(sample.part, 1, sample.run, sample.counts);
  EXPECT_TRUE(verdict.converged);
  EXPECT_EQ(verdict.status, 0);
  EXPECT_EQ(verdict.reason, "");
}

TEST(Verdict, SolverFailureIsAFailureHoweverFarTheRunCame) {
  SampleRun sample;
  sample.run.ISTAT = -1;
  const Verdict verdict = judge(sample.part, 1, sample.run, sample.counts);
  EXPECT_FALSE(verdict.converged);
  EXPECT_EQ(verdict.status, exitRunFailed);
  EXPECT_THAT(verdict.reason, HasSubstr("could not be factorized"));
}

TEST(Verdict, FailedDevelopmentIsNamed) {
  SampleRun sample;
  sample.run.progress = {};
  const Verdict verdict = judge(sample.part, 1, sample.run, sample.counts);
  EXPECT_EQ(verdict.status, exitUnconverged);
  EXPECT_THAT(verdict.reason, HasSubstr("could not be developed onto the plane"));
}

TEST(Verdict, StepTooSmallTellsHowFarTheRunCame) {
  SampleRun sample;
  sample.run.progress.take({0.625, 0, nullptr});
  sample.counts.stepTooSmall = true;
  EXPECT_EQ(judge(sample.part, 1, sample.run, sample.counts).reason,
            "increments failed until their step became too small, at 62.5 % of the part");
}

TEST(Verdict, MissedToleranceAtTheEndTellsTheGradient) {
  SampleRun sample;
  sample.run.progress.take({1.0, 0, nullptr});
  sample.counts.lastGradient = 0.05;
  EXPECT_EQ(judge(sample.part, 10, sample.run, sample.counts).reason,
            "the gradient of the last increment stayed at 0.05, above its tolerance of 0.01");
}

TEST(Verdict, CollapsedLineSearchWithinTheToleranceIsNotCalledAMissedTolerance) {
  SampleRun sample;
  sample.run.progress.take({1.0, 0, nullptr});
  sample.counts.lastGradient = 0.05;
  EXPECT_EQ(
      judge(sample.part, 1, sample.run, sample.counts).reason,
      "the line search found no better blank in the last increment, which then does not count as converged, "
      "although its gradient of 0.05 is within the tolerance of 0.1");
}

TEST(Verdict, AFlatPartIsExplained) {
  SampleRun sample;
  sample.run.progress.take({0.5, 0, nullptr});
  EXPECT_EQ(judge(sample.part, 10, sample.run, sample.counts).reason, "the run ended at 50.0 % of the part");
  sample.part.points[14] = 0.0;
  for (const int material : {0, 10})
    EXPECT_THAT(judge(sample.part, material, sample.run, sample.counts).reason,
                HasSubstr("the part is flat and is its own blank"));
}
