// The seams between the pieces of a mesh: how far apart the borders of two pieces are.
#pragma once

#include <cstdint>
#include <vector>

namespace host {

// Of the nodes on the borders of the pieces the two of different pieces that are nearest.
struct Seam {
  std::int64_t node = 0,
               other = 0;       // from 1, node <= other, equal where two pieces share it; 0: there are no two
  double gap = 0.0;             // their distance, unit of the points
  double shortestBorder = 0.0;  // the shortest edge on a border, unit of the points
};

// points: x, y, z per node, finite. corners: three node numbers per triangle, in range. piece: per triangle a number
// that those of a piece share.
Seam nearestSeam(const std::vector<double>& points, const std::vector<std::int32_t>& corners,
                 const std::vector<std::int32_t>& piece);

// Whether the mesh is one sheet whose triangles were not joined: the gap is small beside the edges at it.
bool isUnwelded(const Seam& seam);

}  // namespace host
