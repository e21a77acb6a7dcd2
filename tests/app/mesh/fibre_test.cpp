#include "mesh/fibre.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

using namespace host;

namespace {

constexpr double pi = 3.14159265358979323846;

// A strip of 10 mm breadth along a line in the plane y = 0, with the normals of the line's left side.
struct Strip {
  Mesh mesh;
  std::vector<double> normals;
  double x = 0.0, z = 0.0, direction = 0.0;

  void point() {
    for (const double y : {0.0, 10.0}) {
      mesh.points.insert(mesh.points.end(), {x, y, z});
      normals.insert(normals.end(), {-std::sin(direction), 0.0, std::cos(direction)});
    }
  }
  void flat(double length, int edges) {
    for (int k = 0; k < edges; ++k) {
      x += length / edges * std::cos(direction);
      z += length / edges * std::sin(direction);
      point();
    }
  }
  // radius: of the line. angle: rad, to the left where positive.
  void bend(double radius, double angle, int edges) {
    const double chord = 2.0 * radius * std::sin(std::fabs(angle) / edges / 2.0);
    for (int k = 0; k < edges; ++k) {
      const double middle = direction + angle / edges / 2.0;
      x += chord * std::cos(middle);
      z += chord * std::sin(middle);
      direction += angle / edges;
      point();
    }
  }
  void close() {
    const auto rows = static_cast<std::int64_t>(mesh.nodes() / 2);
    for (std::int64_t r = 0; r + 1 < rows; ++r)
      mesh.corners.insert(mesh.corners.end(),
                          {2 * r + 1, 2 * r + 3, 2 * r + 4, 2 * r + 1, 2 * r + 4, 2 * r + 2});
  }
  // Along the edge y = 0.
  double length() const {
    double sum = 0.0;
    for (std::size_t k = 6; k < mesh.points.size(); k += 6)
      sum += std::hypot(mesh.points[k] - mesh.points[k - 6], mesh.points[k + 2] - mesh.points[k - 4]);
    return sum;
  }
};

// The left side of a sheet of 1 mm that is bent by 90 degrees per entry, to the left where positive, with 24
// edges per turn. radius: of the inside of every bend.
Strip bentSheet(double radius, const std::vector<double>& bends, double thickness) {
  Strip strip;
  strip.mesh.thickness = thickness;
  strip.point();
  strip.flat(20.0, 10);
  for (const double side : bends) {
    strip.bend(side > 0.0 ? radius : radius + thickness, side * pi / 2.0, 6);
    strip.flat(20.0, 10);
  }
  strip.close();
  return strip;
}

}  // namespace

TEST(Fibre, BlankLengthsFollowBendAllowance) {
  for (const double radius : {1.0, 2.0, 3.0, 5.0, 10.0})
    for (const double fibre : {0.0, 0.33, 0.45, 0.5, 1.0})
      for (const std::vector<double>& bends : {std::vector<double>{1}, {-1}, {1, 1}, {-1, -1}}) {
        Strip strip = bentSheet(radius, bends, 1.0);
        moveToFibre(strip.normals, fibre, true, strip.mesh);
        const double n = static_cast<double>(bends.size());
        EXPECT_NEAR(strip.length(), 20.0 * (n + 1.0) + n * pi / 2.0 * (radius + fibre), 1e-3)
            << radius << " " << fibre << " " << n;
      }
}

TEST(Fibre, CountsFromTheInsideOfEachOfTwoOppositeBends) {
  for (const double radius : {1.0, 3.0, 10.0})
    for (const double fibre : {0.33, 0.5}) {
      Strip strip = bentSheet(radius, {1, -1}, 1.0);
      moveToFibre(strip.normals, fibre, true, strip.mesh);
      EXPECT_NEAR(strip.length(), 60.0 + pi * (radius + fibre), 5e-3) << radius << " " << fibre;
    }
}

TEST(Fibre, AMeshThatIsTheSurfaceKeepsItsChords) {
  Strip strip = bentSheet(5.0, {-1}, 1.0);
  moveToFibre(strip.normals, 1.0, false, strip.mesh);  // the outside, where the nodes are: nothing moves
  EXPECT_NEAR(strip.length(), 40.0 + 6 * 2.0 * 6.0 * std::sin(pi / 24.0), 1e-12);
}

TEST(Fibre, FlatSheetGoesToItsMiddle) {
  Strip strip = bentSheet(1.0, {}, 2.0);
  moveToFibre(strip.normals, 0.2, true, strip.mesh);
  for (std::size_t k = 2; k < strip.mesh.points.size(); k += 3) EXPECT_EQ(strip.mesh.points[k], -1.0);
}

TEST(Fibre, NodeNormalsAreThoseOfACylinder) {
  Strip strip;
  strip.direction = 0.0;
  strip.point();
  strip.bend(5.0, pi / 2.0, 9);
  strip.close();
  const std::vector<double> normals = nodeNormals(strip.mesh);
  for (std::size_t node = 2; node + 2 < strip.mesh.nodes(); ++node) {  // but for the ends
    double cosine = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis)
      cosine += normals[3 * node + axis] * strip.normals[3 * node + axis];
    EXPECT_GT(std::fabs(cosine), std::cos(0.03)) << node;  // the diagonal shares the angles unevenly
  }
}
