// The smallest rectangle around points of the plane, turned as it fits best: the size of the sheet to cut from.
#pragma once

#include <array>
#include <vector>

namespace host {

struct Rectangle {
  double length = 0.0, width = 0.0;  // the points' unit, length >= width
  double angle = 0.0;                // degrees from x to the length, in (-90, 90]
};

using PlanePoint = std::array<double, 2>;

// The rectangle of the least area. One of its sides lies on a side of the convex hull (H. Freeman, R. Shapira,
// Comm. ACM 18 (1975) 409); the farthest points are followed round the hull (G. T. Toussaint's rotating calipers,
// 1983), so that the time is that of sorting. Of rectangles whose areas are equal but for rounding, the one whose
// angle is nearest zero. points: any number, finite; fewer than two have no size, those on a line no width.
Rectangle smallestRectangle(std::vector<PlanePoint> points);

}  // namespace host
