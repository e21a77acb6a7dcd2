#include "result/drawing.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using namespace host;

namespace {

std::vector<OutlineLoop> turnedPlate(double degrees) {
  OutlineLoop loop;
  const double c = std::cos(degrees * std::numbers::pi / 180), s = std::sin(degrees * std::numbers::pi / 180);
  for (const PlanePoint p : {PlanePoint{0, 0}, PlanePoint{80, 0}, PlanePoint{80, 30}, PlanePoint{0, 30}}) {
    loop.nodes.push_back(static_cast<std::int32_t>(loop.nodes.size()) + 1);
    loop.points.push_back({c * p[0] - s * p[1] - 12, s * p[0] + c * p[1] + 5});
  }
  return {loop};
}

}  // namespace

TEST(Drawing, SquaredStandsInTheOriginWithItsLengthAlongX) {
  for (const double angle : {0.0, 17.0, -60.0, 90.0}) {
    const auto loops = turnedPlate(angle);
    const DrawingBox box = boxAround(drawnCurves(loops, squarePlacement(loops), 0.01));
    EXPECT_NEAR(box.left, 0.0, 1e-11);
    EXPECT_NEAR(box.bottom, 0.0, 1e-11);
    EXPECT_NEAR(box.right, 80.0, 1e-11);
    EXPECT_NEAR(box.top, 30.0, 1e-11);
  }
}

TEST(Drawing, AsSolvedNothingMoves) {
  const auto loops = turnedPlate(17.0);
  const auto curves = drawnCurves(loops, {}, 0.01);
  ASSERT_EQ(curves.size(), 1u);
  EXPECT_TRUE(curves[0].outer);
  for (const CurveVertex& vertex : curves[0].vertices) {
    bool found = false;
    for (const PlanePoint& p : loops[0].points) found = found || (p[0] == vertex.x && p[1] == vertex.y);
    EXPECT_TRUE(found);
  }
}

TEST(Drawing, TheBoxHoldsItsArcs) {
  // a half circle over each side of a unit square standing on a corner
  const DrawnCurve ring{true, {{1, 0, 1.0}, {-1, 0, 1.0}}};
  const DrawingBox box = boxAround({ring});
  EXPECT_NEAR(box.left, -1, 1e-15);
  EXPECT_NEAR(box.bottom, -1, 1e-15);
  EXPECT_NEAR(box.top, 1, 1e-15);
  const DrawingBox back =
      boxAround({{true, {{1, 0, -1.0}, {-1, 0, 0.0}}}});  // clockwise, below, then the chord
  EXPECT_NEAR(back.bottom, -1, 1e-15);
  EXPECT_EQ(back.top, 0.0);
  EXPECT_EQ(boxAround({}).right, 0.0);
}
