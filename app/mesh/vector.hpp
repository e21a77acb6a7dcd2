// Vectors in space, for what is measured on a mesh.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>

#include "mesh/mesh_check.hpp"

namespace host {

using Vector = std::array<double, 3>;

inline Vector minus(const Vector& a, const Vector& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
inline double dot(const Vector& a, const Vector& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
inline Vector cross(const Vector& a, const Vector& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
inline double norm(const Vector& a) {
  return std::hypot(a[0], a[1], a[2]);
}
// a: not zero.
inline Vector unit(const Vector& a) {
  const double length = norm(a);
  return {a[0] / length, a[1] / length, a[2] / length};
}

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
