// The area of a triangle in space, from its edges.
#pragma once

#include <cmath>

namespace tornwalzen {

/// Twice the area (mm²), |P × Q|. P, Q: in, the edges from corner 1 to corners 2 and 3 (mm).
inline double squaredTwiceArea(const double (&P)[3], const double (&Q)[3]) {
  const double nx = P[1] * Q[2] - P[2] * Q[1], ny = P[2] * Q[0] - P[0] * Q[2], nz = P[0] * Q[1] - P[1] * Q[0];
  return nx * nx + ny * ny + nz * nz;
}
inline double twiceArea(const double (&P)[3], const double (&Q)[3]) {
  return std::sqrt(squaredTwiceArea(P, Q));
}

}  // namespace tornwalzen
