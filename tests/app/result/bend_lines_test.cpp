#include "result/bend_lines.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

#include "result/bend_zones.hpp"
#include "result/line_on_sheet.hpp"
#include "result/sheet_bending.hpp"

using namespace host;

namespace {

constexpr double pi = std::numbers::pi;
using Lines = std::vector<std::array<PlanePoint, 2>>;
using Profile = std::vector<std::array<double, 2>>;

// A part with its exact blank.
struct Bent {
  std::vector<double> part, blank;
  std::vector<std::int32_t> corners;

  std::vector<OutlineLoop> loops() const { return outlineOf(corners, blank).loops; }
  Lines lines(double radius) const { return bendLines(corners, part, blank, loops(), radius); }
};

// A sheet along a profile of points (x, z) that is unrolled along x; rows across at y = across[k] + slope x of the blank.
Bent sheetAlong(const Profile& profile, const std::vector<double>& across = {0.0, 10.0}, double slope = 0.0,
                const std::function<double(int, int)>& shift = nullptr) {
  Bent bent;
  const auto rows = static_cast<std::int32_t>(across.size());
  std::vector<double> unrolled{0.0};
  for (std::size_t k = 1; k < profile.size(); ++k)
    unrolled.push_back(unrolled.back() +
                       std::hypot(profile[k][0] - profile[k - 1][0], profile[k][1] - profile[k - 1][1]));
  for (std::size_t k = 0; k < profile.size(); ++k)
    for (std::int32_t j = 0; j < rows; ++j) {
      const double moved = shift ? shift(static_cast<int>(k), j) : 0.0;
      const double y = across[static_cast<std::size_t>(j)] + slope * unrolled[k] + moved;
      bent.part.insert(bent.part.end(), {profile[k][0], y, profile[k][1]});
      bent.blank.insert(bent.blank.end(), {unrolled[k], y});
    }
  for (std::int32_t r = 1; r < static_cast<std::int32_t>(profile.size()); ++r)
    for (std::int32_t j = 1; j < rows; ++j) {
      const std::int32_t a = (r - 1) * rows + j;
      bent.corners.insert(bent.corners.end(), {a, a + rows, a + 1, a + 1, a + rows, a + rows + 1});
    }
  return bent;
}

// Flat for 50 in steps of 2, bent by 90 degrees in 8 rows, flat again.
Profile bendProfile(double radius) {
  Profile profile;
  for (int k = 0; k <= 25; ++k) profile.push_back({2.0 * k, 0.0});
  for (int k = 1; k <= 8; ++k) {
    const double angle = pi / 2 * k / 8;
    profile.push_back({50 + radius * std::sin(angle), radius * (1 - std::cos(angle))});
  }
  for (int k = 1; k <= 25; ++k) profile.push_back({50 + radius, radius + 2.0 * k});
  return profile;
}

double chords(double radius) {  // half of the bend's length on the blank
  return 4 * 2 * radius * std::sin(pi / 32);
}

void expectLine(const std::array<PlanePoint, 2>& line, PlanePoint a, PlanePoint b, double tolerance) {
  const auto off = [&](const PlanePoint& p, const PlanePoint& q) {
    return std::hypot(p[0] - q[0], p[1] - q[1]);
  };
  EXPECT_LT(std::min(off(line[0], a) + off(line[1], b), off(line[0], b) + off(line[1], a)), tolerance)
      << line[0][0] << " " << line[0][1] << " " << line[1][0] << " " << line[1][1];
}

}  // namespace

TEST(BendLines, AStraightBendIsTheMiddleOfItsAngleFromEdgeToEdge) {
  const Lines lines = sheetAlong(bendProfile(5.0)).lines(20.0);
  ASSERT_EQ(lines.size(), 1u);
  const double x = 50.0 + chords(5.0);
  expectLine(lines[0], {x, 0}, {x, 10}, 1e-9);
}

