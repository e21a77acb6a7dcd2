// The forming-limit diagram: which triangles are near the limit at which the sheet necks, which beyond it.
//
// The limit curve tells the largest major strain that sheet bears at a minor strain. Strains of the run are logarithmic;
// margins are told in percent of engineering strain, 100 (exp(e) - 1), as workshops measure them.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace host {

struct LimitPoint {
  double minor = 0.0, major = 0.0;  // logarithmic, dimensionless
};

struct LimitCurve {
  std::vector<LimitPoint> points;  // minor strains ascending, one at least
  std::string basis;               // for the user: the file, or the formula with its numbers
};

// The curve of mild steels after S. P. Keeler and W. G. Brazier (Micro Alloying 75, 1977): in plane strain
//   FLC0 = (23.3 + 14.13 t) n / 0.21   percent of engineering strain,
// to the left constant thinning (slope -1 in logarithmic strains), to the right the slope 0.6 in engineering strains up
// to a minor strain of 20 %, level from there on.
//   thickness  mm, > 0; counts up to 3
//   n          hardening exponent, > 0; counts up to 0.21
LimitCurve keelerCurve(double thickness, double n);

// The major strain of the curve at a minor one, logarithmic; between the points linear, beyond the ends level.
double limitAt(const LimitCurve& curve, double minor);

// 100 (exp(e) - 1).
double engineeringPercent(double logarithmic);

enum class LimitZone : std::int8_t { none = -1, safe = 0, marginal = 1, split = 2, wrinkling = 3 };
inline constexpr int limitZones = 4;
inline constexpr std::array<const char*, limitZones> limitZoneNames{"safe", "marginal", "split",
                                                                    "wrinkling tendency"};

struct LimitResult {
  std::vector<std::int8_t> zone;  // per triangle, of LimitZone
  std::vector<double>
      distance;  // per triangle, percent of engineering strain up to the curve; negative: beyond;
                 // NaN without strains
  std::array<std::int64_t, limitZones> count{};
  std::array<double, limitZones> area{};  // the areas' unit
  std::int64_t nearest = 0;               // triangle with the smallest distance, from 1; 0: there is none
};

// major, minor: logarithmic strains per triangle. area: per triangle. margin: percent of engineering strain below the
// curve within which a triangle is marginal. Split: on the curve or beyond; wrinkling tendency: neither, but the sheet
// thickens by more than 1 % under compression. A triangle whose strains are not finite is in no zone.
LimitResult classifyStrains(const std::vector<double>& major, const std::vector<double>& minor,
                            const std::vector<double>& area, const LimitCurve& curve, double margin);

}  // namespace host
