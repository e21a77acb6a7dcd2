// What is a sheet and what is not: surfaces of known topology, and random ones against a plain count over all edges.
#include "develop/part_topology.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <set>

#include "develop/check_meshes.hpp"
#include "ground/thread_pool.hpp"
#include "tornwalzen_ext.h"

using namespace tornwalzen;
using namespace tornwalzen::test;

namespace {

std::vector<Int> listed(const OwnArray<Int>& array) {
  return {array.data(), array.data() + array.length()};
}

/// Two threads must find what one finds, and of several faults the same one first.
void expectSame(const PartTopology& a, const PartTopology& b) {
  const auto counts = [](const PartTopology& T) {
    return std::vector<Int>{
        T.code,         T.index,          T.edges,      T.pieces,       T.usedNodes,
        T.looseNodes,   T.firstLooseNode, T.mixedEdges, T.edgesOfThree, T.repeatedNodes,
        T.pinchedNodes, T.euler,          T.handles,    T.loops,        T.edgesClean ? 1 : 0};
  };
  EXPECT_EQ(counts(a), counts(b));
  EXPECT_EQ(a.value, b.value);
  EXPECT_EQ(listed(a.TWIN), listed(b.TWIN));
  EXPECT_EQ(listed(a.LOOPNODE), listed(b.LOOPNODE));
  EXPECT_EQ(listed(a.LOOPSTART), listed(b.LOOPSTART));
}

PartTopology topologyOf(CheckMesh& mesh) {
  static const std::unique_ptr<ThreadPool> pool = ThreadPool::start(2);
  PartTopology T, inThreads;
  EXPECT_TRUE(findPartTopology(mesh.mesh(), T));
  EXPECT_TRUE(findPartTopology(mesh.mesh(), inThreads, pool.get()));
  expectSame(T, inThreads);
  return T;
}

std::vector<std::vector<Int>> loopsOf(const PartTopology& T) {
  std::vector<std::vector<Int>> loops;
  for (Int l = 1; l <= T.loops; ++l) {
    loops.emplace_back();
    for (Int i = T.LOOPSTART.vector()(l); i < T.LOOPSTART.vector()(l + 1); ++i)
      loops.back().push_back(T.LOOPNODE.vector()(i));
  }
  return loops;
}

void expectCode(const PartTopology& T, Int code, Int index, double value) {
  EXPECT_EQ(T.code, code);
  EXPECT_EQ(T.index, index);
  EXPECT_EQ(T.value, value);
}

/// Closes a grid of `columns` × `rows` squares to a ring over its columns (twisted: a Moebius strip) and, where
/// `closed`, over its rows to a torus.
CheckMesh ring(Int columns, Int rows, bool twisted, bool closed) {
  CheckMesh mesh;
  const Int nodeRows = closed ? rows : rows + 1;
  for (Int r = 0; r < nodeRows; ++r)
    for (Int c = 0; c < columns; ++c) mesh.nodes.push_back({double(c), double(r), 0.1 * c * r});
  const auto node = [&](Int c, Int r) {
    if (c == columns && twisted) r = rows - r;
    return (r % nodeRows) * columns + c % columns + 1;
  };
  for (Int r = 0; r < rows; ++r)
    for (Int c = 0; c < columns; ++c) {
      mesh.triangles.push_back({node(c, r), node(c + 1, r), node(c + 1, r + 1)});
      mesh.triangles.push_back({node(c, r), node(c + 1, r + 1), node(c, r + 1)});
    }
  return mesh;
}

CheckMesh octahedron() {
  CheckMesh mesh;
  mesh.nodes = {{1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}};
  mesh.triangles = {{1, 2, 5}, {2, 3, 5}, {3, 4, 5}, {4, 1, 5}, {2, 1, 6}, {3, 2, 6}, {4, 3, 6}, {1, 4, 6}};
  return mesh;
}

/// Takes the squares (column, row) out of a grid of `columns`.
void punch(CheckMesh& sheet, Int columns, const std::vector<std::pair<Int, Int>>& squares) {
  std::set<Int> out;
  for (const auto& [c, r] : squares) out.insert({2 * (r * columns + c), 2 * (r * columns + c) + 1});
  std::vector<std::array<Int, 3>> kept;
  for (Int e = 0; e < static_cast<Int>(sheet.triangles.size()); ++e)
    if (!out.count(e)) kept.push_back(sheet.triangles[e]);
  sheet.triangles = kept;
}

}  // namespace

