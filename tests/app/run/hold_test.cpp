#include "run/hold.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/refusal.hpp"
#include "app/scratch_folder.hpp"

using namespace host;
using testing::ElementsAre;

namespace {

// A plate of nx by ny squares of side 1, moved by (x0, y0); nodes row by row from the lower left. One more
// node that no triangle uses stands at the end, on both planes.
Part plate(int nx, int ny, double x0, double y0) {
  Mesh mesh;
  mesh.file = "plate";
  for (int j = 0; j <= ny; ++j)
    for (int i = 0; i <= nx; ++i) mesh.points.insert(mesh.points.end(), {x0 + i, y0 + j, 0.1 * i * i});
  mesh.points.insert(mesh.points.end(), {0, 0, 0});
  for (int j = 0; j < ny; ++j)
    for (int i = 0; i < nx; ++i) {
      const std::int64_t a = j * (nx + 1) + i + 1, b = a + 1, c = a + nx + 1, d = c + 1;
      mesh.corners.insert(mesh.corners.end(), {a, b, d, a, d, c});
    }
  return checkMesh(mesh, false);
}

// The equation numbers that are held, without those of the unused last node.
std::vector<int> heldOf(const Part& part, const Hold& hold) {
  std::vector<int> numbers;
  for (std::size_t k = 0; k + 2 < hold.ARFA.size(); ++k)
    if (hold.ARFA[k] == 0) numbers.push_back(static_cast<int>(k) + 1);
  EXPECT_EQ(numbers.size(), static_cast<std::size_t>(hold.held));
  EXPECT_EQ(hold.ARFA.size(), static_cast<std::size_t>(2 * part.nodes()));
  return numbers;
}

std::string refused(const Part& part, const std::string& rule) {
  return refusal([&] { holdUnknowns(part, rule); });
}

}  // namespace

TEST(HoldAuto, HoldsTheMiddleAndTheFarthestInXOfALongPlate) {
  const Part part = plate(4, 2, -2.0, -1.0);  // centroid a little right of the middle: the plate rises there
  // node 8 is the middle; of 1, 6 and 11, all farthest in x, node 6 is the one level with it
  EXPECT_THAT(heldOf(part, holdUnknowns(part, "auto")), ElementsAre(12, 15, 16));
}

TEST(HoldAuto, HoldsUOfTheFarthestInYOfATallPlate) {
  const Part part =
      plate(2, 4, 10.0, 20.0);  // middle: node 8; farthest in y: row 0, whose node 2 is level with it
  EXPECT_THAT(heldOf(part, holdUnknowns(part, "auto")), ElementsAre(3, 15, 16));
}

TEST(HoldAuto, NodesAsFarButForRoundingCountAsEquallyFar) {
  Mesh mesh;
  mesh.file = "plate";
  for (int j = 0; j <= 2; ++j)
    for (int i = 0; i <= 4; ++i) mesh.points.insert(mesh.points.end(), {i - 2.0, j - 1.0, 0.0});
  mesh.points[0] -= 1e-7;  // the corner, node 1; node 6 is level with the middle, node 8
  for (int j = 0; j < 2; ++j)
    for (int i = 0; i < 4; ++i) {
      const std::int64_t a = j * 5 + i + 1;
      mesh.corners.insert(mesh.corners.end(), {a, a + 1, a + 6, a, a + 6, a + 5});
    }
  const Hold hold = holdUnknowns(checkMesh(mesh, false), "auto");
  EXPECT_EQ(hold.ARFA[2 * 6 - 1], 0);
  EXPECT_EQ(hold.ARFA[2 * 1 - 1], 1);
}

TEST(HoldAuto, AFarCornerIsHeldOnlyWhereNoEdgeIsAsFar) {
  Mesh mesh;
  mesh.file = "rhombus";
  mesh.points = {0, 0, 0, 1, 0, 0, 1.2, 1, 0, 0, 1, 0, 3, 1.1, 0};  // the last one sticks out
  mesh.corners = {1, 2, 3, 1, 3, 4, 2, 5, 3};
  const Part part = checkMesh(mesh, false);
  EXPECT_EQ(holdUnknowns(part, "auto").ARFA[2 * 5 - 1], 0);
}

TEST(Hold, HoldsNodesInNoTriangle) {
  const Part part = plate(2, 2, 0.0, 0.0);
  const Hold hold = holdUnknowns(part, "auto");
  EXPECT_EQ(hold.ARFA[18], 0);
  EXPECT_EQ(hold.ARFA[19], 0);
  EXPECT_EQ(hold.held, 3);
}

