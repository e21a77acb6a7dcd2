#include "result/results.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "app/run/sample_run.hpp"

using namespace host;

// The second triangle of the roof is raised by 1 over a side of sqrt(2): its part area is sqrt(3)/2, its
// blank 1/2.
TEST(Results, ThicknessFollowsFromTheAreas) {
  const SampleRun sample;
  const Results& results = sample.results;
  EXPECT_DOUBLE_EQ(results.partArea[0], 0.5);
  EXPECT_DOUBLE_EQ(results.partArea[1], std::sqrt(3.0) / 2);
  EXPECT_DOUBLE_EQ(results.blankArea[1], 0.5);
  EXPECT_DOUBLE_EQ(results.thicknessRatio[1], 1 / std::sqrt(3.0));
  EXPECT_DOUBLE_EQ(results.thicknessStrain[1], -0.5 * std::log(3.0));
  EXPECT_EQ(results.thicknessStrain[0], 0.0);
  EXPECT_EQ(results.thinnest, 2);
  EXPECT_EQ(results.thickest, 1);
  EXPECT_EQ(results.folded, 0);
}

TEST(Results, TotalsLeaveOutNodesInNoTriangle) {
  const SampleRun sample;
  EXPECT_DOUBLE_EQ(sample.results.blankAreaTotal, 1.0);
  EXPECT_EQ(sample.results.blankSizeX, 1.0);
  EXPECT_EQ(sample.results.blankSizeY, 1.0);
}

TEST(Results, NodeValuesAreMeansWeighedByPartArea) {
  const SampleRun sample;
  const double strain = -0.5 * std::log(3.0), raised = std::sqrt(3.0) / 2;
  EXPECT_DOUBLE_EQ(sample.results.nodeThicknessStrain[0], strain * raised / (raised + 0.5));
  EXPECT_DOUBLE_EQ(sample.results.nodeThicknessStrain[1], 0.0);
  EXPECT_DOUBLE_EQ(sample.results.nodeThicknessStrain[4], strain);
  EXPECT_TRUE(std::isnan(sample.results.nodeThicknessStrain[2]));
}

TEST(Results, DisplacementLeadsFromTheBlankToThePart) {
  const SampleRun sample;
  EXPECT_EQ(sample.results.displacement[14], 1.0);
  EXPECT_EQ(sample.results.displacement[0], 0.0);
}

TEST(Results, LibraryValuesStandInTheirColumns) {
  const SampleRun sample;
  EXPECT_THAT(sample.results.minusTraceE, testing::ElementsAre(0.1, 0.3));
  EXPECT_THAT(sample.results.density, testing::ElementsAre(0.2, 0.4));
  EXPECT_THAT(sample.results.smallestAngle, testing::ElementsAre(45, 30));
}

TEST(Results, FoldedTrianglesAreCountedAndHaveNoThickness) {
  SampleRun sample;
  sample.run.RX[8] = 2.0;  // node 5 crosses to the other side of the diagonal
  sample.run.RX[9] = 0.0;
  sample.compute();
  EXPECT_EQ(sample.results.folded, 1);
  EXPECT_TRUE(std::isnan(sample.results.thicknessStrain[1]));
  EXPECT_EQ(sample.results.thinnest, 1);
}

TEST(Results, ABlankWithANanIsNoBlank) {
  SampleRun sample;
  EXPECT_TRUE(blankIsFinite(sample.run));
  sample.run.RX[3] = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(blankIsFinite(sample.run));
}