TEST(PartTopologyTest, OneTriangleIsADisc) {
  CheckMesh one;
  one.nodes = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
  one.triangles = {{2, 3, 1}};
  const PartTopology T = topologyOf(one);
  expectCode(T, TORNWALZEN_OK, 0, 0.0);
  EXPECT_EQ(T.edges, 3);
  EXPECT_EQ(T.euler, 1);
  EXPECT_EQ(T.pieces, 1);
  EXPECT_EQ(loopsOf(T), (std::vector<std::vector<Int>>{{2, 3, 1}}));
}

TEST(PartTopologyTest, NoTriangleIsRefused) {
  CheckMesh none;
  expectCode(topologyOf(none), TORNWALZEN_BAD_COUNT, 0, 0.0);
  none.nodes = {{0, 0, 0}, {1, 0, 0}};
  const PartTopology T = topologyOf(none);
  expectCode(T, TORNWALZEN_BAD_COUNT, 0, 0.0);
  EXPECT_EQ(T.looseNodes, 2);
  EXPECT_EQ(T.firstLooseNode, 1);
  EXPECT_EQ(T.pieces, 0);
  EXPECT_FALSE(T.edgesClean);
}

TEST(PartTopologyTest, DiscWithThreeHolesAndTheLongestLoopFirst) {
  CheckMesh sheet = gridSheet(9, 5);
  punch(sheet, 9, {{1, 1}, {3, 3}, {6, 2}, {7, 2}});
  const PartTopology T = topologyOf(sheet);
  expectCode(T, TORNWALZEN_OK, 0, 0.0);
  EXPECT_EQ(T.loops, 4);
  EXPECT_EQ(T.euler, -2);
  EXPECT_EQ(T.handles, 0);
  std::vector<std::size_t> lengths;
  for (const auto& loop : loopsOf(T)) lengths.push_back(loop.size());
  EXPECT_EQ(lengths, (std::vector<std::size_t>{28, 4, 6, 4}));
  // The same with a hole that is longer than the outer loop on the part: it comes first.
  for (const std::size_t n : {11, 12, 21, 22}) sheet.nodes[n][2] += 100.0 * double(n);
  for (auto& p : sheet.nodes) p = {p[0] + 5000.0, p[1] - 7000.0, p[2] + 9000.0};  // nor does its place matter
  const auto loops = loopsOf(topologyOf(sheet));
  EXPECT_EQ(loops[0].size(), 4u);
  EXPECT_EQ(loops[1].size(), 28u);
  EXPECT_EQ(loops[2].size(), 6u);
}

TEST(PartTopologyTest, LoopsHaveTheSheetOnTheirLeft) {
  CheckMesh sheet = gridSheet(3, 3);
  punch(sheet, 3, {{1, 1}});
  const auto loops = loopsOf(topologyOf(sheet));
  ASSERT_EQ(loops.size(), 2u);
  EXPECT_EQ(loops[0], (std::vector<Int>{1, 2, 3, 4, 8, 12, 16, 15, 14, 13, 9, 5}));
  EXPECT_EQ(loops[1], (std::vector<Int>{7, 6, 10, 11}));
}

TEST(PartTopologyTest, LooseNodesAreToldAndNoFault) {
  CheckMesh sheet = gridSheet(2, 2);
  sheet.nodes.push_back({5, 5, 5});
  sheet.nodes.push_back({6, 5, 5});
  const PartTopology T = topologyOf(sheet);
  expectCode(T, TORNWALZEN_OK, 0, 0.0);
  EXPECT_EQ(T.usedNodes, 9);
  EXPECT_EQ(T.looseNodes, 2);
  EXPECT_EQ(T.firstLooseNode, 10);
  EXPECT_EQ(T.euler, 1);
}

