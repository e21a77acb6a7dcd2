// The figures of a blank: right ones, folded ones, outlines that cross, and input that is no geometry.
#include "develop/blank_checks.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <set>

#include "develop/check_meshes.hpp"

using namespace tornwalzen;
using namespace tornwalzen::test;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

BlankChecks check(CheckMesh& mesh, const std::vector<double>& strains = {}, double curveEnd = 0.3) {
  const PartMesh M = mesh.mesh();
  PartTopology T;
  MeanNormal F;
  BlankChecks B;
  EXPECT_TRUE(findPartTopology(M, T));
  EXPECT_TRUE(findMeanNormal(M, F));
  const StrainCheck S{{"STRAIN", strains.data(), static_cast<Int64>(strains.size())}, curveEnd};
  EXPECT_TRUE(checkBlank(M, T, F, mesh.RX(), S, B));
  return B;
}

void expectRight(const BlankChecks& B) {
  EXPECT_TRUE(B.sheetChecked);
  EXPECT_EQ(B.notFinite, 0);
  EXPECT_EQ(B.inverted, 0);
  EXPECT_EQ(B.openNodes, 0);
  EXPECT_EQ(B.outline.crossings, 0);
  EXPECT_EQ(B.outline.touches, 0);
  EXPECT_EQ(B.outline.misplacedLoops, 0);
  EXPECT_EQ(B.overlappedArea, 0.0);
}

/// The smaller singular value by the eigenvalues of JᵀJ in plane coordinates: for a part that lies in z = 0.
double plainStretch(const CheckMesh& mesh, std::size_t e) {
  const auto& t = mesh.triangles[e];
  const auto X = [&](int c, std::size_t i) { return mesh.nodes[static_cast<std::size_t>(t[c]) - 1][i]; };
  const auto U = [&](int c, std::size_t i) { return mesh.blank[2 * static_cast<std::size_t>(t[c]) - 2 + i]; };
  const long double p[2] = {X(1, 0) - X(0, 0), X(1, 1) - X(0, 1)},
                    q[2] = {X(2, 0) - X(0, 0), X(2, 1) - X(0, 1)};
  const long double det = p[0] * q[1] - p[1] * q[0];
  long double J[2][2];
  for (std::size_t i = 0; i < 2; ++i) {
    const long double a = U(1, i) - U(0, i), b = U(2, i) - U(0, i);
    J[i][0] = (a * q[1] - b * p[1]) / det;
    J[i][1] = (b * p[0] - a * q[0]) / det;
  }
  const long double c11 = J[0][0] * J[0][0] + J[1][0] * J[1][0], c22 = J[0][1] * J[0][1] + J[1][1] * J[1][1];
  const long double c12 = J[0][0] * J[0][1] + J[1][0] * J[1][1], d = (c11 - c22) / 2;
  const long double s1 = std::sqrt((c11 + c22) / 2 + std::sqrt(d * d + c12 * c12));
  return static_cast<double>((J[0][0] * J[1][1] - J[0][1] * J[1][0]) / s1);
}

}  // namespace

TEST(BlankChecksTest, FlatSheetIsRight) {
  CheckMesh sheet = gridSheet(6, 4);
  const BlankChecks B = check(sheet);
  expectRight(B);
  EXPECT_DOUBLE_EQ(B.smallestStretch, 1.0);
  EXPECT_EQ(B.partArea, 24.0);
  EXPECT_EQ(B.blankArea, 24.0);
  EXPECT_EQ(B.undercutArea, 0.0);
  EXPECT_EQ(B.shareBeyondCurve, 0.0);
}

TEST(BlankChecksTest, OneTriangleAndNone) {
  CheckMesh one;
  one.nodes = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
  one.triangles = {{1, 2, 3}};
  one.projectBlank();
  expectRight(check(one));
  CheckMesh none;
  const BlankChecks B = check(none);
  EXPECT_FALSE(B.sheetChecked);
  EXPECT_EQ(B.partArea, 0.0);
  EXPECT_EQ(B.undercutShare, 0.0);
}

