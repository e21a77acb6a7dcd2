// Every shape, regular and jittered, whole and quarter, coarse and fine, is one oriented manifold sheet
// without degenerate triangles; exact blanks keep every edge length.
#include "shapes.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <numbers>
#include <numeric>
#include <set>
#include <stdexcept>

namespace {

using shapes::makeShape;
using shapes::MeshChoice;
using shapes::Sheet;

constexpr double eps = std::numeric_limits<double>::epsilon();

struct Case {
  std::string name;
  MeshChoice choice;
};

std::vector<Case> allCases() {
  std::vector<Case> cases;
  for (const auto& info : shapes::catalogue()) {
    for (int triangles : {600, 3000}) {
      for (std::uint64_t seed : {0, 1, 2}) {
        for (bool quarter : {false, true}) {
          if (quarter && !info.hasQuarter) continue;
          cases.push_back({info.name, {0.0, triangles, seed, quarter}});
        }
      }
    }
  }
  return cases;
}

class EveryShape : public testing::TestWithParam<Case> {
 protected:
  Sheet sheet = makeShape(GetParam().name, GetParam().choice);
};

std::array<double, 3> difference(const Sheet& s, std::int32_t to, std::int32_t from) {
  std::array<double, 3> d;
  for (int k = 0; k < 3; ++k) d[k] = s.knots[3 * (to - 1) + k] - s.knots[3 * (from - 1) + k];
  return d;
}

double length(const std::array<double, 3>& d) {
  return std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
}

/// Twice the area vector of triangle e.
std::array<double, 3> areaVector(const Sheet& s, std::size_t e) {
  const auto a = difference(s, s.inzi[3 * e + 1], s.inzi[3 * e]);
  const auto b = difference(s, s.inzi[3 * e + 2], s.inzi[3 * e]);
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

TEST_P(EveryShape, IsOneOrientedManifoldPiece) {
  std::set<std::pair<int, int>> directed;
  std::vector<int> root(sheet.nodes() + 1);
  std::iota(root.begin(), root.end(), 0);
  const auto find = [&root](int n) {
    while (root[n] != n) n = root[n] = root[root[n]];
    return n;
  };
  for (std::size_t e = 0; e < sheet.inzi.size(); e += 3) {
    for (int k = 0; k < 3; ++k) {
      const int a = sheet.inzi[e + k], b = sheet.inzi[e + (k + 1) % 3];
      ASSERT_GE(a, 1);
      ASSERT_LE(a, sheet.nodes());
      EXPECT_TRUE(directed.insert({a, b}).second) << "edge " << a << " " << b << " runs twice the same way";
      root[find(a)] = find(b);
    }
  }
  for (int n = 2; n <= sheet.nodes(); ++n) ASSERT_EQ(find(n), find(1)) << "node " << n;
  // Every boundary node has one boundary edge in and one out: no two sheets hang on one node.
  std::map<int, int> out;
  for (const auto& [a, b] : directed) {
    if (directed.count({b, a}) > 0) continue;
    EXPECT_EQ(out[a]++, 0) << "node " << a;
  }
}

TEST_P(EveryShape, HasNoDegenerateTriangle) {
  for (std::size_t e = 0; e < static_cast<std::size_t>(sheet.triangles()); ++e) {
    double longest = 0.0;
    for (int k = 0; k < 3; ++k) {
      longest = std::max(longest,
                         length(difference(sheet, sheet.inzi[3 * e + k], sheet.inzi[3 * e + (k + 1) % 3])));
    }
    ASSERT_GT(length(areaVector(sheet, e)), 0.005 * longest * longest) << "triangle " << e + 1;
  }
}

TEST_P(EveryShape, FacesTheDrawingDirection) {
  double up = 0.0;
  for (std::size_t e = 0; e < static_cast<std::size_t>(sheet.triangles()); ++e) up += areaVector(sheet, e)[2];
  EXPECT_GT(up, 0.0);
}

TEST_P(EveryShape, IsTheSameEveryTime) {
  const Sheet again = makeShape(GetParam().name, GetParam().choice);
  EXPECT_EQ(sheet.knots, again.knots);
  EXPECT_EQ(sheet.inzi, again.inzi);
  EXPECT_EQ(sheet.blank, again.blank);
}

TEST_P(EveryShape, ExactBlankKeepsEveryEdgeLength) {
  const auto& all = shapes::catalogue();
  const auto info =
      std::find_if(all.begin(), all.end(), [](const auto& i) { return i.name == GetParam().name; });
  if (!info->hasBlank) {
    EXPECT_TRUE(sheet.blank.empty());
    return;
  }
  ASSERT_EQ(sheet.blank.size(), 2u * sheet.nodes());
  double size = 0.0;  // of the part: positions carry rounding errors of its order, sums one per row
  for (double x : sheet.knots) size = std::max(size, std::abs(x));
  const double limit = 4.0 * size * eps * sheet.nodes();
  for (std::size_t e = 0; e < static_cast<std::size_t>(sheet.triangles()); ++e) {
    const std::int32_t* n = &sheet.inzi[3 * e];
    const auto uv = [&](int k, int c) { return sheet.blank[2 * (n[k] - 1) + c]; };
    for (int k = 0; k < 3; ++k) {
      const int l = (k + 1) % 3;
      const double flat = std::hypot(uv(l, 0) - uv(k, 0), uv(l, 1) - uv(k, 1));
      ASSERT_NEAR(flat, length(difference(sheet, n[l], n[k])), limit) << "triangle " << e + 1;
    }
    const double twiceArea =
        (uv(1, 0) - uv(0, 0)) * (uv(2, 1) - uv(0, 1)) - (uv(2, 0) - uv(0, 0)) * (uv(1, 1) - uv(0, 1));
    ASSERT_GT(twiceArea, 0.0) << "triangle " << e + 1 << " is turned over in the blank";
  }
}

INSTANTIATE_TEST_SUITE_P(Catalogue, EveryShape, testing::ValuesIn(allCases()), [](const auto& test) {
  const Case& c = test.param;
  return c.name + "_" + std::to_string(c.choice.triangles) + "_seed" + std::to_string(c.choice.seed) +
         (c.choice.quarter ? "_quarter" : "");
});

TEST(Shapes, MeetTheWantedNumberOfTriangles) {
  for (const auto& info : shapes::catalogue()) {
    for (int wanted : {5000, 50000}) {
      EXPECT_NEAR(makeShape(info.name, {0.0, wanted}).triangles(), wanted, 0.1 * wanted) << info.name;
    }
  }
}

// The least is what edges without limit give, so nothing below it can be had, and all above it up to whole rows.
TEST(Shapes, StrictlyMeetSmallNumbersDownToTheLeast) {
  for (const auto& info : shapes::catalogue()) {
    for (const bool quarter : {false, true}) {
      if (quarter && !info.hasQuarter) continue;
      const int least = makeShape(info.name, {1e6, 0, 0, quarter}).triangles();
      MeshChoice choice{0.0, least, 0, quarter, true};
      EXPECT_NEAR(makeShape(info.name, choice).triangles(), least, 0.1 * least) << info.name;
      choice.triangles = least / 2;
      EXPECT_THROW(makeShape(info.name, choice), std::invalid_argument) << info.name;
      for (choice.triangles = least; choice.triangles < 2000; choice.triangles += 97)
        EXPECT_NEAR(makeShape(info.name, choice).triangles(), choice.triangles, 0.5 * choice.triangles)
            << info.name;
    }
  }
}

// A number that is met without it is met by the same mesh.
TEST(Shapes, StrictChangesNoMeshThatFits) {
  for (const auto& info : shapes::catalogue()) {
    MeshChoice choice{0.0, 5000};
    const Sheet loose = makeShape(info.name, choice);
    choice.strict = true;
    EXPECT_EQ(makeShape(info.name, choice).knots, loose.knots) << info.name;
  }
}

TEST(Shapes, FinerSizeGivesShorterEdges) {
  for (const auto& info : shapes::catalogue()) {
    EXPECT_GT(makeShape(info.name, {1.5}).triangles(), 3 * makeShape(info.name, {3.0}).triangles() / 2)
        << info.name;
  }
}

TEST(Shapes, WholePartIsSymmetricToBothPlanes) {
  for (const char* name : {"square_cup", "round_cup", "box", "flanged_hole"}) {
    const Sheet s = makeShape(name, {0.0, 2000});
    std::set<std::array<double, 3>> points;
    for (std::size_t n = 0; n < s.knots.size(); n += 3)
      points.insert({s.knots[n], s.knots[n + 1], s.knots[n + 2]});
    ASSERT_EQ(points.size(), static_cast<std::size_t>(s.nodes())) << name;
    for (const auto& p : points) {
      EXPECT_TRUE(points.count({p[0] == 0.0 ? 0.0 : -p[0], p[1], p[2]})) << name;
      EXPECT_TRUE(points.count({p[0], p[1] == 0.0 ? 0.0 : -p[1], p[2]})) << name;
      EXPECT_TRUE(points.count({p[1], p[0], p[2]})) << name;
    }
  }
}

TEST(Shapes, QuarterHasExactSymmetryPlanes) {
  for (const char* name : {"square_cup", "round_cup", "box", "flanged_hole"}) {
    for (std::uint64_t seed : {0, 4}) {
      const Sheet s = makeShape(name, {0.0, 2000, seed, true});
      int onX0 = 0, onY0 = 0;
      for (std::size_t n = 0; n < s.knots.size(); n += 3) {
        EXPECT_GE(s.knots[n], 0.0);
        EXPECT_GE(s.knots[n + 1], 0.0);
        onX0 += s.knots[n] == 0.0;
        onY0 += s.knots[n + 1] == 0.0;
      }
      EXPECT_GT(onX0, 10) << name;
      EXPECT_EQ(onX0, onY0) << name;
    }
  }
}

TEST(Shapes, SquareCupHasItsToolsAndDrawnInEdge) {
  const Sheet s = makeShape("square_cup", {2.0});
  double top = 0.0, axis = 0.0, corner = 0.0;
  for (std::size_t n = 0; n < s.knots.size(); n += 3) {
    const double x = s.knots[n], y = s.knots[n + 1], z = s.knots[n + 2];
    EXPECT_GE(z, -64 * eps * 40.0);
    top = std::max(top, z);
    if (y == 0.0) axis = std::max(axis, x);
    if (x == y) corner = std::max(corner, x);
  }
  EXPECT_EQ(top, 40.0);
  EXPECT_EQ(axis, 53.2);
  EXPECT_EQ(corner, 64.4);
}

TEST(Shapes, BoxWallsAreExactlyVertical) {
  const Sheet s = makeShape("box", {2.5});
  // Between the radii every node of a straight side stands exactly on x = ±50 or y = ±50.
  int onWall = 0;
  for (std::size_t n = 0; n < s.knots.size(); n += 3) {
    if (s.knots[n + 2] < 6.5 || s.knots[n + 2] > 33.5) continue;
    const double x = std::abs(s.knots[n]), y = std::abs(s.knots[n + 1]);
    if (x > 35.0 && y > 35.0) {
      EXPECT_NEAR(std::hypot(x - 35.0, y - 35.0), 15.0, 64 * eps * 50.0);
    } else {
      EXPECT_EQ(std::max(x, y), 50.0);
    }
    ++onWall;
  }
  EXPECT_GT(onWall, 500);
}

TEST(Shapes, LBendTakesWallAndRadius) {
  const Sheet s = makeShape("l_bend", {2.5}, {{"wall", 150.0}, {"radius", 3.0}});
  double height = 0.0;
  for (std::size_t n = 0; n < s.knots.size(); n += 3) {
    height = std::max(height, s.knots[n + 2]);
    const bool onWall = s.knots[n + 2] >= 3.0;
    EXPECT_EQ(onWall, s.knots[n] == 3.0);
  }
  EXPECT_EQ(height, 153.0);
}

/// Width of a blank in u.
double blankWidth(const Sheet& s) {
  double low = s.blank[0], high = s.blank[0];
  for (std::size_t n = 0; n < s.blank.size(); n += 2) {
    low = std::min(low, s.blank[n]);
    high = std::max(high, s.blank[n]);
  }
  return high - low;
}

TEST(Shapes, BlankOfHalfPipeTendsToTheSmoothOneWithSecondOrder) {
  const double smooth = 30.0 * 150.0 * std::numbers::pi / 180.0;
  for (int n : {20, 40}) {
    const Sheet s = makeShape("half_pipe", {smooth / n});
    const double t = 150.0 * std::numbers::pi / 180.0 / n;
    // chord over arc: 1 - t²/24 + O(t⁴)
    EXPECT_NEAR(1.0 - blankWidth(s) / smooth, t * t / 24.0, t * t * t * t / 1900.0) << n;
  }
}

TEST(Shapes, BlankOfConeTendsToTheSmoothSectorWithSecondOrder) {
  // Smooth development: sector of the angle 150° · sin 20° between the radii 60 and 160.
  const double half = 75.0 * std::sin(20.0 * std::numbers::pi / 180.0) * std::numbers::pi / 180.0;
  const double smooth = 2.0 * 160.0 * std::sin(half);
  const double coarse = smooth - blankWidth(makeShape("cone_sector", {4.0}));
  const double fine = smooth - blankWidth(makeShape("cone_sector", {2.0}));
  EXPECT_GT(coarse, 0.0);
  EXPECT_NEAR(coarse / fine, 4.0, 0.3);  // the numbers of rows are whole: not exactly 2 : 1
}

TEST(Shapes, PlateIsItsOwnBlank) {
  const Sheet s = makeShape("plate", {5.0, 0, 3});
  for (std::int32_t n = 0; n < s.nodes(); ++n) {
    EXPECT_NEAR(s.blank[2 * n], s.knots[3 * n] + 75.0, 64 * eps * 150.0);
    EXPECT_EQ(s.blank[2 * n + 1], s.knots[3 * n + 1]);
    EXPECT_EQ(s.knots[3 * n + 2], 0.0);
  }
}

TEST(Shapes, SeedsGiveDifferentMeshesOfTheSameSheet) {
  const Sheet a = makeShape("round_cup", {4.0, 0, 1}), b = makeShape("round_cup", {4.0, 0, 2});
  EXPECT_EQ(a.nodes(), b.nodes());
  EXPECT_NE(a.knots, b.knots);
  // The four quadrants of a jittered part differ too.
  std::set<std::array<double, 3>> points;
  for (std::size_t n = 0; n < a.knots.size(); n += 3)
    points.insert({a.knots[n], a.knots[n + 1], a.knots[n + 2]});
  int mirrored = 0;
  for (const auto& p : points) mirrored += p[0] != 0.0 && points.count({-p[0], p[1], p[2]});
  EXPECT_LT(mirrored, a.nodes() / 4);
}

template <class Call>
std::string refusal(Call call) {
  try {
    call();
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
  return "accepted";
}

TEST(Shapes, RefuseWhatMakesNoSheet) {
  EXPECT_EQ(refusal([] { makeShape("teapot"); }), "there is no shape \"teapot\"");
  EXPECT_EQ(refusal([] { makeShape("box", {2.0}, {{"colour", 1.0}}); }), "box has no dimension \"colour\"");
  EXPECT_EQ(refusal([] { makeShape("hat", {0.0, 5000, 0, true}); }), "hat has no quarter");
  EXPECT_EQ(refusal([] { makeShape("box", {-1.0}); }), "the mesh size must be positive");
  EXPECT_EQ(refusal([] { makeShape("box", {std::nan("")}); }), "the mesh size must be positive");
  EXPECT_EQ(refusal([] { makeShape("box", {1e-9}); }), "the mesh size is too small for the part");
  EXPECT_EQ(refusal([] { makeShape("box", {0.0, 0}); }), "the number of triangles must lie in 1..20000000");
  EXPECT_EQ(refusal([] { makeShape("l_bend", {2.0}, {{"radius", 0.0}}); }), "radius must be positive");
  EXPECT_EQ(refusal([] { makeShape("l_bend", {2.0}, {{"wall", INFINITY}}); }), "wall must be finite");
  EXPECT_EQ(refusal([] {
              makeShape("half_pipe", {2.0}, {{"half_angle", 91.0}});
            }),
            "half_angle must lie in 0..90 degrees");
  EXPECT_EQ(refusal([] {
              makeShape("cone_sector", {2.0}, {{"outer_slant", 50.0}});
            }),
            "outer_slant must exceed inner_slant");
  EXPECT_EQ(refusal([] {
              makeShape("cone_sector", {2.0}, {{"cone_angle", 90.0}});
            }),
            "cone_angle must lie in 0..90 degrees");
  EXPECT_EQ(refusal([] {
              makeShape("cone_sector", {2.0}, {{"half_angle", 91.0}});
            }),
            "half_angle must lie in 0..90 degrees");
  EXPECT_EQ(refusal([] {
              makeShape("hat", {2.0}, {{"height", 2.0}});
            }),
            "height is too small for punch_radius and die_radius");
  EXPECT_EQ(refusal([] { makeShape("hat", {2.0}, {{"top", 5.0}}); }), "top is too small for punch_radius");
  EXPECT_EQ(refusal([] { makeShape("hat", {2.0}, {{"draft", 45.0}}); }), "draft must lie in 0..45 degrees");
  EXPECT_EQ(refusal([] { makeShape("hat", {2.0}, {{"flange", -1.0}}); }), "flange must not be negative");
  EXPECT_EQ(refusal([] {
              makeShape("s_rail", {2.0}, {{"bend_radius", 40.0}});
            }),
            "bend_radius is too small for the section");
  EXPECT_EQ(refusal([] {
              makeShape("round_cup", {2.0}, {{"depth", 5.0}});
            }),
            "depth is too small for punch_radius and die_radius");
  EXPECT_EQ(refusal([] {
              makeShape("round_cup", {2.0}, {{"edge_radius", 52.0}});
            }),
            "the sheet's edge lies inside the die radius");
  EXPECT_EQ(refusal([] {
              makeShape("round_cup", {2.0}, {{"draft", -1.0}});
            }),
            "draft must lie in 0..45 degrees");
  EXPECT_EQ(refusal([] {
              makeShape("square_cup", {2.0}, {{"corner_radius", 40.0}});
            }),
            "corner_radius must not exceed the half width");
  EXPECT_EQ(refusal([] {
              makeShape("square_cup", {2.0}, {{"punch_radius", 11.0}});
            }),
            "punch_radius must stay below corner_radius");
  EXPECT_EQ(refusal([] {
              makeShape("square_cup", {2.0}, {{"edge_on_diagonal", 40.0}});
            }),
            "edge_on_diagonal must not be less than edge_on_axis");
  EXPECT_EQ(refusal([] {
              makeShape("flanged_hole", {2.0}, {{"half_width", 20.0}});
            }),
            "half_width is too small for hole_radius and die_radius");
  EXPECT_EQ(refusal([] {
              makeShape("flanged_hole", {2.0}, {{"draft", 50.0}});
            }),
            "draft must lie in 0..45 degrees");
}

}  // namespace
