#include "result/nesting.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "result/strip_picture.hpp"

using namespace host;
using testing::HasSubstr;

namespace {

constexpr double pi = std::numbers::pi;
using Points = std::vector<PlanePoint>;

double areaOf(const Points& points) {
  double area = 0.0;
  for (std::size_t k = 0; k < points.size(); ++k) {
    const PlanePoint &a = points[k], &b = points[(k + 1) % points.size()];
    area += 0.5 * (a[0] * b[1] - a[1] * b[0]);
  }
  return area;
}

double toSegment(const PlanePoint& p, const PlanePoint& a, const PlanePoint& b) {
  const double ux = b[0] - a[0], uy = b[1] - a[1];
  const double t = std::clamp(((p[0] - a[0]) * ux + (p[1] - a[1]) * uy) / (ux * ux + uy * uy), 0.0, 1.0);
  return std::hypot(p[0] - a[0] - t * ux, p[1] - a[1] - t * uy);
}

bool inside(const PlanePoint& p, const Points& polygon) {
  bool in = false;
  for (std::size_t k = 0; k < polygon.size(); ++k) {
    const PlanePoint &a = polygon[k], &b = polygon[(k + 1) % polygon.size()];
    if ((a[1] > p[1]) != (b[1] > p[1]) && p[0] < a[0] + (p[1] - a[1]) * (b[0] - a[0]) / (b[1] - a[1]))
      in = !in;
  }
  return in;
}

bool edgesCross(const Points& a, const Points& b) {
  const auto side = [](const PlanePoint& p, const PlanePoint& q, const PlanePoint& r) {
    return (q[0] - p[0]) * (r[1] - p[1]) - (q[1] - p[1]) * (r[0] - p[0]);
  };
  for (std::size_t i = 0; i < a.size(); ++i)
    for (std::size_t j = 0; j < b.size(); ++j) {
      const PlanePoint &p = a[i], &q = a[(i + 1) % a.size()], &r = b[j], &s = b[(j + 1) % b.size()];
      if (side(p, q, r) * side(p, q, s) < 0 && side(r, s, p) * side(r, s, q) < 0) return true;
    }
  return false;
}

// The least distance of two polygons; negative if they overlap.
double gap(const Points& a, const Points& b) {
  if (edgesCross(a, b)) return -1.0;
  double least = 1e300;
  for (const auto& [p, q] : {std::pair(&a, &b), std::pair(&b, &a)})
    for (const PlanePoint& point : *p) {
      if (inside(point, *q)) return -1.0;
      for (std::size_t k = 0; k < q->size(); ++k)
        least = std::min(least, toSegment(point, (*q)[k], (*q)[(k + 1) % q->size()]));
    }
  return least;
}

OutlineLoop loopOf(const Points& points) {
  OutlineLoop loop;
  loop.points = points;
  return loop;
}

// Lays out eight pitches and looks at every pair: never closer than the web, somewhere hardly farther; the strip as wide
// as the blanks with a web at both edges.
void expectSound(const Points& outline, const StripLayout& layout, double web, double slack) {
  std::vector<Points> all;
  for (int row = 0; row < layout.rows; ++row)
    for (int k = 0; k < 8; ++k) all.push_back(inStrip({loopOf(outline)}, layout, row, k)[0]);
  double least = 1e300, low = 1e300, high = -1e300;
  for (std::size_t a = 0; a < all.size(); ++a) {
    for (const PlanePoint& p : all[a]) low = std::min(low, p[1]), high = std::max(high, p[1]);
    for (std::size_t b = a + 1; b < all.size(); ++b) least = std::min(least, gap(all[a], all[b]));
  }
  EXPECT_GE(least, web - 1e-9);
  EXPECT_LE(least, web + slack);
  EXPECT_GE(layout.width, high - low + 2 * web);
  EXPECT_LE(layout.width, high - low + 2 * web + 2 * slack);
  EXPECT_NEAR(layout.utilisation, layout.rows * areaOf(outline) / (layout.pitch * layout.width), 1e-12);
}

const Points rectangle{{0, 0}, {100, 0}, {100, 40}, {0, 40}};
const Points angle{{0, 0}, {100, 0}, {100, 20}, {20, 20}, {20, 100}, {0, 100}};
const Points channel{{0, 0}, {100, 0}, {100, 80}, {80, 80}, {80, 20}, {20, 20}, {20, 80}, {0, 80}};

Points disc(int corners) {
  Points points;
  for (int k = 0; k < corners; ++k)
    points.push_back({50 * std::cos(2 * pi * k / corners), 50 * std::sin(2 * pi * k / corners)});
  return points;
}

}  // namespace