TEST(BlankChecksTest, StretchAgainstTheEigenvalues) {
  std::mt19937 generator(31);
  std::uniform_real_distribution<double> shift(-0.8, 0.8);
  for (int trial = 0; trial < 300; ++trial) {
    CheckMesh sheet = gridSheet(3, 3);
    for (double& x : sheet.blank) x += shift(generator);
    double smallest = infinity;
    Int at = 0;
    for (std::size_t e = 0; e < sheet.triangles.size(); ++e)
      if (plainStretch(sheet, e) < smallest) smallest = plainStretch(sheet, e), at = static_cast<Int>(e) + 1;
    double T[3][3];
    randomRotation(generator, T);
    sheet.turn(T);
    const BlankChecks B = check(sheet);
    EXPECT_NEAR(B.smallestStretch, smallest, 1e-14 * 10.0);
    EXPECT_EQ(B.smallestStretchTriangle, at);
  }
}

TEST(BlankChecksTest, InvertedAndFlatTrianglesCount) {
  CheckMesh sheet = gridSheet(4, 4);
  sheet.blank[2 * 12] = 3.0;  // the middle node upon its right neighbour: triangles without area
  Int inverted = 0, first = 0;
  for (std::size_t e = 0; e < sheet.triangles.size(); ++e)
    if (!(plainStretch(sheet, e) > 0.0) && inverted++ == 0) first = static_cast<Int>(e) + 1;
  const BlankChecks B = check(sheet);
  EXPECT_GT(inverted, 0);
  EXPECT_EQ(B.inverted, inverted);
  EXPECT_EQ(B.firstInverted, first);
  EXPECT_EQ(B.outline.crossings, 0);
}

TEST(BlankChecksTest, FoldInTheMiddleThatTheOutlineDoesNotTell) {
  CheckMesh sheet = gridSheet(4, 4);
  sheet.blank[2 * 12] = 3.5;
  const BlankChecks B = check(sheet);
  EXPECT_GT(B.inverted, 0);
  EXPECT_LT(B.smallestStretch, 0.0);
  std::set<Int> open;
  for (std::size_t e = 0; e < sheet.triangles.size(); ++e)
    if (!(plainStretch(sheet, e) > 0.0)) open.insert(sheet.triangles[e].begin(), sheet.triangles[e].end());
  for (Int n = 1; n <= 25; ++n)
    if (n <= 6 || n >= 20 || n % 5 <= 1) open.erase(n);  // on the outline
  EXPECT_EQ(B.openNodes, static_cast<Int>(open.size()));
  EXPECT_EQ(B.firstOpenNode, *open.begin());
  EXPECT_EQ(B.outline.crossings, 0);
  EXPECT_GT(B.overlappedArea, 0.1);
  EXPECT_DOUBLE_EQ(B.blankArea, 16.0);  // signed areas do not tell either
}

TEST(BlankChecksTest, NodeThatClosesTwice) {
  // A rosette of ten triangles round node 1 whose blank runs round it twice, none turned over.
  CheckMesh rosette;
  rosette.nodes.push_back({0, 0, 0});
  rosette.blank = {0, 0};
  for (Int i = 0; i < 10; ++i) {
    const double t = 0.2 * std::acos(-1.0) * i;
    rosette.nodes.push_back({std::cos(t), std::sin(t), 0.0});
    rosette.blank.insert(rosette.blank.end(), {std::cos(2 * t), std::sin(2 * t)});
    rosette.triangles.push_back({1, 2 + i, 2 + (i + 1) % 10});
  }
  BlankChecks B = check(rosette);
  EXPECT_EQ(B.inverted, 0);
  EXPECT_EQ(B.openNodes, 1);
  EXPECT_EQ(B.firstOpenNode, 1);
  EXPECT_NEAR(B.overlappedArea, 2.5 * std::sin(0.4 * std::acos(-1.0)), 1e-14);  // the pentagon, all of it
  EXPECT_EQ(B.outline.crossings + B.outline.touches > 0, true);
  rosette.projectBlank();
  expectRight(check(rosette));
}