// The blank's edges run askew to the bend: the line keeps the bend's direction and ends on them.
TEST(BendLines, EndOnAnOutlineThatRunsAskew) {
  const double slope = 0.7;
  const Lines lines = sheetAlong(bendProfile(5.0), {0, 2, 4, 6, 8, 10}, slope).lines(20.0);
  ASSERT_EQ(lines.size(), 1u);
  const double x = 50.0 + chords(5.0);
  expectLine(lines[0], {x, slope * x}, {x, 10 + slope * x}, 1e-6);
}

// Nodes that lie anyhow along their rulings leave the line where it is.
TEST(BendLines, DoNotFollowTheMesh) {
  const auto shift = [](int k, int j) { return j == 0 || j == 8 ? 0.0 : 0.45 * std::sin(7.0 * k + 3.0 * j); };
  const Bent bent = sheetAlong(bendProfile(5.0), {0, 1.25, 2.5, 3.75, 5, 6.25, 7.5, 8.75, 10}, 0.0, shift);
  const Lines lines = bent.lines(20.0);
  ASSERT_EQ(lines.size(), 1u);
  const double x = 50.0 + chords(5.0);
  expectLine(lines[0], {x, 0}, {x, 10}, 0.02);
}

// A mesh that is twice as fine in one half of the bend does not draw the line to it.
TEST(BendLines, AreTheMiddleOfTheAngleNotOfTheNodes) {
  Profile profile;
  for (int k = 0; k <= 25; ++k) profile.push_back({2.0 * k, 0.0});
  const auto bendTo = [&](double angle) {
    profile.push_back({50 + 5 * std::sin(angle), 5 * (1 - std::cos(angle))});
  };
  for (int k = 1; k <= 5; ++k) bendTo(pi / 4 * k / 5);
  for (int k = 1; k <= 10; ++k) bendTo(pi / 4 * (1 + k / 10.0));
  for (int k = 1; k <= 25; ++k) profile.push_back({55.0, 5 + 2.0 * k});
  const Lines lines = sheetAlong(profile, {0, 1, 2, 3, 4}).lines(20.0);
  ASSERT_EQ(lines.size(), 1u);
  const double x = 50.0 + 5 * pi / 4;
  expectLine(lines[0], {x, 0}, {x, 4}, 0.1);  // by the nodes it would lie 0.6 mm beside
}

TEST(BendLines, LieOnTheBlankAsItIsTurned) {
  Bent bent = sheetAlong(bendProfile(5.0), {0, 5, 10});
  const double c = std::cos(0.4), s = std::sin(0.4);
  for (std::size_t n = 0; n < bent.blank.size(); n += 2) {
    const double x = bent.blank[n], y = bent.blank[n + 1];
    bent.blank[n] = c * x - s * y + 3;
    bent.blank[n + 1] = s * x + c * y - 1;
  }
  const Lines lines = bent.lines(20.0);
  ASSERT_EQ(lines.size(), 1u);
  const double x = 50.0 + chords(5.0);
  expectLine(lines[0], {c * x + 3, s * x - 1}, {c * x - s * 10 + 3, s * x + c * 10 - 1}, 1e-9);
}

// An S without flat sheet between its bends: two lines, as it is bent to two sides.
TEST(BendLines, OfBothSidesOfAnS) {
  Profile profile;
  for (int k = 0; k <= 10; ++k) profile.push_back({2.0 * k, 0.0});
  for (int k = 1; k <= 8; ++k)
    profile.push_back({20 + 5 * std::sin(pi / 3 * k / 8), 5 - 5 * std::cos(pi / 3 * k / 8)});
  const auto [x, z] = profile.back();
  for (int k = 1; k <= 8; ++k) {
    const double angle = pi / 3 * (1 - k / 8.0);
    profile.push_back(
        {x + 5 * (std::sin(pi / 3) - std::sin(angle)), z + 5 * (std::cos(angle) - std::cos(pi / 3))});
  }
  for (int k = 1; k <= 10; ++k) profile.push_back({profile.back()[0] + 2.0, profile.back()[1]});
  Lines lines = sheetAlong(profile, {0, 2, 4, 6}).lines(20.0);
  ASSERT_EQ(lines.size(), 2u);
  const double half = 4 * 2 * 5 * std::sin(pi / 48);
  std::sort(lines.begin(), lines.end());
  expectLine(lines[0], {20 + half, 0}, {20 + half, 6},
             0.4);  // no angle is seen in the edge at the turn
  expectLine(lines[1], {20 + 3 * half, 0}, {20 + 3 * half, 6}, 0.4);
}