TEST(HoldPlanes, X0HoldsUOnThePlaneAndOneV) {
  const Part part = plate(2, 2, 0.0, -1.0);  // nodes 1, 4, 7 on x = 0; 4 is nearest the centroid
  EXPECT_THAT(heldOf(part, holdUnknowns(part, "x0")), ElementsAre(1, 7, 8, 13));
}

TEST(HoldPlanes, Y0HoldsVOnThePlaneAndOneU) {
  const Part part = plate(2, 2, -1.0, 0.0);  // nodes 1, 2, 3 on y = 0; 2 or 3 nearest the centroid
  const std::vector<int> held = heldOf(part, holdUnknowns(part, "y0"));
  EXPECT_THAT(held, ElementsAre(2, 3, 4, 6));
}

TEST(HoldPlanes, BothPlanesHoldNothingElse) {
  const Part part = plate(2, 2, 0.0, 0.0);
  EXPECT_THAT(heldOf(part, holdUnknowns(part, "x0,y0")), ElementsAre(1, 2, 4, 6, 7, 13));
  EXPECT_EQ(holdUnknowns(part, "y0,x0").ARFA, holdUnknowns(part, "x0,y0").ARFA);
}

TEST(HoldPlanes, TakeNodesWithinAMillionthOfTheSize) {
  EXPECT_EQ(heldOf(plate(2, 2, 1.9e-6, 0.0), holdUnknowns(plate(2, 2, 1.9e-6, 0.0), "x0")).size(), 4u);
  EXPECT_EQ(refused(plate(2, 2, 2.1e-6, 0.0), "x0"),
            "--hold x0: no node lies on the plane x = 0; the nearest is 2.1e-06 mm away");
}

TEST(HoldPlanes, SayHowFarTheNearestNodeIs) {
  EXPECT_EQ(refused(plate(2, 2, 0.0, 0.5), "x0,y0"),
            "--hold y0: no node lies on the plane y = 0; the nearest is 0.5 mm away");
}

TEST(HoldFile, HoldsTheEquationsListed) {
  const ScratchFolder folder;
  const std::string list = folder.write("held", "# corner\n1\n\n 2 \r\n6\n6");
  const Part part = plate(2, 2, 0.0, 0.0);
  EXPECT_THAT(heldOf(part, holdUnknowns(part, list)), ElementsAre(1, 2, 6));
}

TEST(HoldFile, NamesTheLineThatIsWrong) {
  const ScratchFolder folder;
  const Part part = plate(2, 2, 0.0, 0.0);
  const std::string word = folder.write("word", "1\ntwo\n"), two = folder.write("two", "1 2\n"),
                    far = folder.write("far", "1\n2\n21\n"), zero = folder.write("zero", "0\n");
  EXPECT_EQ(refused(part, word), word + ", line 2: one equation number expected, found \"two\"");
  EXPECT_EQ(refused(part, two), two + ", line 1: one equation number expected, found \"1 2\"");
  EXPECT_EQ(refused(part, far), far + ", line 3: equation number 21 is out of range; the part has 20");
  EXPECT_EQ(refused(part, zero), zero + ", line 1: equation number 0 is out of range; the part has 20");
}

TEST(HoldFile, SaysThatTheFileIsMissing) {
  EXPECT_EQ(refused(plate(2, 2, 0.0, 0.0), "nowhere/held"),
            "cannot read nowhere/held: No such file or directory");
}

TEST(Hold, RefusesABlankThatCanStillMove) {
  const ScratchFolder folder;
  const Part part = plate(2, 2, 0.0, 0.0);
  const std::string onlyV = folder.write("v", "2\n6\n"), onlyU = folder.write("u", "1\n13\n"),
                    onePoint = folder.write("p", "1\n2\n"), line = folder.write("l", "1\n3\n2\n8\n");
  EXPECT_EQ(refused(part, onlyV), "--hold " + onlyV + ": the blank can still move in x; no u is held");
  EXPECT_EQ(refused(part, onlyU), "--hold " + onlyU + ": the blank can still move in y; no v is held");
  const std::string rotates =
      ": the blank can still rotate; all held u have the same y and all held v the same x";
  EXPECT_EQ(refused(part, onePoint), "--hold " + onePoint + rotates);
  EXPECT_EQ(refused(part, line), "--hold " + line + rotates);  // u along one row, v along one column
}
