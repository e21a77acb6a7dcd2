#include "mesh/mend.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mesh/submesh.hpp"

using namespace host;
using testing::ElementsAre;

namespace {

Mesh makeMesh(const std::vector<double>& points, const std::vector<std::int64_t>& corners) {
  Mesh mesh;
  mesh.file = "part";
  mesh.points = points;
  mesh.corners = corners;
  return mesh;
}

// Two squares of 1 mm side by side, the second a gap away from the first.
Mesh squaresWithGap(double gap) {
  const double x = 1.0 + gap;
  return makeMesh({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, x, 0, 0, 2, 0, 0, 2, 1, 0, x, 1, 0},
                  {1, 2, 3, 1, 3, 4, 5, 6, 7, 5, 7, 8});
}

ReadOptions weldWithin(double tolerance) {
  ReadOptions options;
  options.weld = tolerance;
  return options;
}

}  // namespace

TEST(Mend, LeavesOutDuplicateTrianglesAndTells) {
  Mesh mesh = makeMesh({0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0}, {1, 2, 3, 2, 4, 3, 3, 2, 1, 3, 1, 2});
  mesh.ids.element = {11, 12, 13, 14};
  mesh.ids.part = {1, 1, 2, 2};
  mendMesh({}, mesh);
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 3, 2, 4, 3));
  EXPECT_THAT(mesh.ids.element, ElementsAre(11, 12));
  EXPECT_THAT(mesh.ids.part, ElementsAre(1, 1));
  EXPECT_THAT(mesh.remarks,
              ElementsAre("left out 2 triangles with the three nodes of another (elements 13, 14)"));
}

TEST(Mend, ProposesAWeldWithItsValueWhereSeamsLieClose) {
  Mesh mesh = squaresWithGap(3e-4);
  proposeMending({}, mesh);
  ASSERT_EQ(mesh.remarks.size(), 1u);
  EXPECT_THAT(
      mesh.remarks[0],
      testing::StartsWith("2 pairs of border nodes lie closer together than a thousandth of their edges "
                          "(first nodes 2 and 5, 0.0003 apart); --weld 3e-04 joins such seams"));
  Mesh apart = squaresWithGap(1.5e-3);
  proposeMending({}, apart);
  EXPECT_TRUE(apart.remarks.empty());
}

TEST(Mend, ProposesAWeldWhereNodesCoincide) {
  Mesh mesh = squaresWithGap(0.0);
  proposeMending({}, mesh);
  ASSERT_EQ(mesh.remarks.size(), 1u);
  EXPECT_THAT(mesh.remarks[0], testing::EndsWith("0 apart); --weld 1e-06 joins such seams"));
}

TEST(Mend, WeldsSeamsToTheFirstOfTheirNodes) {
  Mesh mesh = squaresWithGap(3e-4);
  mendMesh(weldWithin(4e-4), mesh);
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 3, 1, 3, 4, 2, 6, 7, 2, 7, 3));
  EXPECT_THAT(mesh.remarks, ElementsAre("welded 2 nodes of the border to others within 4e-04"));
  proposeMending({}, mesh);
  EXPECT_EQ(mesh.remarks.size(), 1u);  // nothing left to propose
}

TEST(Mend, LeavesOutWhatAWeldCollapses) {
  // a sliver closes the gap at one end
  Mesh mesh = squaresWithGap(3e-4);
  mesh.corners.insert(mesh.corners.end(), {2, 5, 3});
  mendMesh(weldWithin(4e-4), mesh);
  EXPECT_EQ(mesh.elements(), 4u);
  EXPECT_THAT(mesh.remarks,
              ElementsAre("welded 2 nodes of the border to others within 4e-04; left out 1 triangle "
                          "that collapsed by it (element 5)"));
}

TEST(Mend, TellsWhereNothingIsWelded) {
  Mesh mesh = squaresWithGap(0.5);
  mendMesh(weldWithin(0.01), mesh);
  EXPECT_THAT(mesh.remarks, ElementsAre("--weld 0.01: no border nodes lie that close together"));
}

TEST(Mend, ProposesToMeshAnewWhereTrianglesAreNeedles) {
  Mesh mesh = makeMesh({0, 0, 0, 1, 0, 0, 1, 0.05, 0, 0, 1, 0}, {1, 2, 3, 1, 3, 4});
  proposeMending({}, mesh);
  EXPECT_THAT(mesh.remarks,
              ElementsAre("1 triangle has a corner below 5 degrees (element 1); --remesh 0.8 meshes the "
                          "part anew"));
}

TEST(Mend, SoundMeshesNameOnlyNodesThatTheyHave) {
  Mesh mesh = squaresWithGap(1.0);
  EXPECT_TRUE(isSound(mesh));
  mesh.corners[3] = 9;
  EXPECT_FALSE(isSound(mesh));
  mesh.corners[3] = 0;
  EXPECT_FALSE(isSound(mesh));
  mesh.corners[3] = 1;
  mesh.points[0] = 1.0 / 0.0;
  EXPECT_FALSE(isSound(mesh));
}