TEST(BendLines, AGentleBendIsFlat) {
  EXPECT_TRUE(sheetAlong(bendProfile(200.0)).lines(20.0).empty());
}

TEST(BendLines, ACreaseIsOneLine) {
  const Bent bent = sheetAlong({{0, 0}, {10, 0}, {20, 0}, {20, 10}, {20, 20}}, {0, 1, 3, 6, 10});
  const Lines lines = bent.lines(1e-3);
  ASSERT_EQ(lines.size(), 1u);
  expectLine(lines[0], {20, 0}, {20, 10}, 1e-9);
}

// A round cup: the foot of its wall is a ring, whose arcs are no straight lines; its border is drawn by edges.
TEST(BendLines, ARingKeepsItsBorders) {
  Bent bent;
  const Profile profile = bendProfile(5.0);
  const std::int32_t around = 96, rows = static_cast<std::int32_t>(profile.size());
  double unrolled = 0.0;
  for (std::int32_t k = 0; k < rows; ++k) {
    const auto& [r, z] = profile[static_cast<std::size_t>(k)];
    if (k > 0)
      unrolled += std::hypot(r - profile[static_cast<std::size_t>(k) - 1][0],
                             z - profile[static_cast<std::size_t>(k) - 1][1]);
    for (std::int32_t j = 0; j < around; ++j) {
      const double angle = 2 * pi * j / around;
      bent.part.insert(bent.part.end(), {(r + 10) * std::cos(angle), (r + 10) * std::sin(angle), z});
      bent.blank.insert(bent.blank.end(),
                        {(unrolled + 10) * std::cos(angle), (unrolled + 10) * std::sin(angle)});
    }
  }
  for (std::int32_t k = 1; k < rows; ++k)
    for (std::int32_t j = 0; j < around; ++j) {
      const std::int32_t a = (k - 1) * around + j + 1, b = (k - 1) * around + (j + 1) % around + 1;
      bent.corners.insert(bent.corners.end(), {a, a + around, b, b, a + around, b + around});
    }
  const Lines lines = bent.lines(20.0);
  EXPECT_EQ(lines.size(), 2u * around);
  for (const auto& [from, to] : lines) {
    const double r = std::hypot(from[0], from[1]);
    EXPECT_NEAR(r, std::hypot(to[0], to[1]), 1e-9);
    EXPECT_LT(std::min(std::abs(r - 60), std::abs(r - 60 - 2 * chords(5.0))), 1e-6) << r;
  }
}

TEST(BendLines, FlatOrCollapsedHasNone) {
  const std::vector<double> square{0, 0, 1, 0, 1, 1, 0, 1};
  const std::vector<std::int32_t> two{1, 2, 3, 1, 3, 4};
  const auto loops = outlineOf(two, square).loops;
  EXPECT_TRUE(bendLines(two, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}, square, loops, 5.0).empty());
  EXPECT_TRUE(bendLines(two, {0, 0, 0, 1, 0, 0, 2, 0, 0, 0, 1, 1}, square, loops, 5.0).empty());
  EXPECT_TRUE(bendLines({}, {}, {}, {}, 5.0).empty());
}

TEST(SheetBending, AngleAndRulingOfARoof) {
  // up to both sides of the x axis: bent towards the normals
  const SheetBending valley = bendingOf({1, 2, 3, 2, 1, 4}, {0, 0, 0, 2, 0, 0, 1, 1, 0.1, 1, -1, 0.1}, 1.0);
  ASSERT_EQ(valley.edges.size(), 1u);
  EXPECT_NEAR(valley.edges[0].angle, 2 * std::atan(0.1), 1e-12);
  EXPECT_FALSE(valley.edges[0].crease);
  const SheetBending ridge = bendingOf({1, 2, 3, 2, 1, 4}, {0, 0, 0, 2, 0, 0, 1, 1, -0.5, 1, -1, -0.5}, 1.0);
  EXPECT_NEAR(ridge.edges[0].angle, -2 * std::atan(0.5), 1e-12);
  EXPECT_TRUE(ridge.edges[0].crease);
  const Ruling ruling = rulingOf(valley.tensors[0]);
  EXPECT_NEAR(std::abs(ruling.direction[0]), 1.0, 1e-12);
  EXPECT_NEAR(ruling.strength, 2 * 2 * 2 * std::atan(0.1), 1e-12);  // at two of its corners
  EXPECT_EQ(ruling.share, 0.0);
}

