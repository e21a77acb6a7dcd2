// The shape of the flat blank for the workshop: its outline, where the drawing puts it, what is drawn.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "result/drawing.hpp"
#include "result/dxf_writer.hpp"
#include "result/outline.hpp"

namespace host {

struct DrawingOptions {
  double tolerance = 0.05;  // mm, between the drawn curves and the mesh's outline
  DxfRelease release = DxfRelease::r2000;
  bool square = false;     // stood into its smallest rectangle
  bool bendLines = false;  // with lines where the part is bent
};

struct BlankShape {
  Outline outline;      // mm, as solved
  Placement placement;  // of the drawing
  std::vector<DrawnCurve> curves;
  std::vector<std::array<PlanePoint, 2>> bends;  // in the drawing's place
  std::int64_t lines = 0, arcs = 0;              // pieces of the curves
};

// corners: of the run, counter-clockwise in the blank. blank: u, v of each node in mm. part: x, y, z of each node in
// mm. bendRadius: mm, what is bent less sharply counts as flat. Throws Failure as outlineOf does.
BlankShape shapeOf(const std::vector<std::int32_t>& corners, const std::vector<double>& blank,
                   const std::vector<double>& part, const DrawingOptions& options, double bendRadius);

}  // namespace host
