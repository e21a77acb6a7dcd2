// The limit curve of the forming-limit diagram; see the header.
#include "command/limit_curve.hpp"

#include <cmath>
#include <cstdint>
#include <string_view>

#include "command/point_table.hpp"
#include "system/failure.hpp"
#include "system/input_file.hpp"
#include "system/text.hpp"

namespace host {

namespace {

constexpr double aluminiumMargin = 8.0, otherMargin = 10.0;  // percent of engineering strain
constexpr double largestStrain = 2.0;                        // logarithmic: beyond it, percent were meant

std::string whyNoFormula(const ShopOptions& options, const Material& material, double thickness) {
  if (material.name.empty()) return "no material by name; --flc FILE gives a limit curve";
  if (!material.keeler)
    return "the formula holds for mild steels only, not for " + material.name + "; give --flc FILE";
  if (options.n <= 0.0 && !material.n) return material.name + " has no n value; give --n or --flc FILE";
  if (!(thickness > 0.0)) return "the thickness is not known; give --thickness or --flc FILE";
  return "";
}

}  // namespace

LimitCurve readLimitCurve(const std::string& path) {
  return limitCurveIn(readInputFile(path), path);
}

LimitCurve limitCurveIn(const std::string& content, const std::string& path) {
  const PointTable table = pointsIn(content, "--flc " + path, "a minor and a major strain");
  const bool percent =
      table.heading.find('%') != std::string::npos || table.heading.find("percent") != std::string::npos;
  LimitCurve curve;
  for (const PointTable::Row& row : table.rows) {
    const auto fail = [&](const std::string& sentence) {
      throw Failure("--flc " + path + ", line " + std::to_string(row.line) + ": " + sentence);
    };
    if (!std::isfinite(row.first) || !std::isfinite(row.second)) fail("a strain is not finite");
    if (percent && (row.first <= -100.0 || row.second <= -100.0))
      fail("engineering strains lie above -100 %");
    const LimitPoint point = percent ? LimitPoint{std::log1p(0.01 * row.first), std::log1p(0.01 * row.second)}
                                     : LimitPoint{row.first, row.second};
    if (std::abs(point.minor) > largestStrain || std::abs(point.major) > largestStrain)
      fail("a logarithmic strain beyond 2; for percent of engineering strain write % into the heading");
    if (!(point.major > 0.0)) fail("the major strain must be positive");
    if (!curve.points.empty() && !(point.minor > curve.points.back().minor))
      fail("the minor strain is not larger than the one before it");
    curve.points.push_back(point);
  }
  curve.basis = "--flc " + path + (percent ? ", engineering strains in percent" : ", logarithmic strains");
  return curve;
}

ChosenLimit chosenLimit(const ShopOptions& options, const Material& material, double thickness) {
  ChosenLimit limit;
  limit.margin = material.kind == MaterialClass::aluminium ? aluminiumMargin : otherMargin;
  if (!options.flc.empty() && options.flc != "keeler") {
    limit.curve = readLimitCurve(options.flc);
    return limit;
  }
  limit.why = whyNoFormula(options, material, thickness);
  if (!limit.why.empty()) {
    if (!options.flc.empty()) throw Failure("--flc keeler: " + limit.why);
    return limit;
  }
  limit.curve = keelerCurve(thickness, options.n > 0.0 ? options.n : material.n->value);
  if (options.n <= 0.0)
    limit.curve->basis += std::string(", ") + (material.n->minimum ? "a minimum: " : "") + material.n->source;
  return limit;
}

}  // namespace host
