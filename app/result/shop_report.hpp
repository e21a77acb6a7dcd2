// What a run leaves for the workshop, beside the strains.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "result/blank_shape.hpp"
#include "result/forming_limit.hpp"
#include "result/material.hpp"
#include "result/nesting.hpp"

namespace host {

struct ShopReport {
  // known before the run
  double thickness = 0.0;          // of the sheet before drawing, mm; 0: not known
  bool thicknessMeasured = false;  // on the part; else the user gave it
  Material material;
  DrawingOptions drawing;
  std::optional<LimitCurve> limitCurve;
  std::string whyNoLimit;     // without a curve: the reason
  std::optional<double> web;  // mm, between blanks and beside them in a strip; none: no strip is wanted
  double limitMargin = 10.0;  // percent of engineering strain
  // from the blank
  BlankShape shape;
  std::vector<double> major, minor;  // per triangle, logarithmic; NaN without a blank
  LimitResult limit;                 // empty without a curve
  double area = 0.0;                 // of the blank, mm2
  double rectangleUse = 0.0;         // area over that of the smallest rectangle, 0..1
  std::optional<double> weight;      // kg; none: thickness or density is not known
  std::optional<StripFigures> strip;
  std::string whyNoStrip;  // where one is wanted and there is none
};

// The mesh of part and blank, all triangles turned the same way.
struct BlankMesh {
  const std::vector<std::int32_t>& corners;  // three node numbers per triangle, from 1
  const std::vector<double>& blank;          // mm: u, v of node 1, of node 2, ...
  const std::vector<double>& part;           // mm: x, y, z of node 1, of node 2, ...
  const std::vector<double>& area;           // per triangle, on the part, mm2
  double size;                               // longest side of the box around the part, mm
};

// Adds outline, limit zones, areas, weight and strip. A strip is made of an outline that does not cross itself. shop.major
// and shop.minor are set. Throws Failure as shapeOf does.
void addBlank(ShopReport& shop, const BlankMesh& mesh);

// Thickness and material in words: "1.5 mm, DC04". The thickness is known.
std::string sheetText(const ShopReport& shop);

}  // namespace host