TEST(PartTopologyTest, ClosedSurfaces) {
  CheckMesh sphere = octahedron();
  PartTopology T = topologyOf(sphere);
  expectCode(T, TORNWALZEN_CLOSED_SURFACE, 0, 8.0);
  EXPECT_EQ(T.euler, 2);
  CheckMesh torus = ring(5, 4, false, true);
  T = topologyOf(torus);
  expectCode(T, TORNWALZEN_CLOSED_SURFACE, 0, 40.0);
  EXPECT_EQ(T.euler, 0);
}

TEST(PartTopologyTest, TorusWithAHoleHasAHandle) {
  CheckMesh torus = ring(5, 4, false, true);
  torus.triangles.erase(torus.triangles.begin() + 7);
  const PartTopology T = topologyOf(torus);
  expectCode(T, TORNWALZEN_HANDLE, 0, 1.0);
  EXPECT_EQ(T.handles, 1);
  EXPECT_EQ(T.loops, 1);
  EXPECT_EQ(T.euler, -1);
}

TEST(PartTopologyTest, SlitTubeIsASheetAndARingToo) {
  CheckMesh tube = ring(6, 2, false, false);
  const PartTopology T = topologyOf(tube);
  expectCode(T, TORNWALZEN_OK, 0, 0.0);
  EXPECT_EQ(T.loops, 2);
}

TEST(PartTopologyTest, MoebiusStripIsTurnedAgainstItself) {
  CheckMesh strip = ring(6, 2, true, false);
  const PartTopology T = topologyOf(strip);
  EXPECT_EQ(T.code, TORNWALZEN_MIXED_ORIENTATION);
  EXPECT_EQ(T.mixedEdges, 2);  // the two edges of the seam
  expectCode(T, TORNWALZEN_MIXED_ORIENTATION, 1, 7.0);
  EXPECT_FALSE(T.edgesClean);
  EXPECT_EQ(T.loops, 0);
}

TEST(PartTopologyTest, OneTurnedTriangle) {
  CheckMesh sheet = gridSheet(3, 3);
  std::swap(sheet.triangles[8][1], sheet.triangles[8][2]);  // the middle one: three inner edges
  const PartTopology T = topologyOf(sheet);
  expectCode(T, TORNWALZEN_MIXED_ORIENTATION, 6, 7.0);
  EXPECT_EQ(T.mixedEdges, 3);
}

TEST(PartTopologyTest, DiscsJoinedAtANode) {
  CheckMesh bow;
  bow.nodes = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}};
  bow.triangles = {{1, 2, 3}, {1, 4, 5}};
  PartTopology T = topologyOf(bow);
  expectCode(T, TORNWALZEN_PINCHED_NODE, 1, 1.0);
  EXPECT_EQ(T.pieces, 1);
  EXPECT_EQ(T.loops, 2);
  // Two cones that touch at their tips: closed fans.
  CheckMesh cones;
  cones.nodes = {{0, 0, 0}, {1, 0, 1}, {0, 1, 1}, {-1, -1, 1}, {1, 0, -1}, {0, 1, -1}, {-1, -1, -1}};
  cones.triangles = {{1, 2, 3}, {1, 3, 4}, {1, 4, 2}, {1, 5, 6}, {1, 6, 7}, {1, 7, 5}};
  T = topologyOf(cones);
  expectCode(T, TORNWALZEN_PINCHED_NODE, 1, 1.0);
  // Two spheres in a point: pinched before closed.
  CheckMesh spheres = octahedron();
  spheres.add(octahedron());
  for (auto& t : spheres.triangles)
    for (Int& n : t) n = n == 7 ? 1 : n;
  T = topologyOf(spheres);
  expectCode(T, TORNWALZEN_PINCHED_NODE, 1, 1.0);
  EXPECT_EQ(T.looseNodes, 1);
}

