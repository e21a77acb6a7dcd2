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
  for (const auto& [from, to] : bendLines(corners, part, blank, shape.outline.loops, bendRadius))
    shape.bends.push_back({placed(from, shape.placement), placed(to, shape.placement)});
  return shape;
}

}  // namespace host
