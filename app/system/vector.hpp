// Vectors in space, in whatever unit their components have.
#pragma once

#include <array>
#include <cmath>

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
// 0 of 0.
inline Vector unit(const Vector& a) {
  const double length = norm(a);
  return length > 0.0 ? Vector{a[0] / length, a[1] / length, a[2] / length} : Vector{};
}

}  // namespace host
