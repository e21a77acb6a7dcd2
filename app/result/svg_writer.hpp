// Writes the drawing of the blank as SVG at true size.
#pragma once

#include <string>

#include "result/drawing.hpp"

namespace host {

// The whole file: width and height in mm, one user unit is 1 mm, y turned downwards as SVG has it. Groups OUTER,
// INNER, BEND and TEXT, the text below the blank. title: of the file, any bytes. Throws Failure if a coordinate is not
// finite.
std::string svgText(const Drawing& drawing, const std::string& title);

// The closed path of a curve: lines and arcs, y turned downwards.
std::string svgPath(const std::vector<CurveVertex>& curve);

// A length in mm with 6 digits at most after the point. Throws Failure if it is not finite.
std::string svgNumber(double value);

}  // namespace host
