// Whole runs on formed parts as users have them.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "driver/whole_run.hpp"

using namespace tornwalzen;
using namespace tornwalzen::test;

namespace {

/// Vertices and triangles of a Wavefront OBJ file; empty if the file cannot be read.
TestPart readPart(const std::string& name) {
  std::ifstream file(std::string(TORNWALZEN_PARTS) + "/" + name);
  std::vector<Point> nodes;
  std::vector<std::vector<Int>> triangles;
  for (std::string line, keyword; std::getline(file, line);) {
    std::istringstream record(line);
    record >> keyword;
    if (keyword == "v") {
      Point p{};
      record >> p.x >> p.y >> p.z;
      nodes.push_back(p);
    } else if (keyword == "f") {
      std::vector<Int> corners;
      for (std::string corner; record >> corner;) corners.push_back(std::atoi(corner.c_str()));
      triangles.push_back(corners);
    }
    keyword.clear();
  }
  return {nodes, triangles};
}

/// Holds u on the plane x = 0 and v on the plane y = 0, within a millionth of 1000 mm.
void holdOnSymmetryPlanes(TestPart& part) {
  for (std::size_t n = 0; n < static_cast<std::size_t>(part.nkno); ++n) {
    if (std::fabs(part.KNG[n]) <= 1e-3) part.ARFA[2 * n] = 0;
    if (std::fabs(part.KNG[static_cast<std::size_t>(part.nkno) + n]) <= 1e-3) part.ARFA[2 * n + 1] = 0;
  }
}

}  // namespace

TEST(RealPart, QuarterOfADrawnCupNeedsFifteenIncrementsOfTwoIterationsWithoutRepeats) {
  TestPart part = readPart("dfg_cup_quarter.obj");
  if (part.nele == 0) GTEST_SKIP() << "skipped: dfg_cup_quarter.obj is not there";
  holdOnSymmetryPlanes(part);
  const WholeRun whole(part, 1);
  ASSERT_TRUE(whole.converged);
  EXPECT_EQ(whole.increments.size(), 15u);
  std::size_t iterations = 0;
  for (const Increment& increment : whole.increments) {
    EXPECT_FALSE(increment.repeated);
    iterations += increment.maxgrad.size();
  }
  EXPECT_EQ(iterations, 30u);
}
