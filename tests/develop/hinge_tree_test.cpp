// Rotations carried over hinges.
#include "develop/hinge_tree.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "develop/mean_normal.hpp"
#include "develop/test_part.hpp"

namespace tornwalzen::test {
namespace {

struct Sheet {
  TestPart part;
  OwnArray<Int> twin{"TWIN"};
  std::vector<Int> known;
  std::vector<double> normals, angle;

  explicit Sheet(TestPart p) : part(std::move(p)) {
    const auto n = static_cast<std::size_t>(part.nele);
    known.assign(n, 0), normals.resize(3 * n), angle.assign(n, 0.0);
    EXPECT_TRUE(pairHalfEdges(mesh(), twin));
    for (Int e = 1; e <= part.nele; ++e) {
      double S[3];
      areaNormal(mesh(), e, S);
      for (std::size_t i = 0; i < 3; ++i) normals[3 * static_cast<std::size_t>(e - 1) + i] = S[i];
    }
  }
  PartMesh mesh() { return {part.arrays().KNG, part.arrays().INTA, part.nkno, part.nele}; }
  bool carry() {
    return carryRotations(mesh(), twin.vector(), {"NORMALS", normals.data(), 3, part.nele},
                          {"KNOWN", known.data(), part.nele}, {"ANGLE", angle.data(), part.nele});
  }
};

/// A strip of cells along an arc in the x-z plane, so that it turns by `turn` radians; width and cells of 10 mm.
TestPart arcStrip(Int cells, double turn) {
  std::vector<Point> nodes;
  double x = 0.0, z = 0.0;
  for (Int c = 0; c <= cells; ++c) {
    nodes.push_back({x, 0.0, z});
    nodes.push_back({x, 10.0, z});
    const double direction = turn * c / cells;
    x += 10.0 * std::cos(direction), z += 10.0 * std::sin(direction);
  }
  std::vector<std::vector<Int>> triangles;
  for (Int c = 0; c < cells; ++c) {
    const Int a = 2 * c + 1, b = a + 2;
    triangles.push_back({a, b, b + 1});
    triangles.push_back({a, b + 1, a + 1});
  }
  return {nodes, triangles};
}

TEST(Patch, TheLargestOneIsFoundWithItsTriangles) {
  // a strip of 5 cells that is bent by 60 degrees between the second and the third
  std::vector<Point> nodes;
  for (int c = 0; c <= 5; ++c)
    for (const double y : {0.0, 10.0})
      nodes.push_back(c <= 2 ? Point{10.0 * c, y, 0.0}
                             : Point{20.0 + 5.0 * (c - 2), y, 8.660254037844386 * (c - 2)});
  std::vector<std::vector<Int>> triangles;
  for (Int c = 0; c < 5; ++c) {
    const Int a = 2 * c + 1, b = a + 2;
    triangles.push_back({a, b, b + 1});
    triangles.push_back({a, b + 1, a + 1});
  }
  Sheet sheet({nodes, triangles});
  MeanNormal R;
  OwnArray<Int> PATCH("PATCH");
  Int first;
  ASSERT_TRUE(findLargestPatch(sheet.mesh(), R, PATCH, first));
  EXPECT_TRUE(R.fromPatch);
  EXPECT_EQ(first, 5);
  EXPECT_NEAR(R.N[2], 0.5, 1e-12);
  for (Int e = 1; e <= 10; ++e) EXPECT_EQ(PATCH.vector()(e), e <= 4 ? 1 : 5);
}

TEST(Hinges, AStripUnrollsExactly) {
  Sheet sheet(arcStrip(12, 4.0));
  sheet.known[0] = 1;
  sheet.angle[0] = 0.25;
  ASSERT_TRUE(sheet.carry());
  EXPECT_EQ(std::count(sheet.known.begin(), sheet.known.end(), 1), sheet.part.nele);
  // triangles a b c lie with their first edge along the strip, a c d with theirs along the diagonal
  const double pi = 3.14159265358979323846;
  for (std::size_t e = 0; e < sheet.angle.size(); ++e) {
    const double expected = e % 2 == 0 ? 0.25 : 0.25 + pi / 4;
    EXPECT_NEAR(std::remainder(sheet.angle[e] - expected, 2 * pi), 0.0, 1e-12) << e;
  }
}

TEST(Hinges, TheFlatterWayIsTaken) {
  // a ring of four cells about a corner of a box cannot be opened flat; the way over the flat edges wins
  const std::vector<Point> nodes{{0, 0, 0},   {10, 0, 0},   {10, 10, 0}, {0, 10, 0},
                                 {-10, 0, 0}, {-10, 10, 0}, {0, 20, 3}};
  Sheet sheet({nodes, {{1, 2, 3}, {1, 3, 4}, {5, 1, 4}, {5, 4, 6}, {4, 3, 7}, {6, 4, 7}}});
  sheet.known[0] = 1;
  sheet.angle[0] = 0.0;
  ASSERT_TRUE(sheet.carry());
  // triangle 4 is reached in the plane: its first edge 5-4 rises at 45 degrees
  EXPECT_NEAR(std::remainder(sheet.angle[3] - std::atan2(10.0, 10.0), 6.283185307179586), 0.0, 1e-12);
}

TEST(Hinges, APieceWithoutAWayStaysUnknown) {
  std::vector<Point> nodes{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {5, 0, 0}, {6, 0, 0}, {5, 1, 0}};
  Sheet sheet({nodes, {{1, 2, 3}, {4, 5, 6}}});
  sheet.known[0] = 1;
  sheet.angle[1] = 9.0;
  ASSERT_TRUE(sheet.carry());
  EXPECT_EQ(sheet.known[1], 0);
  EXPECT_EQ(sheet.angle[1], 9.0);
}

}  // namespace
}  // namespace tornwalzen::test