TEST(Nesting, ARectangleStandsAcrossItsStrip) {
  const StripFigures figures = nestOnStrip(rectangle, 4000, 2);
  // exactly: 42 x 104 for one, 42 x 206 for two
  EXPECT_NEAR(figures.single.utilisation, 4000 / (42.0 * 104), 0.005);
  EXPECT_NEAR(figures.paired.utilisation, 8000 / (42.0 * 206), 0.005);
  EXPECT_NEAR(figures.single.pitch, 42, 0.1);
  EXPECT_NEAR(figures.single.width, 104, 0.1);
  EXPECT_NEAR(figures.single.angle, 90, 0.02);
}

TEST(Nesting, DiscsStandInTheGapsOfTheOtherRow) {
  const Points outline = disc(180);
  const double area = areaOf(outline), web = 3.0, d = 100 + web;
  const StripFigures figures = nestOnStrip(outline, area, web);
  EXPECT_NEAR(figures.single.utilisation, area / (d * (d + web)), 0.005);
  EXPECT_NEAR(figures.paired.utilisation, 2 * area / (d * (d * (1 + std::sqrt(0.75)) + web)), 0.005);
}

TEST(Nesting, TrianglesTurnedBy180DegreesFillTheStrip) {
  const StripFigures figures = nestOnStrip({{0, 0}, {60, 0}, {0, 80}}, 2400, 0);
  EXPECT_LT(figures.single.utilisation, 0.51);
  EXPECT_GT(figures.paired.utilisation, 0.985);
}

TEST(Nesting, BlanksKeepTheWebAndNoMore) {
  for (const Points& outline : {rectangle, angle, channel, disc(60)})
    for (const double web : {0.5, 2.0, 10.0}) {
      const StripFigures figures = nestOnStrip(outline, areaOf(outline), web);
      expectSound(outline, figures.single, web, 0.3);
      expectSound(outline, figures.paired, web, 0.3);
      // the L interlocks, the U takes its neighbour's leg
      EXPECT_GT(figures.paired.utilisation, figures.single.utilisation);
    }
}

// As good as any layout of a coarse search over placements that is tested pair by pair.
TEST(Nesting, NoLayoutOfACoarseSearchIsBetter) {
  const double web = 2.0, area = areaOf(channel);
  const StripFigures figures = nestOnStrip(channel, area, web);
  double best = 0.0;
  for (double angleDegrees = 0; angleDegrees < 180; angleDegrees += 15)
    for (double pitch = 40; pitch < 130; pitch += 3) {
      const StripLayout trial{1, angleDegrees, pitch, 0, 0, 0, 0};
      const auto at = [&](int k) { return inStrip({loopOf(channel)}, trial, 0, k)[0]; };
      if (gap(at(0), at(1)) < web || gap(at(0), at(2)) < web || gap(at(0), at(3)) < web) continue;
      double low = 1e300, high = -1e300;
      for (const PlanePoint& p : at(0)) low = std::min(low, p[1]), high = std::max(high, p[1]);
      best = std::max(best, area / (pitch * (high - low + 2 * web)));
    }
  EXPECT_GT(best, 0.4);
  EXPECT_GE(figures.single.utilisation, best * 0.995);
}

TEST(Nesting, TheSameOutlineGivesTheSameFigures) {
  const StripFigures a = nestOnStrip(angle, 3600, 2), b = nestOnStrip(angle, 3600, 2);
  EXPECT_EQ(a.paired.utilisation, b.paired.utilisation);
  EXPECT_EQ(a.paired.along, b.paired.along);
}

TEST(Nesting, ManyCornersAndTinyBlanksEnd) {
  Points star;
  for (int k = 0; k < 3000; ++k) {
    const double t = 2 * pi * k / 3000, r = 300 * (1 + 0.3 * std::cos(5 * t));
    star.push_back({r * std::cos(t), r * std::sin(t)});
  }
  const StripFigures figures = nestOnStrip(star, areaOf(star), 3.0);
  EXPECT_GT(figures.paired.utilisation, figures.single.utilisation);
  EXPECT_GT(nestOnStrip({{0, 0}, {0.01, 0}, {0, 0.01}}, 5e-5, 1.0).single.utilisation, 0.0);
}

TEST(StripPicture, ShowsTheBlanksAndSaysTheFigures) {
  const StripFigures figures = nestOnStrip(rectangle, 4000, 2);
  const std::string svg = stripPicture({loopOf(rectangle)}, {figures.single, figures.paired}, 2, "a & b");
  EXPECT_THAT(svg, HasSubstr("<title>a &amp; b</title>"));
  EXPECT_THAT(svg, HasSubstr("one row: 91."));
  EXPECT_THAT(svg, HasSubstr("two rows turned by 180 degrees: 92."));
  EXPECT_EQ(std::count(svg.begin(), svg.end(), 'Z'), 4 + 8);
}
