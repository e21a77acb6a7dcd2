#include "mesh/sheet_shape.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/mesh/sample_meshes.hpp"
#include "mesh/obj_reader.hpp"

using namespace host;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

Part partOf(const std::string& obj) {
  return checkMesh(readObj(obj, "part"), false);
}

// A quarter, half or other part of a spherical cap: radius 50 mm, 60 degrees down from the top, from `from` to `to`
// degrees about z; the top within 10 degrees is left out.
Part cap(double from, double to, double shift = 0.0) {
  const int n = 24;
  return partOf(gridObj(n, 12, [=](int i, int j) {
    const double turn = (from + (to - from) * i / n) * pi / 180.0, tilt = (10.0 + 50.0 * j / 12) * pi / 180.0;
    const auto clean = [](double x) { return std::fabs(x) < 1e-12 ? 0.0 : x; };
    std::ostringstream text;
    text.precision(17);
    text << shift + clean(50.0 * std::sin(tilt) * std::cos(turn)) << " "
         << clean(50.0 * std::sin(tilt) * std::sin(turn)) << " " << 50.0 * std::cos(tilt);
    return text.str();
  }));
}

}  // namespace

TEST(SheetShape, AHemIsFoldedAndABendIsNot) {
  const auto strip = [](double turn) {
    const double a = turn * pi / 180.0;
    std::ostringstream text;
    text << "v 0 0 0\nv 10 0 0\nv 0 10 0\nv 10 10 0\nv " << 10 + 10 * std::cos(a) << " 0 " << 10 * std::sin(a)
         << "\nv " << 10 + 10 * std::cos(a) << " 10 " << 10 * std::sin(a)
         << "\nf 1 2 4\nf 1 4 3\nf 2 5 6\nf 2 6 4\n";
    return partOf(text.str());
  };
  EXPECT_THAT(foldedElements(strip(175.0), 150.0), ElementsAre(1, 4));
  EXPECT_THAT(foldedElements(strip(149.0), 150.0), IsEmpty());
}

TEST(SheetShape, AQuarterOfACapMayBeMirroredAtBothPlanes) {
  const std::vector<MirrorEdge> edges = mirrorEdges(cap(0.0, 90.0));
  ASSERT_EQ(edges.size(), 2u);
  EXPECT_EQ(edges[0].axis, 'x');
  EXPECT_EQ(edges[0].place, 0.0);
  EXPECT_NEAR(edges[0].length, 50.0 * 50.0 * pi / 180.0, 0.05);
  EXPECT_LT(edges[0].farthestFromRight, 4.0);  // half of the turn of one facet, 90/24 degrees
  EXPECT_EQ(edges[1].axis, 'y');
}

TEST(SheetShape, APlaneAwayFromTheOriginIsFoundToo) {
  const std::vector<MirrorEdge> edges = mirrorEdges(cap(-90.0, 90.0, 30.0));
  ASSERT_EQ(edges.size(), 1u);
  EXPECT_EQ(edges[0].axis, 'x');
  EXPECT_EQ(edges[0].place, 30.0);
}

TEST(SheetShape, AnEdgeThatTheSheetMeetsAskewIsNone) {
  // cut through the cap beside its middle: the plane meets the sphere at up to asin(25/50) off the right angle
  const int n = 12;
  const Part part = partOf(gridObj(n, n, [=](int i, int j) {
    const double x = 25.0 - 15.0 * i / n, y = -30.0 + 60.0 * j / n;
    std::ostringstream text;
    text.precision(17);
    text << x << " " << y << " " << std::sqrt(2500.0 - x * x - y * y);
    return text.str();
  }));
  for (const MirrorEdge& edge : mirrorEdges(part)) ADD_FAILURE() << edge.axis << " = " << edge.place;
}

TEST(SheetShape, StraightEdgesOfAPlateSayNothing) {
  EXPECT_THAT(mirrorEdges(partOf(plateObj(4, 3))), IsEmpty());
}
