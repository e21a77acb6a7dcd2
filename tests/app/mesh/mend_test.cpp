#include "mesh/mend.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <set>

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

// Against a set of the nodes; some triangles name a node twice or thrice.
TEST(Mend, LeavesOutAllButTheFirstOfEqualTriangles) {
  std::mt19937 random(13);
  Mesh mesh = makeMesh(std::vector<double>(3 * 9, 0.0), {});
  for (int c = 0; c < 3 * 400; ++c) mesh.corners.push_back(1 + static_cast<std::int64_t>(random() % 9));
  std::set<std::array<std::int64_t, 3>> seen;
  std::vector<std::int64_t> kept;
  for (std::size_t c = 0; c < mesh.corners.size(); c += 3) {
    std::array<std::int64_t, 3> nodes{mesh.corners[c], mesh.corners[c + 1], mesh.corners[c + 2]};
    std::sort(nodes.begin(), nodes.end());
    if (seen.insert(nodes).second) kept.insert(kept.end(), &mesh.corners[c], &mesh.corners[c] + 3);
  }
  mendMesh({}, mesh);
  EXPECT_LT(kept.size(), 3 * 400u);
  EXPECT_EQ(mesh.corners, kept);
}

TEST(Mend, FindsTheNeedlesThatTheAnglesTell) {
  std::mt19937 random(17);
  std::uniform_real_distribution<double> degrees(4.5, 5.5), side(0.3, 3.0);
  for (const double scale : {1e-140, 1e-3, 1.0, 1e6, 1e140}) {
    Mesh mesh = makeMesh({}, {});
    for (int e = 0; e < 500; ++e) {  // an angle about the limit between sides of any ratio, turned at will
      const double angle = degrees(random) * std::acos(-1.0) / 180.0, a = scale * side(random),
                   b = scale * side(random);
      const double turn = side(random);
      mesh.points.insert(mesh.points.end(), {0.0, 0.0, 0.0, a * std::cos(turn), a * std::sin(turn), 0.0,
                                             b * std::cos(turn + angle), b * std::sin(turn + angle), 0.0});
      for (int k = 1; k <= 3; ++k) mesh.corners.push_back(3 * e + k);
    }
    std::vector<std::size_t> needles;
    for (std::size_t e = 0; e < mesh.elements(); ++e)
      if (smallestAngle(mesh, e) < 5.0) needles.push_back(e);
    EXPECT_GT(needles.size(), 100u) << scale;
    EXPECT_LT(needles.size(), 450u) << scale;
    EXPECT_EQ(needlesOf(mesh), needles) << scale;
  }
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
