// What the shape of a sheet tells before it is run: edges along which it is folded, and edges in a plane that may be one
// of symmetry.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/mesh_check.hpp"

namespace host {

// The elements (from 1, ascending) at edges along which the sheet turns by more than `degrees` from one triangle to the
// next: there it lies nearly on itself.
std::vector<std::int32_t> foldedElements(const Part& part, double degrees);

// An edge of the sheet in the plane x = place or y = place, with the whole sheet on one side, that the sheet meets at
// right angles and that is curved in that plane: mirrored there, the sheet would go on smoothly. A cut profile looks the
// same, so it is a proposal. An edge that is straight says nothing: every trimmed flange has such.
struct MirrorEdge {
  char axis = 'x';
  double place = 0.0;              // part's unit
  double length = 0.0;             // likewise
  double farthestFromRight = 0.0;  // degrees: the largest angle off the right one within 95 % of its length
};

std::vector<MirrorEdge> mirrorEdges(const Part& part);

}  // namespace host
