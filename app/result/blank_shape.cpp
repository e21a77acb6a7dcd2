// The shape of the flat blank for the workshop; see the header.
#include "result/blank_shape.hpp"

#include "result/bend_lines.hpp"

namespace host {

BlankShape shapeOf(const std::vector<std::int32_t>& corners, const std::vector<double>& blank,
                   const std::vector<double>& part, const DrawingOptions& options, double bendRadius) {
  BlankShape shape;
  shape.outline = outlineOf(corners, blank);
  if (options.square) shape.placement = squarePlacement(shape.outline.loops);
  shape.curves = drawnCurves(shape.outline.loops, shape.placement, options.tolerance);
  for (const DrawnCurve& curve : shape.curves)
    for (const CurveVertex& vertex : curve.vertices) ++(vertex.bulge == 0.0 ? shape.lines : shape.arcs);
  if (!options.bendLines) return shape;
  for (const auto& edge : bendLines(corners, part, bendRadius)) {
    std::array<PlanePoint, 2> line;
    for (std::size_t k = 0; k < 2; ++k) {
      const auto n = static_cast<std::size_t>(edge[k]);
      line[k] = placed({blank[2 * n - 2], blank[2 * n - 1]}, shape.placement);
    }
    shape.bends.push_back(line);
  }
  return shape;
}

}  // namespace host
