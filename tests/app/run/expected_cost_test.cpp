#include "run/expected_cost.hpp"

#include <gtest/gtest.h>

using namespace host;

TEST(ExpectedCost, LiesWithinAFifthOfWhatWasMeasured) {
  struct Measured {
    std::int64_t elements;
    double seconds, megabytes;
  };
  // user time and peak of a square cup and an S rail, means
  for (const Measured& run : {Measured{5112, 0.08, 12.3}, Measured{19728, 0.355, 30.5},
                              Measured{79364, 1.585, 108.4}, Measured{199900, 4.7, 283.6}}) {
    const ExpectedCost cost = expectedCost(run.elements);
    EXPECT_NEAR(cost.seconds / run.seconds, 1.0, 0.2) << run.elements;
    EXPECT_NEAR(cost.megabytes / run.megabytes, 1.0, 0.2) << run.elements;
  }
}

TEST(ExpectedCost, OfNothingIsTheProgramAlone) {
  EXPECT_EQ(expectedCost(0).seconds, 0.0);
  EXPECT_GT(expectedCost(0).megabytes, 0.0);
}
