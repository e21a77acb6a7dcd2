// The outline of the flat blank: its border as closed loops, and whether they cross.
#pragma once

#include <cstdint>
#include <vector>

#include "result/smallest_rectangle.hpp"

namespace host {

struct OutlineLoop {
  std::vector<std::int32_t> nodes;  // in the order of the border, from 1; the sheet lies on the left
  std::vector<PlanePoint> points;   // of those nodes, the blank's unit
  double area = 0.0;                // signed, square of that unit: positive counter-clockwise
};

struct Outline {
  std::vector<OutlineLoop> loops;  // the outer one first, then the holes, larger ones first
  std::int64_t crossings = 0;      // pairs of border edges that cross: above 0, no sheet can be cut so
};

// corners: three node numbers per triangle, 1..number of nodes, all triangles turned the same way, as the library
// leaves them. positions: u, v of node 1, of node 2, ... in any unit. The outer loop is the one with the largest
// area; each loop begins at its lowest node. Throws Failure: a position that is not finite, an edge that two
// triangles run along in one direction, no border at all.
Outline outlineOf(const std::vector<std::int32_t>& corners, const std::vector<double>& positions);

// Pairs of edges, of one loop or of two, that cross in a point inside both. Edges that share a node do not count,
// nor those that only touch.
std::int64_t countCrossings(const std::vector<OutlineLoop>& loops);

}  // namespace host
