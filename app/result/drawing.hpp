// The flat blank as a drawing in millimetres, whatever file it then goes into.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "result/curve_fit.hpp"
#include "result/outline.hpp"
#include "result/smallest_rectangle.hpp"

namespace host {

// Where the drawing lies: x' = cos(angle) x - sin(angle) y + shiftX, y' = sin(angle) x + cos(angle) y + shiftY,
// with x, y of the blank in mm.
struct Placement {
  double angle = 0.0;                 // degrees
  double shiftX = 0.0, shiftY = 0.0;  // mm
};

struct DrawnCurve {
  bool outer = true;                  // else the border of a hole
  std::vector<CurveVertex> vertices;  // closed, mm
};

struct Drawing {
  std::vector<DrawnCurve> curves;
  std::vector<std::array<PlanePoint, 2>> bends;  // lines, mm; none: the layer stays empty and off
  std::vector<std::string> notes;                // lines of text, what is wrong with the blank first
  std::vector<std::string>
      warnings;  // the first of them, red, repeated where a reader of the file looks first
};

struct DrawingBox {
  double left = 0.0, bottom = 0.0, right = 0.0, top = 0.0;  // mm
};

// The blank so that its smallest rectangle stands with its length along x and a corner in the origin. loops: mm.
Placement squarePlacement(const std::vector<OutlineLoop>& loops);

PlanePoint placed(const PlanePoint& point, const Placement& placement);

// Lines and arcs within `tolerance` (mm) of the loops, in their place. loops: mm, the outer one first.
std::vector<DrawnCurve> drawnCurves(const std::vector<OutlineLoop>& loops, const Placement& placement,
                                    double tolerance);

// The box around the curves, their arcs included; empty drawings have the box 0.
DrawingBox boxAround(const std::vector<DrawnCurve>& curves);

// The height of the drawing's letters in mm: legible on the screen beside a blank of that size.
double letterHeight(const DrawingBox& box);

}  // namespace host
