#include "result/curve_fit.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

using namespace host;

namespace {

constexpr double pi = std::numbers::pi;
using Points = std::vector<PlanePoint>;

// `count` points evenly along each piece of the closed curve, by turning about the arc's centre.
Points sampled(const std::vector<CurveVertex>& curve, int count) {
  Points points;
  for (std::size_t k = 0; k < curve.size(); ++k) {
    const CurveVertex &a = curve[k], &b = curve[(k + 1) % curve.size()];
    const double angle = 4 * std::atan(a.bulge);
    for (int s = 0; s < count; ++s) {
      const double t = static_cast<double>(s) / count;
      if (a.bulge == 0.0) {
        points.push_back({a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)});
        continue;
      }
      const double h = 0.5 / std::tan(angle / 2);  // of the centre to the left of the chord, in chords
      const double cx = 0.5 * (a.x + b.x) - h * (b.y - a.y), cy = 0.5 * (a.y + b.y) + h * (b.x - a.x);
      const double c = std::cos(t * angle), d = std::sin(t * angle);
      points.push_back({cx + c * (a.x - cx) - d * (a.y - cy), cy + d * (a.x - cx) + c * (a.y - cy)});
    }
  }
  return points;
}

double toPolygon(const PlanePoint& p, const Points& polygon) {
  double least = 1e300;
  for (std::size_t k = 0; k < polygon.size(); ++k) {
    const PlanePoint &a = polygon[k], &b = polygon[(k + 1) % polygon.size()];
    const double ux = b[0] - a[0], uy = b[1] - a[1];
    const double t = std::clamp(((p[0] - a[0]) * ux + (p[1] - a[1]) * uy) / (ux * ux + uy * uy), 0.0, 1.0);
    least = std::min(least, std::hypot(p[0] - a[0] - t * ux, p[1] - a[1] - t * uy));
  }
  return least;
}

// To the nearest point of the curve: of an arc where the point's ray from the centre meets it, else its ends.
double toCurve(const PlanePoint& p, const std::vector<CurveVertex>& curve) {
  double least = 1e300;
  for (std::size_t k = 0; k < curve.size(); ++k) {
    const CurveVertex &a = curve[k], &b = curve[(k + 1) % curve.size()];
    if (a.bulge == 0.0) {
      least = std::min(least, toPolygon(p, {{a.x, a.y}, {b.x, b.y}}));
      continue;
    }
    const double angle = 4 * std::atan(a.bulge), h = 0.5 / std::tan(angle / 2);
    const double cx = 0.5 * (a.x + b.x) - h * (b.y - a.y), cy = 0.5 * (a.y + b.y) + h * (b.x - a.x);
    const double sense = angle > 0 ? 1 : -1;
    double turn = sense * (std::atan2(p[1] - cy, p[0] - cx) - std::atan2(a.y - cy, a.x - cx));
    while (turn < 0) turn += 2 * pi;
    if (turn <= sense * angle)
      least = std::min(least, std::abs(std::hypot(p[0] - cx, p[1] - cy) - std::hypot(a.x - cx, a.y - cy)));
    least = std::min({least, std::hypot(p[0] - a.x, p[1] - a.y), std::hypot(p[0] - b.x, p[1] - b.y)});
  }
  return least;
}

// The larger of the distances from the curve to the polygon and back, from samples.
double farthest(const std::vector<CurveVertex>& curve, const Points& polygon) {
  double largest = 0.0;
  std::vector<CurveVertex> corners;
  for (const PlanePoint& p : polygon) corners.push_back({p[0], p[1], 0.0});
  for (const PlanePoint& p : sampled(curve, 30)) largest = std::max(largest, toPolygon(p, polygon));
  for (const PlanePoint& p : sampled(corners, 5)) largest = std::max(largest, toCurve(p, curve));
  return largest;
}

// A plate of 100 x 60 with rounded corners of radius 12, chords of `step` degrees.
Points roundedPlate(int perCorner) {
  Points points;
  const double cx[] = {88, 12, 12, 88}, cy[] = {48, 48, 12, 12};
  for (int corner = 0; corner < 4; ++corner)
    for (int k = 0; k <= perCorner; ++k) {
      const double angle = pi / 2 * (corner + static_cast<double>(k) / perCorner);
      points.push_back({cx[corner] + 12 * std::cos(angle), cy[corner] + 12 * std::sin(angle)});
    }
  return points;
}

