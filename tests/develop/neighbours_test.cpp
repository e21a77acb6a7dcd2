// Shared edges, the attitude of the part, and rotations carried over hinges.
#include "develop/neighbours.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "develop/hinge_tree.hpp"
#include "develop/part_attitude.hpp"
#include "develop/test_part.hpp"

namespace tornwalzen::test {
namespace {

struct Sheet {
  TestPart part;
  std::vector<Int> neighbour, side, scratch, patch, known;
  std::vector<double> normals, angle;

  explicit Sheet(TestPart p) : part(std::move(p)) {
    const auto n = static_cast<std::size_t>(part.nele);
    neighbour.resize(3 * n), side.resize(3 * n), patch.resize(2 * n), known.assign(n, 0);
    scratch.resize(static_cast<std::size_t>(part.nkno) + 1 + 3 * n), normals.resize(3 * n),
        angle.assign(n, 0.0);
    update();
  }
  void update() {
    findNeighbours(part.nkno, part.arrays().INTA, vector(scratch), table(neighbour), table(side));
    triangleNormals(part.arrays().INTA, part.arrays().KNG, table(normals));
  }
  template <class T>
  Vector<T> vector(std::vector<T>& v) {
    return {"v", v.data(), static_cast<Int64>(v.size())};
  }
  template <class T>
  Table<T> table(std::vector<T>& v) {
    return {"t", v.data(), 3, static_cast<Int64>(v.size()) / 3};
  }
  Direction view() { return viewDirection(table(normals), table(neighbour), vector(patch)); }
  bool carry() {
    return carryRotations(part.arrays().INTA, part.arrays().KNG, table(normals), table(neighbour),
                          table(side), vector(known), vector(angle));
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

TEST(Neighbours, EverySharedSideIsFoundFromBothTriangles) {
  Sheet sheet(flatPlate(4, 3));
  const DriverArrays a = sheet.part.arrays();
  Int border = 0;
  for (Int e = 1; e <= sheet.part.nele; ++e)
    for (Int k = 1; k <= 3; ++k) {
      const Int f = sheet.table(sheet.neighbour)(k, e), m = sheet.table(sheet.side)(k, e);
      border += f == 0;
      if (f == 0) continue;
      EXPECT_EQ(a.INTA(e, k), a.INTA(f, m % 3 + 1));
      EXPECT_EQ(a.INTA(e, k % 3 + 1), a.INTA(f, m));
      EXPECT_EQ(sheet.table(sheet.neighbour)(m, f), e);
      EXPECT_EQ(sheet.table(sheet.side)(m, f), k);
    }
  EXPECT_EQ(border, 2 * (4 + 3));
}

TEST(Attitude, TheMeanNormalOfATiltedPlateIsItsNormal) {
  TestPart plate = flatPlate(4, 3);
  const double c = std::cos(0.8), s = std::sin(0.8);
  for (std::size_t n = 0; n < static_cast<std::size_t>(plate.nkno); ++n) {
    const double x = plate.KNG[n];
    plate.KNG[n] = c * x;
    plate.KNG[2 * static_cast<std::size_t>(plate.nkno) + n] = s * x;
  }
  Sheet sheet(std::move(plate));
  const Direction view = sheet.view();
  EXPECT_NEAR(view.x, -s, 1e-15);
  EXPECT_NEAR(view.y, 0.0, 1e-15);
  EXPECT_NEAR(view.z, c, 1e-15);
  EXPECT_FALSE(view.flatPatch);
  double AXES[3][3];
  axesOf(view, AXES);
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) {
      double dot = 0.0;
      for (int k = 0; k < 3; ++k) dot += AXES[i][k] * AXES[j][k];
      EXPECT_NEAR(dot, i == j ? 1.0 : 0.0, 1e-15);
    }
  EXPECT_NEAR(AXES[2][0], -s, 1e-15);
  EXPECT_NEAR(AXES[1][1], 1.0, 1e-15);  // the axis of the tilt stays where it is
}

TEST(Attitude, ATubeIsSeenFromItsLargestFlatPatch) {
  // a closed section but for the slit: the normals cancel; one side is longer than the others
  std::vector<Point> nodes;
  const std::vector<std::pair<double, double>> section{{1, 0}, {20, 0}, {20, 10}, {0, 10}, {0, 0}, {0.9, 0}};
  for (const auto& [x, z] : section)
    for (const double y : {0.0, 10.0}) nodes.push_back({x, y, z});
  std::vector<std::vector<Int>> triangles;
  for (Int c = 0; c < 5; ++c) {
    const Int a = 2 * c + 1, b = a + 2;
    triangles.push_back({a, b, b + 1});
    triangles.push_back({a, b + 1, a + 1});
  }
  Sheet sheet({nodes, triangles});
  const Direction view = sheet.view();
  EXPECT_TRUE(view.flatPatch);
  EXPECT_EQ(view.seed, 5);  // the side at z = 10, from x = 20 to 0
  EXPECT_NEAR(std::fabs(view.z), 1.0, 1e-15);
  EXPECT_EQ(
      largestPatch(sheet.table(sheet.normals), sheet.table(sheet.neighbour), sheet.vector(sheet.patch)).seed,
      5);
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
