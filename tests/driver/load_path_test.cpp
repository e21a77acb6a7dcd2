// Step lengths of the load increments.
#include "driver/load_path.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using namespace tornwalzen;

namespace {

constexpr double initialStep = double(0.005f);

/// Takes one increment that needs m Newton iterations; returns its step.
double take(LoadPath& path, Int m) {
  bool exhausted;
  path.adjustStep(exhausted);
  EXPECT_FALSE(exhausted);
  path.advance();
  path.m = m;
  return path.dlam;
}

}  // namespace

TEST(LoadPath, EasyIncrementsGrowByHalfUpToATenthAndTheLastTakesWhatIsLeft) {
  LoadPath path;
  std::vector<double> steps;
  while (!path.atEnd()) steps.push_back(take(path, 2));
  const double listed[] = {0.0075, 0.01125, 0.016875, 0.0253125, 0.03796875, 0.056953125, 0.0854296875, 0.1};
  ASSERT_EQ(steps.size(), 15u);
  // The first step is 0.005 in single precision, 2.3e-8 of it too short; growing keeps the relative error.
  for (int i = 0; i < 8; ++i)
    EXPECT_NEAR(steps[std::size_t(i)], listed[i], 3e-8 * listed[i]) << "increment " << i + 1;
  for (std::size_t i = 7; i < 14; ++i) EXPECT_EQ(steps[i], 0.1);
  EXPECT_LT(steps[14], 0.1);
  EXPECT_GT(steps[14], 0.0);
  EXPECT_EQ(path.lambda, 1.0);
  EXPECT_EQ(path.k, 15);
}

TEST(LoadPath, FirstStepIsTheSinglePrecisionValueTimesOneAndAHalf) {
  LoadPath path;
  EXPECT_EQ(take(path, 2), initialStep * 1.5);
}

TEST(LoadPath, SevenIterationsShrinkTheNextStepAndThreeToSixKeepIt) {
  for (const Int m : {0, 1, 2}) EXPECT_EQ(nextStep(0.04, m), 0.04 * 1.5);
  for (const Int m : {3, 4, 5, 6}) EXPECT_EQ(nextStep(0.04, m), 0.04);
  for (const Int m : {7, 8, 9}) EXPECT_EQ(nextStep(0.04, m), 0.04 / 1.5);
  EXPECT_EQ(nextStep(0.09, 2), 0.1);
  EXPECT_EQ(nextStep(0.006, 7), 0.005);
  EXPECT_EQ(nextStep(0.001, 7), 0.005);  // the floor also lifts a step that was below it
}

TEST(LoadPath, TolerancesFollowTheRunStatus) {
  EXPECT_EQ(gradientTolerance(0), 0.1 / 10.0);
  EXPECT_EQ(gradientTolerance(1), 0.1);
  EXPECT_EQ(gradientLimit(0.01, 1.0), 0.01);
  EXPECT_EQ(gradientLimit(0.01, std::nextafter(1.0, 0.0)), 10.0 * 0.01);
  EXPECT_EQ(gradientLimit(0.1, 0.5), 1.0);
}

TEST(LoadPath, RepeatHalvesThePreviousStepThenAppliesTheRule) {
  const double listed[] = {0.5 * 1.5, 0.5, 0.5 / 1.5};
  const Int iterations[] = {2, 4, 9};
  for (int i = 0; i < 3; ++i) {
    LoadPath path;
    for (int increment = 0; increment < 6; ++increment) take(path, 2);
    const double before = path.dlam, lambda = path.lambda;
    take(path, iterations[i]);
    path.stepBack();
    EXPECT_EQ(path.k, 6);
    EXPECT_NEAR(path.lambda, lambda, std::numeric_limits<double>::epsilon());
    // two roundings in the product
    EXPECT_NEAR(take(path, 2), before * listed[i], 2.0 * before * std::numeric_limits<double>::epsilon());
    EXPECT_EQ(path.k, 7);
  }
}

TEST(LoadPath, RepeatsOfAnEarlyFailureEndAtTheSmallestStep) {
  LoadPath path;
  bool exhausted = false;
  std::vector<double> steps;
  for (;;) {
    path.adjustStep(exhausted);
    if (exhausted) break;
    path.advance();
    path.m = 1;
    steps.push_back(path.dlam);
    path.stepBack();
  }
  ASSERT_EQ(steps.size(), 10u);
  EXPECT_GT(steps.back(), 1e-5);
  EXPECT_LE(path.dlam, 1e-5);
  for (std::size_t i = 1; i < steps.size(); ++i) EXPECT_EQ(steps[i], 0.5 * steps[i - 1]);
}

// At the floor an attempt that fails in its seventh or eighth iteration would be repeated as it was, for
// ever.
TEST(LoadPath, RepeatOfTheVerySameAttemptIsRefused) {
  LoadPath path;
  take(path, 9);
  EXPECT_EQ(take(path, 8), 0.005);
  path.stepBack();
  bool exhausted;
  path.adjustStep(exhausted);
  EXPECT_TRUE(exhausted);
}

TEST(LoadPath, SameStepFromANewStateIsNoRepeat) {
  LoadPath path;
  take(path, 9);
  EXPECT_EQ(take(path, 9), 0.005);
  EXPECT_EQ(take(path, 9), 0.005);
}

// What is left of the path may be shorter than several steps in turn; the halving behind it goes on.
TEST(LoadPath, RepeatCutToWhatIsLeftGoesOnHalving) {
  LoadPath path;
  path.lambda = 0.997;
  path.dlam = 0.02;
  take(path, 4);
  EXPECT_EQ(path.lambda, 1.0);
  std::vector<double> steps;
  for (int repeat = 0; repeat < 4; ++repeat) {
    path.stepBack();
    steps.push_back(take(path, 4));
  }
  EXPECT_EQ(steps[0], steps[1]);  // 0.01 and 0.005 are still cut to 0.003
  EXPECT_EQ(steps[2], 0.0025);
  EXPECT_EQ(steps[3], 0.00125);
}

TEST(LoadPath, AnIncrementHasTwoToEightNewtonIterations) {
  EXPECT_EQ(newtonLeast, 2);
  EXPECT_EQ(newtonLimit, 8);
}
