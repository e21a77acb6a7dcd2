// Along which direction a part can be drawn: how much of it is undercut and how much is steep, seen along it.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/mesh_check.hpp"
#include "system/vector.hpp"

namespace host {

// A triangle with the unit normal n is undercut along d where n.d <= -0.01 (0.57 degrees past upright), and steep
// where |n.d| < 0.3 (within 17.5 degrees of upright). Which side of the sheet is up is the mesh's choice: of d and -d
// the one with less undercut is taken.
struct DrawView {
  Vector direction{};                  // unit vector
  double undercutArea = 0.0;           // part's unit squared
  double steepArea = 0.0;              // likewise
  double area = 0.0;                   // of the part
  std::vector<std::int32_t> undercut;  // elements, from 1, ascending
  double undercutShare() const { return undercutArea / area; }
  double steepShare() const { return steepArea / area; }
};

// The part seen along a direction (not zero; any length). The direction that is returned is it or its opposite.
DrawView seenAlong(const Part& part, const Vector& direction);

// The direction with the least undercut; of those whose undercut is as small within a thousandth of the area, that
// with the least steep area, each triangle weighed with the square of how steep it is; of those, that nearest to the mean normal. Looked for among the axes, the mean
// normal, the normals of the 20 largest flat patches and a grid of 3 degrees on the hemisphere, the best of which is
// refined to 0.05 degrees. The same part gives the same direction.
DrawView bestDrawDirection(const Part& part);

}  // namespace host
