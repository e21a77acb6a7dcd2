// The forming-limit diagram; see the header.
#include "result/forming_limit.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "system/text.hpp"

namespace host {

namespace {

constexpr double thickestFormula = 3.0;   // mm, up to which the formula was measured
constexpr double largestExponent = 0.21;  // likewise
constexpr double rightSlope = 0.6;        // engineering strains
constexpr double rightEnd = 20.0;         // percent
constexpr double leftEnd = -1.0;          // logarithmic: no sheet is compressed that far
constexpr double thickening = 0.01;       // logarithmic: below it, rounding and bending look the same

double logarithmic(double percent) {
  return std::log1p(0.01 * percent);
}

}  // namespace

double engineeringPercent(double strain) {
  return 100.0 * std::expm1(strain);
}

LimitCurve keelerCurve(double thickness, double n) {
  const double lowest =
      (23.3 + 14.13 * std::min(thickness, thickestFormula)) * std::min(n, largestExponent) / largestExponent;
  LimitCurve curve;
  curve.points.push_back({leftEnd, logarithmic(lowest) - leftEnd});
  constexpr int steps = 40;  // a line in engineering strains is nearly one in logarithmic ones
  for (int k = 0; k <= steps; ++k) {
    const double minor = rightEnd * k / steps;
    curve.points.push_back({logarithmic(minor), logarithmic(lowest + rightSlope * minor)});
  }
  curve.basis = "FLC0 " + fixedDecimal(lowest, 1) + " % after Keeler and Brazier, t " +
                shortDecimal(thickness, 4) + " mm" + (thickness > thickestFormula ? " (counts as 3)" : "") +
                ", n " + decimal(n) + (n > largestExponent ? " (counts as 0.21)" : "");
  return curve;
}

double limitAt(const LimitCurve& curve, double minor) {
  const auto& points = curve.points;
  const auto behind =
      std::upper_bound(points.begin(), points.end(), minor,
                       [](double value, const LimitPoint& point) { return value < point.minor; });
  if (behind == points.begin()) return points.front().major;
  if (behind == points.end()) return points.back().major;
  const LimitPoint &a = *(behind - 1), &b = *behind;
  return a.major + (b.major - a.major) * (minor - a.minor) / (b.minor - a.minor);
}

LimitResult classifyStrains(const std::vector<double>& major, const std::vector<double>& minor,
                            const std::vector<double>& area, const LimitCurve& curve, double margin) {
  LimitResult result;
  for (std::size_t e = 0; e < major.size(); ++e) {
    LimitZone zone = LimitZone::none;
    double distance = std::numeric_limits<double>::quiet_NaN();
    if (std::isfinite(major[e]) && std::isfinite(minor[e])) {
      distance = engineeringPercent(limitAt(curve, minor[e])) - engineeringPercent(major[e]);
      if (!(distance > 0.0))
        zone = LimitZone::split;
      else if (distance < margin)
        zone = LimitZone::marginal;
      else
        zone = minor[e] < 0.0 && major[e] + minor[e] < -thickening ? LimitZone::wrinkling : LimitZone::safe;
      const auto index = static_cast<std::size_t>(zone);
      ++result.count[index];
      result.area[index] += area[e];
      if (result.nearest == 0 || distance < result.distance[static_cast<std::size_t>(result.nearest) - 1])
        result.nearest = static_cast<std::int64_t>(e) + 1;
    }
    result.zone.push_back(static_cast<std::int8_t>(zone));
    result.distance.push_back(distance);
  }
  return result;
}

}  // namespace host
