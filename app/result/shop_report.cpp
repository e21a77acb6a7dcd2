// What a run leaves for the workshop; see the header.
#include "result/shop_report.hpp"

#include "system/text.hpp"

namespace host {

namespace {

constexpr double bentThicknesses = 20.0;  // what is bent less sharply counts as flat
constexpr double cubicMetres = 1e-9;      // in a cubic millimetre
constexpr double bentPart = 0.05;         // likewise, of the part's size where no thickness is known

// Of the blank without its holes; a folded blank has less than it shows.
double netArea(const Outline& outline) {
  double area = 0.0;
  for (const OutlineLoop& loop : outline.loops) area += loop.area;
  return area;
}

void addFigures(ShopReport& shop) {
  std::vector<PlanePoint> points;
  for (const OutlineLoop& loop : shop.shape.outline.loops)
    points.insert(points.end(), loop.points.begin(), loop.points.end());
  const Rectangle rectangle = smallestRectangle(points);
  shop.area = netArea(shop.shape.outline);
  const double around = rectangle.length * rectangle.width;
  shop.rectangleUse = around > 0.0 ? shop.area / around : 0.0;  // a blank that collapsed to a line has none
  if (shop.thickness > 0.0 && shop.material.density)
    shop.weight = shop.area * shop.thickness * shop.material.density->value * cubicMetres;
}

void addStrip(ShopReport& shop) {
  if (!shop.web) return;
  const Outline& outline = shop.shape.outline;
  if (outline.crossings > 0)
    shop.whyNoStrip = "the outline crosses itself";
  else if (!(shop.area > 0.0))
    shop.whyNoStrip = "the blank is folded over";
  else
    shop.strip = nestOnStrip(outline.loops[0].points, shop.area, *shop.web);
}

}  // namespace

void addBlank(ShopReport& shop, const BlankMesh& mesh) {
  const double bendRadius = shop.thickness > 0.0 ? bentThicknesses * shop.thickness : bentPart * mesh.size;
  shop.shape = shapeOf(mesh.corners, mesh.blank, mesh.part, shop.drawing, bendRadius);
  if (shop.limitCurve)
    shop.limit = classifyStrains(shop.major, shop.minor, mesh.area, *shop.limitCurve, shop.limitMargin);
  addFigures(shop);
  addStrip(shop);
}

std::string sheetText(const ShopReport& shop) {
  return shortDecimal(shop.thickness, 4) + " mm" +
         (shop.material.name.empty() ? "" : ", " + shop.material.name);
}

}  // namespace host
