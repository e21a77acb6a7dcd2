#include "mesh/mesh_census.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace host;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

Mesh meshOf(const std::vector<double>& points, const std::vector<std::int64_t>& corners) {
  Mesh mesh;
  mesh.points = points;
  mesh.corners = corners;
  return mesh;
}

// n by n squares of 1, their middle one of two triangles left out if asked for.
Mesh squares(int n, bool holed) {
  Mesh mesh;
  for (int j = 0; j <= n; ++j)
    for (int i = 0; i <= n; ++i) mesh.points.insert(mesh.points.end(), {1.0 * i, 1.0 * j, 0.0});
  for (int j = 0; j < n; ++j)
    for (int i = 0; i < n; ++i) {
      if (holed && i == n / 2 && j == n / 2) continue;
      const std::int64_t a = j * (n + 1) + i + 1, b = a + 1, c = a + n + 1, d = c + 1;
      mesh.corners.insert(mesh.corners.end(), {a, b, d, a, d, c});
    }
  return mesh;
}

}  // namespace

TEST(MeshCensus, AHoleIsASecondLoop) {
  const MeshCensus census = censusOf(squares(3, true));
  EXPECT_EQ(census.pieces, 1);
  ASSERT_EQ(census.loops.size(), 2u);
  EXPECT_DOUBLE_EQ(census.loops[0].length, 12.0);
  EXPECT_EQ(census.loops[0].firstNode, 1);
  EXPECT_DOUBLE_EQ(census.loops[1].length, 4.0);
  EXPECT_EQ(census.loops[1].edges, 4);
  EXPECT_EQ(census.loops[1].firstNode, 6);
  EXPECT_NEAR(census.smallestAngle, 45.0, 1e-9);
  EXPECT_THAT(census.low, ElementsAre(0, 0, 0));
  EXPECT_THAT(census.high, ElementsAre(3, 3, 0));
  for (const auto& list : {census.crowded, census.opposed, census.arealess, census.needles})
    EXPECT_THAT(list, IsEmpty());
}

TEST(MeshCensus, PiecesAreNumberedByTheirTriangles) {
  const MeshCensus census = censusOf(
      meshOf({0, 0, 0, 1, 0, 0, 0, 1, 0, 5, 0, 0, 6, 0, 0, 6, 1, 0, 5, 1, 0}, {1, 2, 3, 4, 5, 6, 4, 6, 7}));
  EXPECT_EQ(census.pieces, 2);
  EXPECT_THAT(census.piece, ElementsAre(2, 1, 1));
}

TEST(MeshCensus, SeesWhatTheCheckRefuses) {
  // three triangles at the edge 1-2, the second turned like the first, the last without area
  const MeshCensus crowded = censusOf(
      meshOf({0, 0, 0, 1, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 1, 2, 0, 0}, {1, 2, 3, 2, 1, 4, 1, 2, 5, 1, 2, 6}));
  EXPECT_EQ(crowded.crowdedEdges, 1);
  EXPECT_THAT(crowded.crowded, ElementsAre(0, 1, 2, 3));
  EXPECT_THAT(crowded.arealess, ElementsAre(3));
  const MeshCensus opposed = censusOf(meshOf({0, 0, 0, 1, 0, 0, 0, 1, 0, 0, -1, 0}, {1, 2, 3, 1, 2, 4}));
  EXPECT_THAT(opposed.opposed, ElementsAre(0, 1));
}

TEST(MeshCensus, NamesTheSharpestTriangle) {
  const MeshCensus census = censusOf(meshOf({0, 0, 0, 10, 0, 0, 10, 10, 0, 5, -0.1, 0}, {1, 2, 3, 2, 1, 4}));
  EXPECT_EQ(census.sharpest, 1u);
  EXPECT_NEAR(census.smallestAngle, std::atan(0.1 / 5) * 180 / std::acos(-1.0), 1e-9);
  EXPECT_THAT(census.needles, ElementsAre(1));
}
