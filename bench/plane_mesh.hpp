// Plane triangulations of a square to build matrices on: as many nodes as asked for, reproducible by the
// seed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

/// Lengths in cells of the underlying grid.
struct PlaneMesh {
  std::vector<double> xy;             // x, y of node 1, of node 2, ...
  std::vector<std::int32_t> corners;  // the three nodes of triangle 1, of triangle 2, ...; index base 1

  std::int32_t nodes() const { return static_cast<std::int32_t>(xy.size() / 2); }
  std::int32_t triangles() const { return static_cast<std::int32_t>(corners.size() / 3); }
};

enum class Numbering {
  rows,    // along the rows of the grid: the most orderly one
  mesher,  // along the rows, but every 64 consecutive numbers in random order: near nodes have near numbers
  random   // all nodes in random order
};

/// About `nodes` nodes on a regular grid, diagonals alternating.
PlaneMesh structuredMesh(std::int32_t nodes, Numbering numbering, std::uint64_t seed);

/// Delaunay triangulation of such a grid whose nodes are moved by up to 0.24 cells in x and y (those of the
/// edges along their edge). Made by flipping diagonals (C. L. Lawson, Software for C1 surface interpolation,
/// 1977).
PlaneMesh jitteredDelaunayMesh(std::int32_t nodes, Numbering numbering, std::uint64_t seed);

}  // namespace bench
