// On which side of a line does a point lie? The sign that comes back is that of the real numbers the coordinates are,
// not of a rounded difference: loops that touch, or miss each other by a rounding, are told apart from crossed ones.
#pragma once

#include <cmath>

namespace tornwalzen {

struct PlanePoint {
  double x = 0.0, y = 0.0;  // mm
};

// Products of two coordinates must neither overflow nor lose their tail: what lies beyond counts as no coordinate.
constexpr double largestCoordinate = 1e100;  // mm

/// The sign by expansions; for orientation() where rounding could decide.
int exactOrientation(const PlanePoint& a, const PlanePoint& b, const PlanePoint& c);

/// +1 where c lies left of the line from a to b (a, b, c counter-clockwise), −1 right of it, 0 on it, exact for
/// coordinates up to largestCoordinate whose products stay above 1e-290 or are zero.
/// The bound of the first test is that of J. R. Shewchuk, Adaptive precision floating-point arithmetic and fast robust
/// geometric predicates, Discrete & Computational Geometry 18 (1997).
inline int orientation(const PlanePoint& a, const PlanePoint& b, const PlanePoint& c) {
  constexpr double roundingBound = 3.3306690738754716e-16;  // (3 + 16·2⁻⁵³)·2⁻⁵³, rounded up
  const double left = (a.x - c.x) * (b.y - c.y), right = (a.y - c.y) * (b.x - c.x), det = left - right;
  if (std::fabs(det) > roundingBound * (std::fabs(left) + std::fabs(right))) return det > 0.0 ? 1 : -1;
  return exactOrientation(a, b, c);
}

}  // namespace tornwalzen