// Against a tensor made of its eigenvectors.
TEST(SheetBending, TheRulingIsTheLargestEigenvector) {
  const Vector a = unit({1, 2, -2}), b = unit({2, 1, 2}), c = cross(a, b);
  const auto of = [](const Vector& e, double w) {
    return BendingTensor{w * e[0] * e[0], w * e[1] * e[1], w * e[2] * e[2],
                         w * e[0] * e[1], w * e[0] * e[2], w * e[1] * e[2]};
  };
  BendingTensor tensor = of(a, 0.5);
  tensor.add(of(b, -3.0));
  tensor.add(of(c, 1.5));
  const Ruling ruling = rulingOf(tensor);
  EXPECT_NEAR(std::abs(dot(ruling.direction, b)), 1.0, 1e-12);
  EXPECT_NEAR(ruling.strength, -3.0, 1e-12);
  EXPECT_NEAR(ruling.share, 0.5, 1e-12);
  EXPECT_EQ(rulingOf({}).strength, 0.0);
  EXPECT_EQ(rulingOf({}).share, 1.0);
}

TEST(BendZones, TakeOneRulingEach) {
  const Bent bent = sheetAlong(bendProfile(5.0), {0, 2, 4, 6, 8, 10});
  const auto bends = straightBends(bendingOf(bent.corners, bent.part, 20.0), bent.corners, bent.part);
  ASSERT_EQ(bends.size(), 1u);
  EXPECT_NEAR(std::abs(bends[0].axis[1]), 1.0, 1e-9);
  EXPECT_EQ(bends[0].triangles.size(), 8u * 5 * 2);
  EXPECT_TRUE(std::is_sorted(bends[0].triangles.begin(), bends[0].triangles.end()));
}

TEST(LineOnSheet, LeavesHolesOutAndGoesOnToTheOutlineWithinReach) {
  const std::vector<OutlineLoop> loops{{{}, {{0, 0}, {10, 0}, {10, 6}, {0, 6}}, 60},
                                       {{}, {{4, 2}, {4, 4}, {6, 4}, {6, 2}}, -4}};
  const PlaneLine line{{1, 3}, {1, 0}};
  EXPECT_EQ(crossings(line, loops), (std::vector<double>{-1, 3, 5, 9}));
  const Lines pieces = coveredPieces(line, loops, {{-0.5, 0.5}, {1, 6}, {7, 8.8}}, 0.5);
  ASSERT_EQ(pieces.size(), 2u);
  EXPECT_EQ(pieces[0], (std::array<PlanePoint, 2>{{{0, 3}, {4, 3}}}));
  EXPECT_EQ(pieces[1], (std::array<PlanePoint, 2>{{{6, 3}, {10, 3}}}));
  const Lines shorter = coveredPieces(line, loops, {{0.5, 2}}, 0.5);
  ASSERT_EQ(shorter.size(), 1u);
  EXPECT_EQ(shorter[0], (std::array<PlanePoint, 2>{{{1.5, 3}, {3, 3}}}));
  EXPECT_TRUE(coveredPieces(line, loops, {{20, 30}}, 0.5).empty());
  EXPECT_TRUE(coveredPieces({{0, 9}, {1, 0}}, loops, {{0, 5}}, 0.5).empty());
  // through corners: each counts once
  EXPECT_EQ(crossings({{0, 0}, {1 / std::sqrt(2.0), 1 / std::sqrt(2.0)}}, loops).size() % 2, 0u);
}
