#include "mesh/skin.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "app/refusal.hpp"

using namespace host;

namespace {

constexpr double pi = 3.14159265358979323846;

// A sheet bent by 90 degrees about y between two flats of 20 mm, 10 mm broad, as a closed solid: rows of four
// nodes around its section, capped at the ends. inner: radius of the inside.
Mesh bentSolid(double inner, double thickness, int bendEdges = 6) {
  Mesh mesh;
  mesh.file = "part";
  const auto row = [&](double x, double z, double angle) {  // a point of the outside and its direction
    for (const double depth : {0.0, thickness})
      for (const double y : {0.0, 10.0})
        mesh.points.insert(mesh.points.end(), {x - depth * std::sin(angle), y, z + depth * std::cos(angle)});
  };
  for (int k = 0; k <= 5; ++k) row(-20.0 + 4.0 * k, 0.0, 0.0);
  const double outer = inner + thickness;
  for (int k = 1; k <= bendEdges; ++k) {
    const double angle = pi / 2.0 * k / bendEdges;
    row(outer * std::sin(angle), outer * (1.0 - std::cos(angle)), angle);
  }
  for (int k = 1; k <= 5; ++k) row(outer, outer + 4.0 * k, pi / 2.0);
  const auto quad = [&](std::int64_t a, std::int64_t b, std::int64_t c, std::int64_t d) {
    mesh.corners.insert(mesh.corners.end(), {a, b, c, a, c, d});
  };
  const auto rows = static_cast<std::int64_t>(mesh.nodes() / 4);
  for (std::int64_t r = 0; r + 1 < rows; ++r) {
    const std::int64_t a = 4 * r + 1, b = a + 4;  // outside y 0, outside y 10, inside y 0, inside y 10
    quad(a, a + 1, b + 1, b);
    quad(a + 2, b + 2, b + 3, a + 3);
    quad(a, b, b + 2, a + 2);
    quad(a + 1, a + 3, b + 3, b + 1);
  }
  quad(1, 3, 4, 2);
  const std::int64_t last = 4 * rows - 3;
  quad(last, last + 1, last + 3, last + 2);
  return mesh;
}

double areaOf(const Mesh& mesh) {
  double sum = 0.0;
  for (std::size_t k = 0; k < mesh.corners.size(); k += 3) {
    double u[3], v[3];
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const auto at = [&](std::size_t c) {
        return mesh.points[3 * (static_cast<std::size_t>(mesh.corners[k + c]) - 1) + axis];
      };
      u[axis] = at(1) - at(0);
      v[axis] = at(2) - at(0);
    }
    sum += 0.5 * std::hypot(u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]);
  }
  return sum;
}

ReadOptions wanted(const std::string& skin, double fibre) {
  ReadOptions options;
  options.skin = skin;
  options.fibre = fibre;
  return options;
}

}  // namespace

TEST(Skin, IsOneOfTheTwoSidesOfAThinSolid) {
  const double chord = 2.0 * std::sin(pi / 24.0) * 6;  // of the bend over its radius
  for (const std::string skin : {"outer", "inner", "auto"}) {
    Mesh mesh = bentSolid(3.0, 1.0);
    ASSERT_TRUE(isSolid(mesh));
    takeSkin(wanted(skin, skin == "inner" ? 0.0 : 1.0), mesh);  // where the skin lies: nothing moves
    EXPECT_FALSE(isSolid(mesh));
    EXPECT_EQ(mesh.elements(), 32u);
    EXPECT_EQ(mesh.nodes(), 34u);
    EXPECT_NEAR(areaOf(mesh), 10.0 * (40.0 + chord * (skin == "inner" ? 3.0 : 4.0)), 1e-9);
    EXPECT_NEAR(mesh.thickness, 1.0, 2e-3);  // but for the bend that chords cut
    EXPECT_THAT(mesh.remarks[0],
                testing::HasSubstr(skin == "inner" ? "took its inner skin" : "took its outer skin"));
  }
}

TEST(Skin, GoesToTheNeutralFibreFromEitherSide) {
  const double chord = 2.0 * std::sin(pi / 24.0) * 6;
  for (const std::string skin : {"outer", "inner"})
    for (const double fibre : {0.33, 0.5}) {
      Mesh mesh = bentSolid(3.0, 1.0);
      takeSkin(wanted(skin, fibre), mesh);
      EXPECT_NEAR(areaOf(mesh), 10.0 * (40.0 + chord * (3.0 + fibre)), 0.1) << skin << fibre;
    }
}

TEST(Skin, TurnsASolidThatLooksInwards) {
  Mesh mesh = bentSolid(3.0, 1.0);
  for (std::size_t k = 0; k < mesh.corners.size(); k += 3) std::swap(mesh.corners[k], mesh.corners[k + 1]);
  takeSkin(wanted("outer", 0.5), mesh);
  EXPECT_NEAR(areaOf(mesh), 10.0 * (40.0 + 2.0 * std::sin(pi / 24.0) * 6 * 3.5), 0.1);  // moved inwards
}

TEST(Skin, RefusesWhatIsNoThinSolid) {
  Mesh cube;
  cube.file = "cube";
  cube.points = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};
  cube.corners = {1, 3, 2, 1, 2, 4, 2, 3, 4, 3, 1, 4};
  ASSERT_TRUE(isSolid(cube));
  EXPECT_THAT(
      refusal([&] { takeSkin({}, cube); }),
      testing::StartsWith("cube: the surface is closed, but not that of a thin solid: it has no edge and no "
                          "flat blank"));
  EXPECT_THAT(refusal([&] {
                Mesh mesh = bentSolid(20.0, 15.0);
                takeSkin({}, mesh);
              }),
              testing::StartsWith("part: the surface is closed, but not"));
}

TEST(Skin, AnOpenSheetIsNoSolid) {
  Mesh mesh = bentSolid(3.0, 1.0);
  mesh.corners.resize(mesh.corners.size() - 3);
  EXPECT_FALSE(isSolid(mesh));
}
