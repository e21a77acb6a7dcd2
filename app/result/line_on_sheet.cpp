// Pieces of a line on the blank; see the header.
#include "result/line_on_sheet.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace host {

std::vector<double> crossings(const PlaneLine& line, const std::vector<OutlineLoop>& loops) {
  std::vector<double> places;
  for (const OutlineLoop& loop : loops)
    for (std::size_t k = 0, n = loop.points.size(); k < n; ++k) {
      const PlanePoint &a = loop.points[k], &b = loop.points[(k + 1) % n];
      const double p = line.beside(a), q = line.beside(b);
      if ((p >= 0.0) == (q >= 0.0)) continue;  // a corner on the line belongs to its left: each is met once
      const double share = p / (p - q), from = line.along(a), place = from + share * (line.along(b) - from);
      if (std::isfinite(place)) places.push_back(place);
    }
  std::sort(places.begin(), places.end());
  return places;
}

std::vector<std::array<PlanePoint, 2>> coveredPieces(const PlaneLine& line,
                                                     const std::vector<OutlineLoop>& loops,
                                                     const std::vector<std::array<double, 2>>& covered,
                                                     double reach) {
  const std::vector<double> places = crossings(line, loops);
  std::vector<std::array<PlanePoint, 2>> pieces;
  for (std::size_t k = 0; k + 1 < places.size(); k += 2) {
    double from = std::numeric_limits<double>::infinity(), to = -from;
    for (const auto& [low, high] : covered) {
      const double a = std::max(low, places[k]), b = std::min(high, places[k + 1]);
      if (!(a < b)) continue;
      from = std::min(from, a);
      to = std::max(to, b);
    }
    if (!(from < to)) continue;
    if (from - places[k] <= reach) from = places[k];
    if (places[k + 1] - to <= reach) to = places[k + 1];
    pieces.push_back({line.at(from), line.at(to)});
  }
  return pieces;
}

}  // namespace host
