#include "mesh/mesh_check.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "app/refusal.hpp"

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

// A unit square of two triangles, nodes 1 to 4 counter-clockwise.
const std::vector<double> square{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
Mesh squareMesh() {
  return makeMesh(square, {1, 2, 3, 1, 3, 4});
}

std::string refused(const Mesh& mesh, bool largest = false) {
  return refusal([&] { checkMesh(mesh, largest); });
}

// A band of n quadrilaterals of two triangles each, closed to a ring; with a half twist if asked for.
Mesh ring(int n, bool twisted) {
  constexpr double pi = 3.14159265358979323846;
  Mesh mesh = makeMesh({}, {});
  for (int k = 0; k < n; ++k) {
    const double turn = 2.0 * pi * k / n, tilt = twisted ? 0.5 * turn : 0.0;
    for (const double side : {-0.3, 0.3}) {
      const double radius = 1.0 + side * std::sin(tilt);
      mesh.points.insert(mesh.points.end(),
                         {radius * std::cos(turn), radius * std::sin(turn), side * std::cos(tilt)});
    }
  }
  for (int k = 0; k < n; ++k) {
    std::int64_t a = 2 * k + 1, b = 2 * k + 2, c = 2 * ((k + 1) % n) + 1, d = c + 1;
    if (twisted && k == n - 1) std::swap(c, d);
    mesh.corners.insert(mesh.corners.end(), {a, c, b, b, c, d});
  }
  return mesh;
}

}  // namespace

TEST(MeshCheck, PassesASoundMeshUnchanged) {
  const Part part = checkMesh(squareMesh(), false);
  EXPECT_THAT(part.corners, ElementsAre(1, 2, 3, 1, 3, 4));
  EXPECT_THAT(part.fileElement, ElementsAre(1, 2));
  EXPECT_EQ(part.turned, 0);
  EXPECT_EQ(part.filePieces, 1);
  EXPECT_EQ(part.size, 1.0);
}

TEST(MeshCheck, RefusesANodeNumberOutOfRange) {
  EXPECT_EQ(refused(makeMesh(square, {1, 2, 3, 1, 3, 5})),
            "part: element 2 names node 5, but the nodes run from 1 to 4");
  EXPECT_EQ(refused(makeMesh(square, {0, 2, 3})),
            "part: element 1 names node 0, but the nodes run from 1 to 4");
}

TEST(MeshCheck, RefusesACoordinateThatIsNotFinite) {
  Mesh mesh = squareMesh();
  mesh.points[7] = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(refused(mesh), "part: node 3 (1, nan, 0) has a coordinate that is not finite");
  mesh.points[7] = -std::numeric_limits<double>::infinity();
  EXPECT_EQ(refused(mesh), "part: node 3 (1, -inf, 0) has a coordinate that is not finite");
}

TEST(MeshCheck, RefusesATriangleWithARepeatedCorner) {
  EXPECT_EQ(refused(makeMesh(square, {1, 2, 3, 1, 3, 3})), "part: element 2 (nodes 1, 3, 3) has no area");
}

TEST(MeshCheck, RefusesATriangleOnALineInSpiteOfRounding) {
  // 0.1, 0.2 and 0.3 are not exactly on a line as doubles
  EXPECT_EQ(refused(makeMesh({0.1, 0.7, 0.3, 0.2, 1.4, 0.6, 0.3, 2.1, 0.9}, {1, 2, 3})),
            "part: element 1 (nodes 1, 2, 3) has no area");
}

TEST(MeshCheck, TakesANeedleOfAThousandthOfADegree) {
  EXPECT_EQ(refused(makeMesh({0, 0, 0, 1, 0, 0, 1, 1.7e-5, 0}, {1, 2, 3})), "(not refused)");
}

TEST(MeshCheck, RefusesAnEdgeWithThreeTriangles) {
  std::vector<double> points = square;
  points.insert(points.end(), {0.5, 0.5, 1});
  EXPECT_EQ(refused(makeMesh(points, {1, 2, 3, 1, 3, 4, 3, 1, 5})),
            "part: the edge between node 1 (0, 0, 0) and node 3 (1, 1, 0) belongs to 3 triangles (elements "
            "1, 2, 3)");
}

TEST(MeshCheck, RefusesSeveralPiecesAndSaysHowMany) {
  std::vector<double> points = square;
  points.insert(points.end(), {5, 0, 0, 6, 0, 0, 5, 1, 0});
  const Mesh mesh = makeMesh(points, {5, 6, 7, 1, 2, 3, 1, 3, 4});
  EXPECT_EQ(refused(mesh),
            "part: the mesh has 2 pieces that no edge joins; the largest has 2 of 3 triangles and contains "
            "element 2 "
            "(--largest takes it alone); their nearest borders are 4 mm apart");
}

// Every triangle of the square with corners of its own, a millionth apart.
TEST(MeshCheck, OfUnjoinedTrianglesNoneIsTakenForThePart) {
  Mesh mesh = makeMesh({0, 0, 0, 1, 0, 0, 1, 1, 0, 1e-6, 0, 0, 1, 1, 1e-6, 0, 1, 0}, {1, 2, 3, 4, 5, 6});
  mesh.unit = "inch";
  const std::string sentence =
      "part: the mesh has 2 pieces that no edge joins, but node 1 (0, 0, 0) and node 4 (1e-06, 0, 0) of two "
      "of them are 1e-06 inch apart: the triangles are not joined. --weld TOL joins them, with a tolerance "
      "above that gap and below the shortest edge there, 1 inch";
  EXPECT_EQ(refused(mesh), sentence);
  EXPECT_EQ(refused(mesh, true), sentence);
}

