// What the shape of a triangle tells of it.
#pragma once

#include <algorithm>
#include <cstddef>

#include "mesh/mesh.hpp"
#include "system/vector.hpp"

namespace host {

// Place of the corner k = 0, 1, 2 of an element (from 0) whose nodes are in range, in the unit of the mesh.
inline Vector cornerOf(const Mesh& mesh, std::size_t element, std::size_t k) {
  const double* place = &mesh.points[3 * static_cast<std::size_t>(mesh.corners[3 * element + k]) - 3];
  return {place[0], place[1], place[2]};
}

// Whether the triangle has no area: its height is below 1e-10 of its longest side. That little is rounding of the
// coordinates (2^-52 times a distance from the origin of up to a hundred thousand sides).
inline bool hasNoArea(const Vector& a, const Vector& b, const Vector& c) {
  constexpr double smallestRatio = 1e-10, clearRatio = 1e-9;
  const Vector ab = minus(b, a), bc = minus(c, b), ca = minus(a, c), twiceArea = cross(ab, bc);
  const double squared = std::max({dot(ab, ab), dot(bc, bc), dot(ca, ca)});
  if (dot(twiceArea, twiceArea) > clearRatio * squared * (clearRatio * squared))
    return false;  // the most, and quick
  const double longest = std::max({norm(ab), norm(bc), norm(ca)});
  return !(norm(twiceArea) > smallestRatio * longest * longest);
}

}  // namespace host
