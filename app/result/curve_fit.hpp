// Lines and arcs through a polygon: what a cutting machine follows in place of thousands of chords.
#pragma once

#include <vector>

#include "result/smallest_rectangle.hpp"

namespace host {

// A corner of a closed curve and how it goes on to the next one, of the last to the first.
struct CurveVertex {
  double x = 0.0, y = 0.0;  // the points' unit
  double bulge = 0.0;  // tangent of a quarter of the arc's angle, -1..1: 0 a line, positive counter-clockwise
};

// loop: the corners of a closed polygon in order, finite. tolerance: the points' unit, > 0; no point of the curve is
// farther from the polygon, none of the polygon farther from the curve. Pieces begin and end in corners of the polygon;
// a polygon that is a circle within the tolerance becomes two half circles. A loop so thin that nothing would be left
// of it, and one of fewer than three points, keeps its corners. The same loop gives the same curve.
//
// A piece is a line where that reaches as far as an arc, else the circle through its two ends whose centre is the
// least-squares one for the corners between; it is taken as far as the tolerance holds, also for the chords between
// the corners.
std::vector<CurveVertex> fitCurve(const std::vector<PlanePoint>& loop, double tolerance);

// The signed area inside, arcs included; positive counter-clockwise.
double areaInside(const std::vector<CurveVertex>& curve);

}  // namespace host
