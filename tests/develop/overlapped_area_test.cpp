// The area that a blank covers more than once: known shapes, and random folded meshes against all triangles.
#include "develop/overlapped_area.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "develop/check_meshes.hpp"
#include "develop/plane_predicates.hpp"

using namespace tornwalzen;
using namespace tornwalzen::test;

namespace {

PlanePoint blankOf(const CheckMesh& mesh, Int n) {
  const std::size_t i = 2 * static_cast<std::size_t>(n);
  return {mesh.blank[i - 2], mesh.blank[i - 1]};
}

double overlapOf(CheckMesh& mesh) {
  const PartMesh M = mesh.mesh();
  OwnArray<Int> twin("TWIN");
  EXPECT_TRUE(pairHalfEdges(M, twin));
  std::vector<signed char> sense;
  for (const auto& t : mesh.triangles)
    sense.push_back(
        static_cast<signed char>(orientation(blankOf(mesh, t[0]), blankOf(mesh, t[1]), blankOf(mesh, t[2]))));
  double area = -1.0;
  EXPECT_TRUE(measureOverlap(M, twin.vector(), {"SENSE", sense.data(), M.nele}, mesh.RX(), area));
  return area;
}

/// The same from all triangles: at half height of every slab between corners and crossings of all edges, the intervals
/// that the triangles cut out.
double plainOverlap(const CheckMesh& mesh) {
  struct Line {
    PlanePoint a, b;
  };
  std::vector<Line> lines;
  std::vector<double> heights;
  for (const auto& t : mesh.triangles)
    for (int c = 0; c < 3; ++c) {
      lines.push_back({blankOf(mesh, t[c]), blankOf(mesh, t[(c + 1) % 3])});
      heights.push_back(lines.back().a.y);
    }
  for (std::size_t i = 0; i < lines.size(); ++i)
    for (std::size_t j = 0; j < i; ++j) {
      const PlanePoint d{lines[i].b.x - lines[i].a.x, lines[i].b.y - lines[i].a.y};
      const PlanePoint e{lines[j].b.x - lines[j].a.x, lines[j].b.y - lines[j].a.y};
      const double det = d.x * e.y - d.y * e.x;
      if (det == 0.0) continue;
      const double w = ((lines[j].a.x - lines[i].a.x) * e.y - (lines[j].a.y - lines[i].a.y) * e.x) / det;
      if (w > 0.0 && w < 1.0) heights.push_back(lines[i].a.y + w * d.y);
    }
  std::sort(heights.begin(), heights.end());
  double area = 0.0;
  for (std::size_t k = 0; k + 1 < heights.size(); ++k) {
    const double y = 0.5 * (heights[k] + heights[k + 1]);
    std::vector<std::pair<double, int>> ends;
    for (const auto& t : mesh.triangles) {
      std::vector<double> cuts;
      for (int c = 0; c < 3; ++c) {
        const PlanePoint a = blankOf(mesh, t[c]), b = blankOf(mesh, t[(c + 1) % 3]);
        if ((a.y < y) != (b.y < y)) cuts.push_back(a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x));
      }
      if (cuts.size() != 2) continue;
      ends.push_back({std::min(cuts[0], cuts[1]), 1});
      ends.push_back({std::max(cuts[0], cuts[1]), -1});
    }
    std::sort(ends.begin(), ends.end());
    int covered = 0;
    for (std::size_t i = 0; i + 1 < ends.size(); ++i) {
      covered += ends[i].second;
      if (covered >= 2) area += (ends[i + 1].first - ends[i].first) * (heights[k + 1] - heights[k]);
    }
  }
  return area;
}

/// A strip of unit squares, glued one to the next, whose blank follows the path of their lower left corners.
CheckMesh stripAlong(const std::vector<std::pair<int, int>>& path) {
  CheckMesh strip;
  std::array<Int, 4> last{};  // nodes of the square before, counter-clockwise from the lower left
  for (std::size_t s = 0; s < path.size(); ++s) {
    const double x = path[s].first, y = path[s].second;
    std::array<Int, 4> now{};
    if (s > 0) {
      const int dx = path[s].first - path[s - 1].first, dy = path[s].second - path[s - 1].second;
      if (dx == 1) now[0] = last[1], now[3] = last[2];
      if (dx == -1) now[1] = last[0], now[2] = last[3];
      if (dy == 1) now[0] = last[3], now[1] = last[2];
      if (dy == -1) now[3] = last[0], now[2] = last[1];
    }
    const double X[4] = {x, x + 1, x + 1, x}, Y[4] = {y, y, y + 1, y + 1};
    for (int i = 0; i < 4; ++i)
      if (now[i] == 0) {
        strip.nodes.push_back({X[i], Y[i], 0.01 * double(s)});
        now[i] = static_cast<Int>(strip.nodes.size());
      }
    strip.triangles.push_back({now[0], now[1], now[2]});
    strip.triangles.push_back({now[0], now[2], now[3]});
    last = now;
  }
  strip.projectBlank();
  return strip;
}

}  // namespace

