// The edges of a triangle mesh; see the header.
#include "mesh/edges.hpp"

#include <algorithm>
#include <tuple>

namespace host {

// Counted by the lower node, then compared among the few sides of each: time linear in the mesh, and a mesh is mostly
// numbered so that neighbours lie close.
std::vector<Side> sortedSides(const std::vector<std::int32_t>& corners) {
  const auto lowest = [&](std::size_t first, std::size_t k) {
    return static_cast<std::size_t>(std::min(corners[first + k], corners[first + (k + 1) % 3]));
  };
  const std::int32_t nodes = corners.empty() ? 0 : *std::max_element(corners.begin(), corners.end());
  std::vector<std::size_t> end(static_cast<std::size_t>(nodes) + 2, 0);  // of the sides of each lower node
  for (std::size_t first = 0; first < corners.size(); first += 3)
    for (std::size_t k = 0; k < 3; ++k) ++end[lowest(first, k) + 1];
  for (std::size_t node = 1; node < end.size(); ++node) end[node] += end[node - 1];

  std::vector<Side> sides(corners.size());
  for (std::size_t first = 0; first < corners.size(); first += 3)
    for (std::size_t k = 0; k < 3; ++k) {
      const std::int32_t from = corners[first + k], to = corners[first + (k + 1) % 3];
      sides[end[lowest(first, k)]++] = {std::min(from, to), std::max(from, to),
                                        static_cast<std::int32_t>(first / 3) + 1, from < to};
    }
  std::size_t begin = 0;
  for (const std::size_t behind : end) {
    std::sort(sides.begin() + static_cast<std::ptrdiff_t>(begin),
              sides.begin() + static_cast<std::ptrdiff_t>(behind), [](const Side& a, const Side& b) {
                return std::tie(a.high, a.element) < std::tie(b.high, b.element);
              });
    begin = behind;
  }
  return sides;
}

std::shared_ptr<const SortedSides> sidesOf(const Mesh& mesh) {
  if (mesh.sides == nullptr || mesh.sides->corners != mesh.corners)
    mesh.sides = std::make_shared<const SortedSides>(
        SortedSides{mesh.corners, sortedSides({mesh.corners.begin(), mesh.corners.end()})});
  return mesh.sides;
}

}  // namespace host
