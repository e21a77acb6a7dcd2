#include "mesh/edges.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <utility>

using namespace host;

namespace {

// low, high, element, rising: sorted as a whole.
using Plain = std::array<std::int32_t, 4>;

std::vector<Plain> plainlySorted(const std::vector<std::int32_t>& corners) {
  std::vector<Plain> sides;
  for (std::size_t c = 0; c < corners.size(); ++c) {
    const std::int32_t from = corners[c], to = corners[c % 3 == 2 ? c - 2 : c + 1];
    sides.push_back(
        {std::min(from, to), std::max(from, to), static_cast<std::int32_t>(c / 3) + 1, from < to ? 1 : 0});
  }
  std::sort(sides.begin(), sides.end());
  return sides;
}

std::vector<Plain> found(const std::vector<std::int32_t>& corners) {
  std::vector<Plain> sides;
  for (const Side& side : sortedSides(corners))
    sides.push_back({side.low, side.high, side.element, side.rising ? 1 : 0});
  return sides;
}

}  // namespace

TEST(SortedSides, OfTrianglesInAnyNumberingAreThoseOfAPlainSort) {
  std::mt19937 random(7);
  for (const std::int32_t nodes : {3, 10, 1000, 100000}) {
    std::vector<std::int32_t> corners;
    for (int e = 0; e < 3000; ++e)
      for (int k = 0; k < 3;) {
        const auto node = static_cast<std::int32_t>(random() % static_cast<std::uint32_t>(nodes)) + 1;
        if (std::find(corners.end() - k, corners.end(), node) != corners.end()) continue;
        corners.push_back(node);
        ++k;
      }
    EXPECT_EQ(found(corners), plainlySorted(corners)) << nodes;
  }
}

TEST(SortedSides, OfAFanWithAllTrianglesAtOneNode) {
  std::vector<std::int32_t> corners;
  for (std::int32_t k = 20000; k > 1; --k) corners.insert(corners.end(), {1, k + 1, k});
  EXPECT_EQ(found(corners), plainlySorted(corners));
}

TEST(SortedSides, OfNoTriangleAreNone) {
  EXPECT_TRUE(found({}).empty());
}

TEST(SidesOf, AreSortedAnewWhenTheCornersHaveChanged) {
  Mesh mesh;
  mesh.corners = {1, 2, 3};
  const auto first = sidesOf(mesh);
  EXPECT_EQ(sidesOf(mesh), first);  // kept
  mesh.corners = {1, 3, 4};
  EXPECT_EQ(sidesOf(mesh)->sides[1].high, 4);
  EXPECT_EQ(first->sides[1].high, 3);  // what somebody holds stays
  const Mesh copy = mesh;
  EXPECT_EQ(sidesOf(copy)->sides[1].high, 4);
}

TEST(ForEachEdge, VisitsEachEdgeOnceInOrderWithItsTriangles) {
  std::vector<std::array<std::int32_t, 3>> edges;  // low, high, triangles
  const std::vector<Side> sides = sortedSides({1, 2, 3, 3, 2, 4, 2, 3, 5});
  forEachEdge(sides, [&](const Side* first, const Side* last) {
    edges.push_back({first->low, first->high, static_cast<std::int32_t>(last - first)});
  });
  EXPECT_EQ(edges, (std::vector<std::array<std::int32_t, 3>>{
                       {1, 2, 1}, {1, 3, 1}, {2, 3, 3}, {2, 4, 1}, {2, 5, 1}, {3, 4, 1}, {3, 5, 1}}));
}