Points circle(int corners, double radius, bool clockwise = false) {
  Points points;
  for (int k = 0; k < corners; ++k) {
    const double angle = (clockwise ? -2 : 2) * pi * k / corners;
    points.push_back({3 + radius * std::cos(angle), -5 + radius * std::sin(angle)});
  }
  return points;
}

}  // namespace

TEST(CurveFit, ARectangleKeepsItsFourCorners) {
  Points points;
  for (int k = 0; k < 10; ++k) points.push_back({k * 1.0, 0});
  for (int k = 0; k < 5; ++k) points.push_back({10, k * 1.0});
  for (int k = 0; k < 10; ++k) points.push_back({10.0 - k, 5});
  for (int k = 0; k < 5; ++k) points.push_back({0, 5.0 - k});
  const auto curve = fitCurve(points, 0.01);
  EXPECT_EQ(curve.size(), 4u);
  for (const CurveVertex& vertex : curve) EXPECT_EQ(vertex.bulge, 0.0);
  EXPECT_EQ(areaInside(curve), 50.0);
}

TEST(CurveFit, ARoundedPlateIsFourLinesAndFourArcs) {
  const Points points = roundedPlate(20);
  const auto curve = fitCurve(points, 0.02);
  EXPECT_LE(curve.size(), 10u);  // an arc may be cut where the fit began
  EXPECT_LE(farthest(curve, points), 0.02 + 1e-9);
  EXPECT_NEAR(areaInside(curve), 100 * 60 - (4 - pi) * 144, 0.02 * 320);
  const auto arcs = std::count_if(curve.begin(), curve.end(), [](auto& v) { return v.bulge > 0; });
  EXPECT_GE(arcs, 4);
}

TEST(CurveFit, ACircleIsTwoHalfCirclesWithTheSenseOfItsCorners) {
  const auto curve = fitCurve(circle(60, 10), 0.05);
  ASSERT_EQ(curve.size(), 2u);
  EXPECT_EQ(curve[0].bulge, 1.0);
  EXPECT_NEAR(areaInside(curve), pi * 100, 1e-9);
  EXPECT_NEAR(areaInside(fitCurve(circle(60, 10, true), 0.05)), -pi * 100, 1e-9);
}

// The sagitta of a chord is r (1 - cos(pi/n)): where that is beyond the tolerance, no arc stands in for chords.
TEST(CurveFit, CoarseChordsStayChords) {
  const Points points = circle(12, 10);
  EXPECT_GT(10 * (1 - std::cos(pi / 12)), 0.3);
  const auto curve = fitCurve(points, 0.3);
  EXPECT_EQ(curve.size(), 12u);
  EXPECT_EQ(fitCurve(points, 0.36).size(), 2u);
}

TEST(CurveFit, HoldsTheToleranceBothWaysOnRandomOutlines) {
  std::mt19937 random(3);
  const auto unit = [&] { return static_cast<double>(random()) / 4294967296.0; };
  for (int round = 0; round < 20; ++round) {
    Points points;
    const double lobes = 2 + round % 5, depth = 0.4 * unit(), noise = round < 10 ? 0.0 : 0.05;
    for (int k = 0; k < 300; ++k) {
      const double angle = 2 * pi * k / 300, r = 50 * (1 + depth * std::cos(lobes * angle)) + noise * unit();
      points.push_back({r * std::cos(angle), r * std::sin(angle)});
    }
    for (const double tolerance : {0.005, 0.05, 0.5}) {
      const auto curve = fitCurve(points, tolerance);
      EXPECT_LE(farthest(curve, points), tolerance * 1.001) << round << " " << tolerance;
      EXPECT_LE(curve.size(), points.size());
      if (tolerance == 0.5) {
        EXPECT_LT(curve.size(), 60u) << round;
      }
    }
  }
}

TEST(CurveFit, ASlitThinnerThanTheToleranceKeepsItsCorners) {
  EXPECT_EQ(fitCurve({{0, 0}, {5, 0}, {10, 0}, {10, 0.01}, {5, 0.01}, {0, 0.01}}, 0.1).size(), 6u);
  EXPECT_EQ(fitCurve({{0, 0}, {0.01, 0}, {0, 0.01}}, 0.1).size(), 3u);
  EXPECT_EQ(fitCurve({{0, 0}, {1, 0}}, 0.1).size(), 2u);
  EXPECT_TRUE(fitCurve({}, 0.1).empty());
}

TEST(CurveFit, TheSameLoopGivesTheSameCurve) {
  const auto a = fitCurve(roundedPlate(7), 0.03), b = fitCurve(roundedPlate(7), 0.03);
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t k = 0; k < a.size(); ++k) EXPECT_EQ(a[k].bulge, b[k].bulge);
}
