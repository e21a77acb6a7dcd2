// What the user says about the files for the workshop; see the header.
#include "command/shop_options.hpp"

#include <cmath>

#include "command/limit_curve.hpp"
#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {
constexpr double doubtfulThickness = 0.05;  // relative: more than rolling tolerances explain
}

double sheetThickness(const std::string& text) {
  double thickness = 0.0;
  if (text.empty()) return thickness;
  if (!readReal(text, thickness) || !(thickness >= 0.01 && thickness <= 100.0))
    throw Failure("--thickness wants millimetres from 0.01 to 100, not \"" + shown(text) + "\"");
  return thickness;
}

void checkShopOptions(const ShopOptions& options) {
  const struct {
    const char* name;
    double value;
  } numbers[] = {{"--dxf-tolerance", options.dxfTolerance}, {"--n", options.n}, {"--web", options.web}};
  for (const auto& number : numbers)  // a range lets nan pass
    if (!std::isfinite(number.value)) throw Failure(std::string(number.name) + " wants a finite number");
}

ShopReport shopBeforeRun(const ShopOptions& options, const Material& material, double measured) {
  ShopReport shop;
  shop.thickness = options.thickness > 0.0 ? options.thickness : measured;
  shop.thicknessMeasured = shop.thickness > 0.0 && options.thickness <= 0.0;
  shop.material = material;
  shop.drawing = {options.dxfTolerance, options.dxf == "12" ? DxfRelease::r12 : DxfRelease::r2000,
                  options.square, options.bendLines};
  ChosenLimit limit = chosenLimit(options, material, shop.thickness);
  shop.limitCurve = std::move(limit.curve);
  shop.whyNoLimit = std::move(limit.why);
  shop.limitMargin = limit.margin;
  if (options.web >= 0.0) shop.web = options.web;
  return shop;
}

std::string thicknessDoubt(const ShopOptions& options, double measured) {
  if (!(measured > 0.0) || !(options.thickness > 0.0)) return "";
  if (std::abs(options.thickness - measured) <= doubtfulThickness * measured) return "";
  return "--thickness says " + decimal(options.thickness) + " mm, the part measures " +
         shortDecimal(measured, 4) + " mm; that of the option is taken";
}

}  // namespace host