TEST(BlankChecksTest, FigureEight) {
  CheckMesh strip = gridSheet(2, 1);
  strip.blank = {0, 0, 4, 2, 8, 4, 0, 4, 4, 2.5, 8, 0};  // the right end is turned over
  const BlankChecks B = check(strip);
  EXPECT_EQ(B.outline.crossings, 1);
  EXPECT_GT(B.inverted, 0);
  EXPECT_GE(B.outline.PLACE[0], 4.0);
  EXPECT_LE(B.outline.PLACE[0], 8.0);
}

TEST(BlankChecksTest, HoleThatPokesOut) {
  CheckMesh sheet = gridSheet(3, 3);
  sheet.triangles.erase(sheet.triangles.begin() + 8, sheet.triangles.begin() + 10);  // the middle square
  expectRight(check(sheet));
  sheet.blank[2 * 10] = 3.5;  // node 11, right upper corner of the hole, beyond the right side at u = 3
  const BlankChecks B = check(sheet);
  EXPECT_EQ(B.outline.crossings, 2);
  EXPECT_EQ(B.outline.PLACE[0], 3.0);
  EXPECT_GT(B.inverted, 0);
  EXPECT_GT(B.overlappedArea, 0.0);
}

TEST(BlankChecksTest, BlankSeenFromBehind) {
  CheckMesh sheet = gridSheet(3, 3);
  for (std::size_t i = 0; i < sheet.blank.size(); i += 2) sheet.blank[i] = -sheet.blank[i];
  const BlankChecks B = check(sheet);
  EXPECT_EQ(B.inverted, 18);
  EXPECT_EQ(B.openNodes, 4);
  EXPECT_EQ(B.outline.misplacedLoops, 1);
  EXPECT_EQ(B.overlappedArea, 0.0);
  EXPECT_DOUBLE_EQ(B.smallestStretch, -1.0);
}

TEST(BlankChecksTest, Undercut) {
  // A floor of 4 × 1, a wall straight up and a lip of 1 back over the floor: the lip's normal points down.
  CheckMesh lip;
  const double X[4] = {0, 4, 4, 3}, Z[4] = {0, 0, 1, 1};
  for (int r = 0; r <= 1; ++r)
    for (int c = 0; c < 4; ++c) lip.nodes.push_back({X[c], double(r), Z[c]});
  lip.triangles = gridIncidences(3, 1);
  lip.blank = {0, 0, 4, 0, 5, 0, 6, 0, 0, 1, 4, 1, 5, 1, 6, 1};
  const BlankChecks B = check(lip);  // mean normal (−1, 0, 3)/√10: the lip's component is −3/√10
  expectRight(B);
  EXPECT_DOUBLE_EQ(B.undercutArea, 1.0);
  EXPECT_DOUBLE_EQ(B.undercutShare, 1.0 / 6.0);
}

TEST(BlankChecksTest, SharesOfStrain) {
  CheckMesh sheet = gridSheet(2, 2);
  sheet.nodes[4] = {1.0, 1.0, 0.0};
  const std::vector<double> strains{0.1, 0.3, 0.31, 1.0, 1.1, notANumber, 0.0, infinity};
  BlankChecks B = check(sheet, strains, 0.3);
  EXPECT_DOUBLE_EQ(B.shareBeyondCurve, 5.0 / 8.0);
  EXPECT_DOUBLE_EQ(B.shareBeyondLarge, 3.0 / 8.0);
  EXPECT_EQ(B.firstBeyondCurve, 3);
  EXPECT_EQ(B.firstBeyondLarge, 5);
  sheet.nodes[0] = sheet.nodes[1];  // two triangles lose their area: what strain they have says nothing
  B = check(sheet, {notANumber, notANumber, 0, 0, 0, 0, 0, 0}, 0.3);
  EXPECT_EQ(B.withoutArea, 1);
  EXPECT_EQ(B.firstWithoutArea, 1);
}

