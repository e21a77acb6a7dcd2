#include "run/expected_cost.hpp"

#include <gtest/gtest.h>

#include <cmath>

using namespace host;

TEST(ExpectedCost, LiesNearWhatWasMeasured) {
  struct Measured {
    std::int64_t elements;
    double seconds, megabytes;
  };
  // square cup, S rail, half pipe, bonnet panel (two starts), rectangular cup, dome
  for (const Measured& run :
       {Measured{5256, 0.093, 13.5}, Measured{50424, 0.899, 83.1}, Measured{199160, 3.888, 324.1},
        Measured{4968, 0.070, 12.6}, Measured{52224, 0.989, 71.0}, Measured{200640, 4.068, 268.7},
        Measured{4928, 0.060, 12.7}, Measured{49840, 0.487, 69.9}, Measured{199360, 2.412, 267.0},
        Measured{4049, 0.082, 12.3}, Measured{64784, 1.992, 114.8}, Measured{22050, 0.393, 39.6},
        Measured{88200, 1.775, 145.7}, Measured{6458, 0.094, 15.5}, Measured{103328, 1.984, 181.9}}) {
    const ExpectedCost cost = expectedCost(run.elements);
    EXPECT_LT(std::fabs(std::log(cost.seconds / run.seconds)), std::log(1.95)) << run.elements;
    EXPECT_LT(std::fabs(std::log(cost.megabytes / run.megabytes)), std::log(1.25)) << run.elements;
  }
}

TEST(ExpectedCost, OfNothingIsTheProgramAlone) {
  EXPECT_EQ(expectedCost(0).seconds, 0.0);
  EXPECT_GT(expectedCost(0).megabytes, 0.0);
}