// Two sheets of two triangles each, a millionth apart: the user may have one of them.
TEST(MeshCheck, OfUnjoinedSheetsTheLargestMayBeTaken) {
  const Mesh mesh = makeMesh({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 1.000001, 0, 0, 2, 0, 0, 1.000001, 1, 0},
                             {1, 2, 3, 1, 3, 4, 5, 6, 7});
  EXPECT_THAT(refused(mesh), testing::HasSubstr("the triangles are not joined"));
  EXPECT_EQ(refused(mesh, true), "(not refused)");
}

TEST(MeshCheck, TakesTheLargestPieceAndKeepsTheFilesNumbers) {
  std::vector<double> points = square;
  points.insert(points.end(), {5, 0, 0, 6, 0, 0, 5, 1, 0});
  const Part part = checkMesh(makeMesh(points, {5, 6, 7, 1, 2, 3, 1, 3, 4}), true);
  EXPECT_EQ(part.nodes(), 7);
  EXPECT_THAT(part.corners, ElementsAre(1, 2, 3, 1, 3, 4));
  EXPECT_THAT(part.fileElement, ElementsAre(2, 3));
  EXPECT_THAT(part.inTriangle, ElementsAre(true, true, true, true, false, false, false));
  EXPECT_EQ(part.filePieces, 2);
  EXPECT_EQ(part.fileElements, 3);
  EXPECT_EQ(part.size, 1.0);
}

TEST(MeshCheck, FaultsOfDroppedPiecesDoNotMatter) {
  std::vector<double> points = square;
  points.insert(points.end(), {5, 0, 0, 6, 0, 0});
  EXPECT_EQ(refused(makeMesh(points, {5, 6, 6, 1, 2, 3, 1, 3, 4}), true), "(not refused)");
}

TEST(MeshCheck, PiecesThatShareOnlyANodeAreSeveral) {
  const std::vector<double> bowTie{0, 0, 0, -1, -1, 0, -1, 1, 0, 1, -1, 0, 1, 1, 0};
  EXPECT_THAT(refused(makeMesh(bowTie, {1, 2, 3, 1, 4, 5})),
              testing::HasSubstr("; two of them touch in node 1 (0, 0, 0) alone"));
}

TEST(MeshCheck, TurnsTheMinorityOfTheTriangles) {
  const std::vector<double> strip{0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0, 0, 2, 0};
  const Part part = checkMesh(makeMesh(strip, {1, 3, 2, 2, 4, 3, 3, 4, 5}), false);
  EXPECT_EQ(part.turned, 1);
  EXPECT_THAT(part.corners, ElementsAre(1, 2, 3, 2, 4, 3, 3, 4, 5));
}

TEST(MeshCheck, RandomlyTurnedTrianglesComeOutConsistent) {
  Mesh mesh = ring(40, false);
  std::mt19937 random(7);
  for (std::size_t e = 0; e < mesh.elements(); ++e)
    if (random() % 3 == 0) std::swap(mesh.corners[3 * e], mesh.corners[3 * e + 1]);
  const Part part = checkMesh(mesh, false);
  // each inner edge is then run along once in each direction: the direction counts cancel
  for (std::int64_t e = 1; e <= part.elements(); ++e)
    for (std::int64_t f = e + 1; f <= part.elements(); ++f)
      for (int j = 0; j < 3; ++j)
        for (int k = 0; k < 3; ++k)
          EXPECT_FALSE(part.corner(e, j) == part.corner(f, k) &&
                       part.corner(e, (j + 1) % 3) == part.corner(f, (k + 1) % 3));
}

TEST(MeshCheck, RefusesAOneSidedSurface) {
  EXPECT_EQ(refused(ring(20, false)), "(not refused)");
  EXPECT_THAT(refused(ring(20, true)),
              testing::StartsWith(
                  "part: the triangles cannot be turned to one orientation (a one-sided surface); the "
                  "edge between node "));
}

TEST(MeshCheck, RefusesAClosedSurface) {
  const std::vector<double> tetrahedron{0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};
  EXPECT_EQ(refused(makeMesh(tetrahedron, {1, 3, 2, 1, 2, 4, 2, 3, 4, 3, 1, 4})),
            "part: the surface is closed; it has no edge and no flat blank");
}

TEST(MeshCheck, RefusesSizesPast32Bits) {
  // 3 entries per node and 12 per triangle: 3 + 12 * 178956970 is 2^31 - 5
  EXPECT_EQ(refusal([] { checkCounts("part", 1, 178956970); }), "(not refused)");
  EXPECT_EQ(refusal([] { checkCounts("part", 3, 178956970); }),
            "part: 3 nodes and 178956970 triangles are too many: the matrix could have more than 2147483647 "
            "entries");
  EXPECT_NE(refusal([] { checkCounts("part", 1u << 31, 1); }), "(not refused)");
  EXPECT_NE(refusal([] { checkCounts("part", 1, std::uint64_t{1} << 62); }), "(not refused)");
}
