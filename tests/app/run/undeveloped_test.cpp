#include "run/undeveloped.hpp"

#include <gtest/gtest.h>

#include "app/run/sample_run.hpp"

using namespace host;

namespace {

// The roof, whose second triangle (nodes 1, 4, 5; area sqrt(3)/2) has its raised node at v in the starting blank.
SampleRun rested(double v) {
  SampleRun sample;
  sample.run.report.reason = TORNWALZEN_NOT_DEVELOPED;
  sample.run.startingBlank = {0, 0, 1, 0, 9, 9, 1, 1, v, v};
  sample.run.startingBlank[8] -= 0.01;  // a corner on the diagonal, moved off it by 0.01 to the left
  sample.hold.ARFA.assign(sample.hold.ARFA.size(), 1);
  return sample;
}

const char* const cure =
    "; turn the part so that z is its drawing direction and look there for an undercut, a wall that leans "
    "over, or "
    "slivers of the mesh";

}  // namespace

TEST(Undeveloped, ASqueezedTriangleIsNotCalledInverted) {
  const SampleRun sample = rested(0.5);
  // half of 0.01 over sqrt(3)/2
  EXPECT_EQ(whyNotDeveloped(sample.part, sample.hold, sample.run, 1.0),
            std::string(
                "the part could not be developed onto the plane: no triangle of the starting blank is "
                "inverted, but element 2 at (0.333, 0.667, 0.333) mm stayed at 0.6 % of its area, too close "
                "to a line") +
                cure);
}

TEST(Undeveloped, InvertedTrianglesAreCountedAndTheWorstIsNamed) {
  SampleRun sample = rested(0.5);
  sample.run.startingBlank[8] = 1.0;  // to the other side of the diagonal
  EXPECT_EQ(
      whyNotDeveloped(sample.part, sample.hold, sample.run, 1.0),
      std::string("the part could not be developed onto the plane: 1 triangle of the starting blank stayed "
                  "inverted or closed, worst element 2 at (0.333, 0.667, 0.333) mm (-28.9 % of its area)") +
          cure);
}

TEST(Undeveloped, PlaceAndRatioAreThoseOfTheUsersUnit) {
  SampleRun sample = rested(0.5);
  sample.part.unit = "inch";
  for (double& position : sample.run.startingBlank) position *= 25.4;  // the run is made in mm
  EXPECT_NE(whyNotDeveloped(sample.part, sample.hold, sample.run, 25.4)
                .find("element 2 at (0.333, 0.667, 0.333) inch stayed at 0.6 % of its area"),
            std::string::npos);
}

TEST(Undeveloped, HeldNodesAreBlamedWhereTheyAreTheCause) {
  SampleRun sample = rested(0.5);
  sample.hold.ARFA[0] = sample.hold.ARFA[7] = 0;  // u of node 1, v of node 4
  EXPECT_NE(whyNotDeveloped(sample.part, sample.hold, sample.run, 1.0)
                .find("; its nodes are held, so hold fewer unknowns there, or try --hold auto"),
            std::string::npos);
}
