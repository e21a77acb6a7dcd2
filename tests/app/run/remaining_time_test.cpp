#include "run/remaining_time.hpp"

#include <gtest/gtest.h>

#include "tornwalzen_analysis.h"

using namespace host;

TEST(RemainingTime, IncrementsGoOnAtTheirPace) {
  RemainingTime remaining;
  EXPECT_FALSE(remaining.update(TORNWALZEN_PHASE_INCREMENTS, 0.0, 0, 10.0));
  EXPECT_FALSE(remaining.update(TORNWALZEN_PHASE_INCREMENTS, 0.01, 1, 11.0));  // too little to tell
  const auto left = remaining.update(TORNWALZEN_PHASE_INCREMENTS, 0.25, 2, 20.0);
  ASSERT_TRUE(left);
  EXPECT_DOUBLE_EQ(*left, 30.0);  // a quarter in 10 s
  // an increment begins anew with its iterations: the pace is that since the first
  EXPECT_DOUBLE_EQ(*remaining.update(TORNWALZEN_PHASE_INCREMENTS, 0.5, 0, 30.0), 20.0);
}

TEST(RemainingTime, NewtonGoesOnToSixAndOneAtLeast) {
  RemainingTime remaining;
  remaining.update(TORNWALZEN_PHASE_START, 0.0, 0, 4.0);
  EXPECT_FALSE(remaining.update(TORNWALZEN_PHASE_NEWTON, 0.0, 1, 6.0));
  EXPECT_DOUBLE_EQ(*remaining.update(TORNWALZEN_PHASE_NEWTON, 0.5, 2, 8.0), 8.0);
  EXPECT_DOUBLE_EQ(*remaining.update(TORNWALZEN_PHASE_NEWTON, 0.9, 9, 22.0), 2.0);
}

TEST(RemainingTime, SaysNothingOfAYoungRunAndOfPhasesWithoutAPace) {
  RemainingTime remaining;
  remaining.update(TORNWALZEN_PHASE_NEWTON, 0.0, 1, 1.0);
  EXPECT_FALSE(remaining.update(TORNWALZEN_PHASE_NEWTON, 0.5, 2, 4.9));
  EXPECT_TRUE(remaining.update(TORNWALZEN_PHASE_NEWTON, 0.5, 3, 5.0));
  EXPECT_FALSE(remaining.update(TORNWALZEN_PHASE_ORDERING, 0.5, 3, 50.0));
}

TEST(RemainingTime, IsSaidAsRoughlyAsItIsKnown) {
  EXPECT_EQ(remainingText(0.0), "about 1 s left");
  EXPECT_EQ(remainingText(7.4), "about 7 s left");
  EXPECT_EQ(remainingText(44.0), "about 40 s left");
  EXPECT_EQ(remainingText(130.0), "about 2 min left");
  EXPECT_EQ(remainingText(1500.0), "about 30 min left");
}
