// Where the part is bent: the borders of the zones whose curvature concentrates, as lines for the blank.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace host {

// Pairs of node numbers, lower one first, in ascending order: the edges where a bent triangle meets one that is not,
// and those where two triangles meet in a crease of 20 degrees or more.
//   corners  three node numbers per triangle, from 1
//   points   x, y, z of node 1, of node 2, ...
//   radius   the points' unit, > 0: what is bent less sharply counts as flat
// The curvature of a triangle is the largest difference of the normals at two of its corners over their distance; the
// normal at a corner is the mean, weighed by area, over the triangles around the node that lie within 20 degrees of
// it. A triangle is bent whose curvature reaches 1/radius and half of the largest among its neighbours: so the flat
// row that only touches a bend stays outside. Triangles without area are flat.
std::vector<std::array<std::int32_t, 2>> bendLines(const std::vector<std::int32_t>& corners,
                                                   const std::vector<double>& points, double radius);

}  // namespace host
