// The zones in which a part is bent, and which of them are bent along a straight line.
#pragma once

#include <cstddef>
#include <vector>

#include "result/sheet_bending.hpp"

namespace host {

// A bend along a straight line, as a press brake makes it: one ruling for all its triangles.
struct StraightBend {
  Vector axis{};                       // unit vector along the part's rulings
  std::vector<std::size_t> triangles;  // ascending, from 0
  std::vector<std::size_t> edges;      // of the bending's edges those of the zone's core, ascending
};

// Bent triangles that neighbour over edges which are no creases grow from the most cylindrical one on: bent to the same side,
// the second eigenvalue of the bending at most 0.3 of the first, the ruling within 8 degrees of the zone's. Such a zone is
// straight if the rulings lie within 2.5 degrees of its axis, as a root mean square weighed by area, and its border to
// other triangles bent to the same side is at most half of the rest of its border, none if it has fewer than 8 triangles: the pieces of a ring's arc are not. Its axis is then the direction across the normals of the zone and of
// the triangles beside it, by least squares; and bent triangles that go on from it with normals within 6 degrees of
// across the axis belong to it too, where the mesh made their rulings uncertain. The bends in the order of their first
// triangles. bending: of the mesh `corners`, `points`, as bendingOf has it.
std::vector<StraightBend> straightBends(const SheetBending& bending, const std::vector<std::int32_t>& corners,
                                        const std::vector<double>& points);

}  // namespace host