TEST(PartTopologyTest, SeveralPiecesNameATriangleOutsideTheLargest) {
  CheckMesh crumb = gridSheet(1, 1);
  crumb.add(gridSheet(3, 3));
  PartTopology T = topologyOf(crumb);
  expectCode(T, TORNWALZEN_SEVERAL_PIECES, 1, 2.0);
  EXPECT_EQ(T.loops, 2);
  CheckMesh sheets = gridSheet(3, 3);
  sheets.add(gridSheet(3, 3));
  sheets.add(octahedron());
  T = topologyOf(sheets);
  expectCode(T, TORNWALZEN_SEVERAL_PIECES, 19, 3.0);
}

TEST(PartTopologyTest, EdgeOfThreeTriangles) {
  CheckMesh fin = gridSheet(2, 2);
  fin.nodes.push_back({1, 1, 1});
  fin.triangles.push_back({5, 6, 10});
  const PartTopology T = topologyOf(fin);
  expectCode(T, TORNWALZEN_EDGE_OF_THREE, 5, 6.0);
  EXPECT_EQ(T.edgesOfThree, 1);
  EXPECT_EQ(T.mixedEdges, 0);
  EXPECT_FALSE(T.edgesClean);
}

TEST(PartTopologyTest, TriangleTwiceAndTriangleWithANodeTwice) {
  CheckMesh sheet = gridSheet(1, 1);
  sheet.triangles.push_back(sheet.triangles[0]);
  expectCode(topologyOf(sheet), TORNWALZEN_EDGE_OF_THREE, 1, 4.0);
  sheet.triangles[2] = {3, 2, 3};
  PartTopology T = topologyOf(sheet);
  expectCode(T, TORNWALZEN_REPEATED_NODE, 3, 3.0);
  sheet.triangles[2] = {2, 2, 2};
  expectCode(topologyOf(sheet), TORNWALZEN_REPEATED_NODE, 3, 2.0);
  sheet.triangles[2] = {2, 4, 4};
  expectCode(topologyOf(sheet), TORNWALZEN_REPEATED_NODE, 3, 4.0);
}

TEST(PartTopologyTest, CoordinatesThatAreNotNumbersOnlyLoseTheOrderOfLoops) {
  CheckMesh sheet = gridSheet(3, 3);
  punch(sheet, 3, {{1, 1}});
  for (auto& p : sheet.nodes) p = {NAN, INFINITY, 0.0};
  const PartTopology T = topologyOf(sheet);
  expectCode(T, TORNWALZEN_OK, 0, 0.0);
  EXPECT_EQ(T.loops, 2);
}