TEST(BlankChecksTest, PositionsThatAreNotFinite) {
  for (const double bad : {notANumber, infinity, -infinity, 1.1e100}) {
    CheckMesh sheet = gridSheet(3, 3);
    sheet.blank[2 * 5 + 1] = bad;
    const BlankChecks B = check(sheet);
    EXPECT_EQ(B.notFinite, 6);
    EXPECT_EQ(B.firstNotFinite, 1);
    EXPECT_FALSE(B.sheetChecked);
    EXPECT_EQ(B.inverted, 0);
    EXPECT_DOUBLE_EQ(B.smallestStretch, 1.0);
  }
  // A loose node may be anywhere.
  CheckMesh sheet = gridSheet(3, 3);
  sheet.nodes.push_back({notANumber, notANumber, notANumber});
  sheet.blank.insert(sheet.blank.end(), {notANumber, notANumber});
  expectRight(check(sheet));
}

TEST(BlankChecksTest, PartsThatAreNotFinite) {
  CheckMesh sheet = gridSheet(3, 3);
  sheet.nodes[5][2] = notANumber;
  sheet.nodes[15][0] = infinity;
  const BlankChecks B = check(sheet);
  EXPECT_EQ(B.withoutArea, 8);
  EXPECT_EQ(B.partArea, 5.0);
  EXPECT_DOUBLE_EQ(B.smallestStretch, 1.0);
  EXPECT_TRUE(B.sheetChecked);
}

TEST(BlankChecksTest, CollapsedBlank) {
  CheckMesh sheet = gridSheet(20, 20);
  for (double& x : sheet.blank) x = 7.0;
  BlankChecks B = check(sheet);
  EXPECT_EQ(B.inverted, 800);
  EXPECT_EQ(B.smallestStretch, 0.0);
  EXPECT_EQ(B.openNodes, 19 * 19);
  EXPECT_EQ(B.overlappedArea, 0.0);
  for (std::size_t i = 0; i < sheet.blank.size(); i += 2) sheet.blank[i] = double(i);  // on a line
  B = check(sheet);
  EXPECT_EQ(B.inverted, 800);
  EXPECT_EQ(B.overlappedArea, 0.0);
}

TEST(BlankChecksTest, UncleanEdgesLeaveTheSheetUnchecked) {
  CheckMesh sheet = gridSheet(3, 3);
  std::swap(sheet.triangles[8][1], sheet.triangles[8][2]);
  const BlankChecks B = check(sheet);
  EXPECT_FALSE(B.sheetChecked);
  EXPECT_EQ(B.inverted, 1);
  EXPECT_EQ(B.firstInverted, 9);
}

// Whatever the blank: no inverted triangle, no crossing and no touch go with no overlap, and an overlap with one of
// these; and the same blank in other units or turned by 90 degrees has the same counts.
TEST(BlankChecksTest, RandomBlanksAgreeWithThemselves) {
  std::mt19937 generator(37);
  std::uniform_real_distribution<double> shift(-1.0, 1.0);
  int right = 0, wrong = 0;
  for (int trial = 0; trial < 500; ++trial) {
    CheckMesh sheet = gridSheet(5, 4);
    sheet.triangles.erase(sheet.triangles.begin() + 14, sheet.triangles.begin() + 16);
    for (double& x : sheet.blank) x += 0.2 * (trial % 4) * shift(generator);
    const BlankChecks B = check(sheet);
    const bool sound = B.inverted == 0 && B.outline.crossings == 0;
    ++(sound ? right : wrong);
    EXPECT_EQ(B.overlappedArea == 0.0, sound);
    EXPECT_EQ(B.openNodes == 0 || !sound, true);
    for (std::size_t i = 0; i < sheet.blank.size(); i += 2) {
      const double u = sheet.blank[i], v = sheet.blank[i + 1];
      sheet.blank[i] = -1024.0 * v;
      sheet.blank[i + 1] = 1024.0 * u;
    }
    const BlankChecks C = check(sheet);
    EXPECT_EQ(C.inverted, B.inverted);
    EXPECT_EQ(C.openNodes, B.openNodes);
    EXPECT_EQ(C.outline.crossings, B.outline.crossings);
    EXPECT_EQ(C.outline.PLACE[1], 1024.0 * B.outline.PLACE[0]);
    EXPECT_NEAR(C.overlappedArea, 1048576.0 * B.overlappedArea, 1e-5);
  }
  EXPECT_GT(right, 50);
  EXPECT_GT(wrong, 50);
}
