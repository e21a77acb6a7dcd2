// The edges of a triangle mesh; see the header.
#include "mesh/edges.hpp"

#include <algorithm>
#include <tuple>

namespace host {

std::vector<Side> sortedSides(const std::vector<std::int32_t>& corners) {
  std::vector<Side> sides;
  sides.reserve(corners.size());
  for (std::size_t first = 0; first < corners.size(); first += 3)
    for (std::size_t k = 0; k < 3; ++k) {
      const std::int32_t from = corners[first + k], to = corners[first + (k + 1) % 3];
      sides.push_back(
          {std::min(from, to), std::max(from, to), static_cast<std::int32_t>(first / 3) + 1, from < to});
    }
  std::sort(sides.begin(), sides.end(), [](const Side& a, const Side& b) {
    return std::tie(a.low, a.high, a.element) < std::tie(b.low, b.high, b.element);
  });
  return sides;
}

}  // namespace host