TEST(OverlappedArea, FlatSheetHasNone) {
  CheckMesh sheet = gridSheet(5, 4);
  EXPECT_EQ(overlapOf(sheet), 0.0);
  CheckMesh none;
  EXPECT_EQ(overlapOf(none), 0.0);
  sheet.turnOver();
  EXPECT_EQ(overlapOf(sheet), 0.0);  // seen from behind, but once
}

TEST(OverlappedArea, SpiralWithoutInvertedTriangles) {
  // Right 6, up 3, left 4, down through the first stretch: one square lies upon another.
  std::vector<std::pair<int, int>> path;
  for (int i = 0; i <= 6; ++i) path.push_back({i, 0});
  for (int i = 1; i <= 3; ++i) path.push_back({6, i});
  for (int i = 5; i >= 2; --i) path.push_back({i, 3});
  for (int i = 2; i >= -3; --i) path.push_back({2, i});
  CheckMesh strip = stripAlong(path);
  EXPECT_DOUBLE_EQ(overlapOf(strip), 1.0);
  for (std::size_t i = 0; i < strip.blank.size();
       i += 2) {  // sheared: areas stay, coordinates are no whole numbers
    strip.blank[i] += 0.37 * strip.blank[i + 1];
    strip.blank[i + 1] += 0.21 * strip.blank[i];
  }
  EXPECT_NEAR(overlapOf(strip), 1.0, 1e-13);
}

TEST(OverlappedArea, PleatInTheMiddle) {
  // Columns of a strip at u = 0 1 2 3 2 1 2 3 4...: the pleat lies threefold between 1 and 3; the outline's corners
  // lie upon each other too, but its overlap counts once.
  CheckMesh sheet = gridSheet(8, 3);
  const double fold[9] = {0, 1, 2, 3, 2, 1, 2, 3, 4};
  for (std::size_t n = 0; n < sheet.nodes.size(); ++n) sheet.blank[2 * n] = fold[n % 9];
  EXPECT_DOUBLE_EQ(overlapOf(sheet), 2.0 * 3.0);
}

TEST(OverlappedArea, FoldThatNoOutlineTells) {
  // A node inside is pulled across its neighbours: the outline stays a square.
  CheckMesh sheet = gridSheet(4, 4);
  sheet.blank[2 * 12] = 3.5;  // node 13, the middle, to (3.5, 2)
  const double expected = plainOverlap(sheet);
  EXPECT_GT(expected, 0.1);
  EXPECT_NEAR(overlapOf(sheet), expected, 1e-14);
}

TEST(OverlappedArea, TouchingEdgeOnEdgeIsNone) {
  // A U whose ends lie flush.
  CheckMesh strip = stripAlong({{0, 0}, {0, 1}, {0, 2}, {1, 2}, {2, 2}, {2, 1}, {2, 0}, {1, 0}});
  EXPECT_EQ(overlapOf(strip), 0.0);
}

TEST(OverlappedArea, RandomFoldedMeshesAgainstAllTriangles) {
  std::mt19937 generator(23);
  std::uniform_real_distribution<double> shift(-1.0, 1.0);
  for (int trial = 0; trial < 200; ++trial) {
    CheckMesh sheet = gridSheet(2 + trial % 3, 2 + trial % 2);
    const double scale = trial % 4 == 0 ? 0.4 : (trial % 4 == 1 ? 1.0 : 3.0);
    for (double& x : sheet.blank) {
      x += scale * shift(generator);
      if (trial % 5 == 0) x = std::round(x);  // corners on corners and edges, edges on edges
    }
    const double expected = plainOverlap(sheet);
    EXPECT_NEAR(overlapOf(sheet), expected, 1e-12 * (1.0 + expected)) << trial;
  }
}

TEST(OverlappedArea, CrumpledBeyondTheBudgetIsGoodToAHundredth) {
  // 39,200 triangles thrown into a square: what they cover many times is the square but for its rim.
  CheckMesh sheet = gridSheet(140, 140);
  std::mt19937 generator(29);
  std::uniform_real_distribution<double> place(0.0, 1.0);
  for (double& x : sheet.blank) x = place(generator);
  EXPECT_NEAR(overlapOf(sheet), 1.0, 1e-2);
}

TEST(OverlappedArea, ZigzagBeyondTheBudget) {
  // A zigzag of 3,000 rows laid upon each other, beyond the budget: it overlaps on the rows' common height, and on
  // what single rows stand out, a ten-thousandth.
  const Int rows = 3000;
  CheckMesh sheet = gridSheet(4, rows);
  for (std::size_t n = 0; n < sheet.nodes.size(); ++n) {
    const Int r = static_cast<Int>(n) / 5;
    sheet.blank[2 * n + 1] = (r % 2 == 0 ? 0.0 : 1.0) + 1e-4 * double((r * 7919) % 1000) / 1000.0;
  }
  EXPECT_NEAR(overlapOf(sheet), 4.0, 4.0 * 2e-4);
}
