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
  sample.counts.lastGradient = 0.75;
  EXPECT_EQ(judge(sample.part, 1, sample.run, sample.counts).reason,
            "the last increment did not reach its gradient tolerance; its last gradient was 0.75");
}

TEST(Verdict, FlatPartUnderTheGeometricMaterialIsExplained) {
  SampleRun sample;
  sample.run.progress.take({0.5, 0, nullptr});
  EXPECT_THAT(judge(sample.part, 10, sample.run, sample.counts).reason, HasSubstr("the run ended at 50.0 %"));
  sample.part.points[14] = 0.0;
  EXPECT_THAT(judge(sample.part, 10, sample.run, sample.counts).reason,
              HasSubstr("the part is flat and is its own blank"));
  EXPECT_THAT(judge(sample.part, 1, sample.run, sample.counts).reason, HasSubstr("the run ended at 50.0 %"));
}
