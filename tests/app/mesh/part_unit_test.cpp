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

TEST(PartUnit, GuessesAtAnotherUnit) {
  EXPECT_EQ(unitGuess(500.0, 0.0, unitOf("mm")), "");
  EXPECT_EQ(unitGuess(500.0, 1.0, unitOf("mm")), "");
  EXPECT_EQ(unitGuess(30.0, 1.0, unitOf("mm")), "");  // small, and as thick as sheet is
  EXPECT_EQ(unitGuess(12.0, 0.0, unitOf("mm")),
            "with the lengths in mm the part is 12 mm across; 304.8 mm if they are inch (--unit inch)");
  EXPECT_EQ(
      unitGuess(12.0, 0.04, unitOf("mm")),
      "with the lengths in mm the part is 12 mm across and 0.04 mm thick; 304.8 mm if they are inch (--unit "
      "inch), or 120 mm if they are cm (--unit cm), or 12000 mm if they are m (--unit m)");
  EXPECT_EQ(unitGuess(300.0, 0.0, unitOf("m")),
            "with the lengths in m the part is 300000 mm across; 300 mm if they are mm (--unit mm), or 7620 "
            "mm if they "
            "are inch (--unit inch), or 3000 mm if they are cm (--unit cm)");
  EXPECT_EQ(unitGuess(1e9, 0.0, unitOf("mm")), "");  // no unit makes sense
}
