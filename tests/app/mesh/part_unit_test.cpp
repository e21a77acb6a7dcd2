#include "mesh/part_unit.hpp"

#include <gtest/gtest.h>

#include "app/run/sample_run.hpp"

using namespace host;

TEST(PartUnit, PartGoesToMillimetresAndItsBlankBack) {
  SampleRun sample;
  const Unit inch = unitOf("inch");
  const Part part = inMillimetres(sample.part, inch);
  EXPECT_EQ(part.points[6], 9.0 * 25.4);
  EXPECT_EQ(part.size, sample.part.size * 25.4);
  EXPECT_EQ(part.corners, sample.part.corners);
  EXPECT_EQ(part.unit, "mm");
  sample.unit = inch;
  sample.run.RX = {25.4, -12.7, 0, 0, 0, 0, 0, 0, 0, 0};
  sample.compute();
  EXPECT_EQ(sample.results.blankPoints[0], 1.0);
  EXPECT_EQ(sample.results.blankPoints[1], -0.5);
}

TEST(PartUnit, UnusualSizesAreDoubted) {
  SampleRun sample;
  const auto warningAt = [&](double size, const char* unit) {
    sample.part.size = size;
    return sizeWarning(sample.part, unitOf(unit));
  };
  EXPECT_EQ(warningAt(5.0, "mm"), "");
  EXPECT_EQ(warningAt(20.0, "m"), "");
  EXPECT_EQ(warningAt(4.5, "mm"),
            "the longest side of the part is 4.5 mm, unusually small for a drawn part; is --unit mm right?");
  EXPECT_EQ(
      warningAt(150.0, "m"),
      "the longest side of the part is 150000 mm, unusually large for a drawn part; is --unit m right?");
}
