// Places and areas on the mesh of a part.
#pragma once

#include <cstdint>

#include "mesh/mesh_check.hpp"
#include "system/vector.hpp"

namespace host {

// Place of a node (from 1), in the unit of the part.
inline Vector pointOf(const Part& part, std::int64_t node) {
  return {part.x(node), part.y(node), part.z(node)};
}

// Area of an element (from 1) along its normal, in the part's unit squared.
inline Vector areaVector(const Part& part, std::int64_t element) {
  const Vector a = pointOf(part, part.corner(element, 0));
  const Vector twice = cross(minus(pointOf(part, part.corner(element, 1)), a),
                             minus(pointOf(part, part.corner(element, 2)), a));
  return {0.5 * twice[0], 0.5 * twice[1], 0.5 * twice[2]};
}

}  // namespace host
