// Developable sheets at a coarse mesh: with the host program's defaults their blanks are exact.
#include "verification/developments.hpp"

#include <gtest/gtest.h>

namespace verification {
namespace {

class Developments : public ::testing::TestWithParam<int> {};  // the flow curve

TEST_P(Developments, EndWithinAHundredthOfAMillimetreForFewMoreIterations) {
  int usual = 0, tight = 0;
  for (const Development& development : developments()) {
    shapes::MeshChoice choice;
    choice.size = 5.0;
    const shapes::Sheet sheet = shapes::makeShape(development.shape, choice, development.changes);
    testing::internal::CaptureStdout();
    const Developed fixed = develop(sheet, GetParam(), true, {1.0, 1.0});
    const Developed host = developAsTheHost(sheet, GetParam());
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(host.report.converged, 1) << development.name;
    EXPECT_LE(host.error, 0.01) << development.name;
    EXPECT_GT(fixed.error, host.error) << development.name;
    // an increment that is repeated differs on its way, not only at its end
    if (host.runs == 1 && host.report.repeats == fixed.report.repeats) {
      usual += fixed.report.newton_iterations;
      tight += host.report.newton_iterations;
      EXPECT_LE(host.report.newton_iterations, fixed.report.newton_iterations + 4) << development.name;
    }
  }
  EXPECT_GT(usual, 60) << "at least two parts to compare";
  EXPECT_LE(tight, 1.1 * usual);
}

INSTANTIATE_TEST_SUITE_P(Curve, Developments, ::testing::Values(0, 1, 2));

}  // namespace
}  // namespace verification