// Random subsets of the triangles of a grid, some turned, some glued: against a plain count with maps.
TEST(PartTopologyTest, RandomMeshesAgainstAPlainCount) {
  std::mt19937 generator(3);
  std::map<Int, int> codes;
  for (int trial = 0; trial < 3000; ++trial) {
    const auto draw = [&generator](int n) {
      return static_cast<int>(generator() % static_cast<unsigned>(n));
    };
    CheckMesh mesh = gridSheet(2 + draw(4), 2 + draw(4));
    std::shuffle(mesh.triangles.begin(), mesh.triangles.end(), generator);
    if (draw(2)) mesh.triangles.resize(1 + draw(static_cast<int>(mesh.triangles.size())));
    if (draw(6) == 0) std::swap(mesh.triangles[0][0], mesh.triangles[0][1]);
    if (draw(3) == 0) {  // glue two nodes
      const Int from = 1 + draw(static_cast<int>(mesh.nodes.size())),
                to = 1 + draw(static_cast<int>(mesh.nodes.size()));
      for (auto& t : mesh.triangles)
        for (Int& n : t) n = n == from ? to : n;
    }
    const PartTopology T = topologyOf(mesh);
    ++codes[T.code];

    std::map<std::pair<Int, Int>, std::vector<std::pair<Int, Int>>> uses;  // edge: (triangle, sense)
    std::set<Int> used;
    int repeated = 0;
    for (Int e = 0; e < static_cast<Int>(mesh.triangles.size()); ++e) {
      const auto& t = mesh.triangles[e];
      repeated += t[0] == t[1] || t[1] == t[2] || t[2] == t[0];
      used.insert(t.begin(), t.end());
      for (int c = 0; c < 3; ++c) {
        const Int a = t[c], b = t[(c + 1) % 3];
        uses[std::minmax(a, b)].push_back({e, a < b ? 1 : -1});
      }
    }
    int three = 0, mixed = 0, boundary = 0;
    for (const auto& [edge, list] : uses) {
      three += list.size() > 2;
      mixed += list.size() == 2 && list[0].second == list[1].second;
      boundary += list.size() == 1;
    }
    EXPECT_EQ(T.usedNodes, static_cast<Int>(used.size()));
    EXPECT_EQ(T.edges, static_cast<Int>(uses.size()));
    EXPECT_EQ(T.edgesOfThree, three);
    EXPECT_EQ(T.repeatedNodes, repeated);
    EXPECT_EQ(T.mixedEdges, mixed);

    // Fans: triangles round a node that hang together over edges at that node; pieces: over nodes.
    const auto components = [&](Int node) {
      std::vector<Int> members, label;
      for (Int e = 0; e < static_cast<Int>(mesh.triangles.size()); ++e) {
        const auto& t = mesh.triangles[e];
        if (node == 0 || std::count(t.begin(), t.end(), node)) members.push_back(e);
      }
      label.resize(members.size());
      std::iota(label.begin(), label.end(), 0);
      for (bool changed = true; changed;) {
        changed = false;
        for (std::size_t i = 0; i < members.size(); ++i)
          for (std::size_t j = 0; j < members.size(); ++j) {
            int common = 0;
            for (const Int n : mesh.triangles[members[i]])
              common +=
                  std::count(mesh.triangles[members[j]].begin(), mesh.triangles[members[j]].end(), n) > 0;
            if (common >= (node == 0 ? 1 : 2) && label[j] < label[i]) label[i] = label[j], changed = true;
          }
      }
      return static_cast<int>(std::set<Int>(label.begin(), label.end()).size());
    };
    const int pieces = components(0);
    EXPECT_EQ(T.pieces, pieces);
    Int expected = TORNWALZEN_OK;
    if (repeated) {
      expected = TORNWALZEN_REPEATED_NODE;
    } else if (three) {
      expected = TORNWALZEN_EDGE_OF_THREE;
    } else if (mixed) {
      expected = TORNWALZEN_MIXED_ORIENTATION;
    } else {
      int pinched = 0;
      for (const Int n : used) pinched += components(n) > 1;
      EXPECT_EQ(T.pinchedNodes, pinched);
      std::size_t onLoops = 0;
      for (const auto& loop : loopsOf(T)) {
        onLoops += loop.size();
        for (std::size_t i = 0; i < loop.size(); ++i) {
          const Int a = loop[i], b = loop[(i + 1) % loop.size()];
          const auto& list = uses[std::minmax(a, b)];
          EXPECT_EQ(list.size(), 1u);
          EXPECT_EQ(list[0].second, a < b ? 1 : -1);
        }
      }
      EXPECT_EQ(onLoops, static_cast<std::size_t>(boundary));
      const int euler = static_cast<int>(used.size() + mesh.triangles.size()) - static_cast<int>(uses.size());
      if (pieces > 1)
        expected = TORNWALZEN_SEVERAL_PIECES;
      else if (pinched)
        expected = TORNWALZEN_PINCHED_NODE;
      else if (boundary == 0)
        expected = TORNWALZEN_CLOSED_SURFACE;
      else if (euler != 2 - T.loops)
        expected = TORNWALZEN_HANDLE;
    }
    EXPECT_EQ(T.code, expected) << trial;
  }
  EXPECT_GE(codes.size(), 6u);  // the random meshes reach most kinds
}
