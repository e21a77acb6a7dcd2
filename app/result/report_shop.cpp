// What the workshop gets of a run, on its page; see the header.
#include "result/report_shop.hpp"

#include <algorithm>
#include <limits>

#include "result/shop_files.hpp"
#include "result/strip_picture.hpp"
#include "system/text.hpp"

namespace host {

namespace {

constexpr int pitches = 4;  // that are shown
constexpr std::array<ClassColour, limitZones> zoneColours{ClassColour::green, ClassColour::amber,
                                                          ClassColour::red, ClassColour::blue};

void addZones(const ShopReport& shop, ReportData& data) {
  ReportField field;
  field.name = "limit zone";
  field.note = shop.limitCurve->basis;
  for (const std::int8_t zone : shop.limit.zone)
    field.values.push_back(zone < 0 ? std::numeric_limits<double>::quiet_NaN() : static_cast<double>(zone));
  for (std::size_t z = 0; z < limitZones; ++z) field.classes.push_back({limitZoneNames[z], zoneColours[z]});
  data.fields.push_back(std::move(field));
  for (const LimitPoint& point : shop.limitCurve->points)
    data.limits.curve.push_back({point.minor, point.major});
  data.limits.margin = shop.limitMargin;
  data.limits.source = shop.limitCurve->basis;
}

void addStrip(const ShopReport& shop, double millimetres, ReportData& data) {
  const bool paired = shop.strip->paired.utilisation > shop.strip->single.utilisation;
  const StripLayout& layout = paired ? shop.strip->paired : shop.strip->single;
  double low = std::numeric_limits<double>::infinity(), high = -low;
  for (int row = 0; row < layout.rows; ++row) {
    const auto loops = inStrip(shop.shape.outline.loops, layout, row, 0);
    for (const PlanePoint& p : loops[0]) {
      low = std::min(low, p[1]);
      high = std::max(high, p[1]);
    }
  }
  const double rise = 0.5 * layout.width - 0.5 * (low + high);  // the strip's lower edge becomes y = 0
  data.strip.width = layout.width / millimetres;
  data.strip.pitch = layout.pitch / millimetres;
  for (int row = 0; row < layout.rows; ++row)
    for (int k = 0; k < pitches; ++k)
      data.strip.placed.push_back({180.0 * row - layout.angle,
                                   (k * layout.pitch + (row == 0 ? 0.0 : layout.along)) / millimetres,
                                   (rise + (row == 0 ? 0.0 : layout.across)) / millimetres});
  data.strip.figures = {{"one row", stripFigures(shop.strip->single)},
                        {"two rows, one turned by 180\u00b0", stripFigures(shop.strip->paired)},
                        {"web", decimal(*shop.web) + " mm"}};
}

void addShopFigures(const RunReport& report, ReportData& data) {
  const ShopReport& shop = report.shop;
  const auto add = [&](const std::string& name, const std::string& value) {
    data.figures.push_back({name, value});
  };
  if (const std::string share = partOfBlank(report); !share.empty()) add("shown", share);
  if (shop.thickness > 0.0) add("sheet", sheetText(shop) + (shop.thicknessMeasured ? ", measured" : ""));
  if (shop.weight) add("weight", fixedDecimal(*shop.weight, 3) + "\u00a0kg");
  add("rectangle used", fixedDecimal(100.0 * shop.rectangleUse, 1) + "\u00a0%");
  if (!shop.limitCurve) return;
  for (const LimitZone zone : {LimitZone::split, LimitZone::marginal}) {
    const auto z = static_cast<std::size_t>(zone);
    add(limitZoneNames[z], counted(shop.limit.count[z], "triangle"));
  }
}

}  // namespace

void addShopToPage(const RunReport& report, ReportData& data) {
  const ShopReport& shop = report.shop;
  if (shop.limitCurve && report.results.developed) addZones(shop, data);
  if (!whyNoDrawing(report).empty()) return;
  addShopFigures(report, data);
  if (shop.strip && whyNoStrip(report).empty()) addStrip(shop, report.unit.millimetres, data);
}

}  // namespace host
