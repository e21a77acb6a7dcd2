// The drawn cup against the forward simulation that it comes from.
#include "verification/drawn_cup.hpp"

#include <gtest/gtest.h>

#include <filesystem>

#include "tornwalzen_ext.h"

namespace verification {
namespace {

class DrawnCupTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(TORNWALZEN_PARTS))
      GTEST_SKIP() << "skipped: there is no folder " TORNWALZEN_PARTS;
    ASSERT_EQ(tornwalzen_reset(), 0);
    cup = readDrawnCup(TORNWALZEN_PARTS);
    ASSERT_EQ(cup.thickness.size(), static_cast<std::size_t>(cup.part.elements()));
  }
  void TearDown() override { tornwalzen_reset(); }

  CupErrors runAndCompare(double r, int reference) {
    EXPECT_EQ(tornwalzen_set_normal_anisotropy(r), 0);
    EXPECT_EQ(tornwalzen_set_energy_reference(reference), 0);
    testing::internal::CaptureStdout();
    const host_kit::WholeRun run(cup.part, 1);
    testing::internal::GetCapturedStdout();
    TornwalzenReport report;
    report.size = sizeof report;
    EXPECT_EQ(tornwalzen_get_report(&report), 0);
    EXPECT_EQ(report.converged, 1);
    EXPECT_EQ(report.increments, 15);
    EXPECT_EQ(report.newton_iterations, 30);
    EXPECT_EQ(report.repeats, 0);
    return compareCup(cup, run.RX);
  }
  DrawnCup cup;
};

// The limits are a few percent of the deviations themselves: another order of the sums moves them in the last
// digits only, another end of the Newton iteration (within its tolerance) by some 0.01 mm.
constexpr double edgeLimit = 0.02;         // mm
constexpr double thicknessLimit = 0.0005;  // mm

TEST_F(DrawnCupTest, FixedInterface) {
  const CupErrors errors = runAndCompare(1.0, 0);
  EXPECT_NEAR(errors.edgeMean, 0.60, edgeLimit);
  EXPECT_NEAR(errors.edgeLargest, 0.87, edgeLimit);
  EXPECT_NEAR(errors.thicknessRms, 0.0177, thicknessLimit);
  EXPECT_GE(errors.correlation, 0.90);
}

TEST_F(DrawnCupTest, PartAsReferenceOfTheEnergy) {
  const CupErrors errors = runAndCompare(1.0, 1);
  EXPECT_NEAR(errors.edgeMean, 0.41, edgeLimit);
  EXPECT_NEAR(errors.edgeLargest, 0.63, edgeLimit);
}

TEST_F(DrawnCupTest, PartAsReferenceAndNormalAnisotropy) {
  const CupErrors errors = runAndCompare(1.5, 1);
  EXPECT_NEAR(errors.edgeMean, 0.40, edgeLimit);
  EXPECT_NEAR(errors.edgeLargest, 0.62, edgeLimit);
  EXPECT_NEAR(errors.thicknessRms, 0.0150, thicknessLimit);
}

}  // namespace
}  // namespace verification
