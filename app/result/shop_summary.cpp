// The workshop's figures in the summary of a run; see the header.
#include "result/shop_summary.hpp"

#include <cmath>
#include <nlohmann/json.hpp>

#include "result/shop_files.hpp"
#include "result/strip_picture.hpp"
#include "system/text.hpp"

namespace host {

namespace {

using Json = nlohmann::ordered_json;

Json shapeJson(const RunReport& report) {
  const ShopReport& shop = report.shop;
  const BlankShape& shape = shop.shape;
  const std::string why = whyNoDrawing(report);
  const std::string share = partOfBlank(report);
  return {{"why_none", why.empty() ? Json(nullptr) : Json(why)},
          {"shows", share.empty() ? Json("the blank") : Json(share)},
          {"holes", shape.outline.loops.size() - 1},
          {"crossings", shape.outline.crossings},
          {"tolerance_mm", shop.drawing.tolerance},
          {"lines", shape.lines},
          {"arcs", shape.arcs},
          {"turned_by_deg", shape.placement.angle},
          {"then_shifted_x_mm", shape.placement.shiftX},
          {"then_shifted_y_mm", shape.placement.shiftY}};
}

Json materialJson(const Material& material) {
  if (material.name.empty()) return nullptr;
  Json json{{"name", material.name}, {"number", material.number}, {"standard", material.standard}};
  for (const MaterialKey& key : materialKeys)
    if (const auto& value = material.*key.value)
      json[key.key] = {{"value", value->value},
                       {"bound", value->minimum ? Json("minimum") : Json(nullptr)},
                       {"source", value->source}};
  return json;
}

Json limitJson(const RunReport& report) {
  const ShopReport& shop = report.shop;
  if (!shop.limitCurve) return {{"basis", nullptr}, {"why_none", shop.whyNoLimit}};
  Json json{{"basis", shop.limitCurve->basis}, {"margin_percent", shop.limitMargin}};
  const char* keys[limitZones] = {"safe", "marginal", "split", "wrinkling_tendency"};
  for (std::size_t z = 0; z < limitZones; ++z)
    json[keys[z]] = {{"triangles", shop.limit.count[z]}, {"part_area_mm2", shop.limit.area[z]}};
  if (shop.limit.nearest > 0) {
    const auto e = static_cast<std::size_t>(shop.limit.nearest) - 1;
    json["nearest"] = {{"element_number_in_file", report.part.fileElement[e]},
                       {"distance_percent", shop.limit.distance[e]}};
  }
  return json;
}

// Zones with their share of the part's area, the most serious one first.
std::string limitText(const ShopReport& shop) {
  double total = 0.0;
  for (const double area : shop.limit.area) total += area;
  std::string text;
  for (const LimitZone zone :
       {LimitZone::split, LimitZone::marginal, LimitZone::wrinkling, LimitZone::safe}) {
    const auto z = static_cast<std::size_t>(zone);
    text += (text.empty() ? "" : ", ") + std::string(limitZoneNames[z]) + " " +
            std::to_string(shop.limit.count[z]) + " (" +
            fixedDecimal(total > 0.0 ? 100.0 * shop.limit.area[z] / total : 0.0, 1) + " %)";
  }
  return text;
}

void addLimitRows(const RunReport& report,
                  const std::function<void(const std::string&, const std::string&)>& row) {
  const ShopReport& shop = report.shop;
  if (!shop.limitCurve) {
    if (!shop.material.name.empty()) row("forming limit", "none: " + shop.whyNoLimit);
    return;
  }
  row("forming limit", limitText(shop));
  if (shop.limit.nearest == 0) return;
  const auto e = static_cast<std::size_t>(shop.limit.nearest) - 1;
  row("", "nearest: element " + std::to_string(report.part.fileElement[e]) + ", " +
              fixedDecimal(std::abs(shop.limit.distance[e]), 1) + " % " +
              (shop.limit.distance[e] > 0.0 ? "below" : "BEYOND") + " the curve; " + shop.limitCurve->basis);
}

Json layoutJson(const StripLayout& layout) {
  Json json{{"utilisation", layout.utilisation},
            {"pitch_mm", layout.pitch},
            {"strip_width_mm", layout.width},
            {"strip_angle_to_blank_x_deg", layout.angle}};
  if (layout.rows == 2) {
    json["second_row_along_mm"] = layout.along;
    json["second_row_across_mm"] = layout.across;
  }
  return json;
}

Json stripJson(const RunReport& report) {
  const ShopReport& shop = report.shop;
  if (!shop.web) return nullptr;
  if (const std::string why = whyNoStrip(report); !why.empty())
    return {{"web_mm", *shop.web}, {"why_none", why}};
  return {{"web_mm", *shop.web},
          {"one_row", layoutJson(shop.strip->single)},
          {"two_rows_turned_180_deg", layoutJson(shop.strip->paired)}};
}

void addFigureRows(const RunReport& report,
                   const std::function<void(const std::string&, const std::string&)>& row) {
  const ShopReport& shop = report.shop;
  if (shop.weight)
    row("weight",
        fixedDecimal(*shop.weight, 3) + " kg (" + fixedDecimal(shop.material.density->value, 0) + " kg/m3)");
  row("rectangle used", fixedDecimal(100.0 * shop.rectangleUse, 1) + " %");
  if (!shop.web) return;
  if (const std::string why = whyNoStrip(report); !why.empty()) return row("strip", "none: " + why);
  row("strip", stripText(shop.strip->single));
  row("", stripText(shop.strip->paired));
}

}  // namespace

void addShopJson(Json& json, const RunReport& report) {
  const ShopReport& shop = report.shop;
  const bool drawn = whyNoDrawing(report).empty();
  json["thickness_mm"] = shop.thickness > 0.0 ? Json(shop.thickness) : Json(nullptr);
  json["thickness_is"] =
      shop.thickness > 0.0 ? Json(shop.thicknessMeasured ? "measured on the part" : "given") : Json(nullptr);
  json["material_by_name"] = materialJson(shop.material);
  json["weight_kg"] = shop.weight && drawn ? Json(*shop.weight) : Json(nullptr);
  json["rectangle_utilisation"] = drawn ? Json(shop.rectangleUse) : Json(nullptr);
  json["strip"] = stripJson(report);
  json["forming_limit"] = limitJson(report);
  json["drawing"] = shapeJson(report);
}

void addShopRows(const RunReport& report,
                 const std::function<void(const std::string&, const std::string&)>& row) {
  const ShopReport& shop = report.shop;
  const std::int64_t holes = static_cast<std::int64_t>(shop.shape.outline.loops.size()) - 1;
  if (const std::string share = partOfBlank(report); !share.empty()) row("", share);
  if (shop.thickness > 0.0)
    row("sheet", sheetText(shop) + (shop.thicknessMeasured ? " (measured on the part)" : ""));
  const std::string why = whyNoDrawing(report);
  if (why.empty()) {
    row("outline", counted(holes, "hole") + "; " + counted(shop.shape.lines, "line") + " and " +
                       counted(shop.shape.arcs, "arc") + " within " + decimal(shop.drawing.tolerance) +
                       " mm");
    addFigureRows(report, row);
  } else {
    row("drawings", "none: " + why);
  }
  if (report.verdict.converged) addLimitRows(report, row);
}

}  // namespace host
