// The pieces of a mesh; see the header.
#include "mesh/pieces.hpp"

#include <algorithm>
#include <numeric>

namespace host {

namespace {

// The representative of the element's piece; halves the path on the way.
std::int32_t pieceOf(std::vector<std::int32_t>& parent, std::int32_t element) {
  while (parent[static_cast<std::size_t>(element)] != element) {
    std::int32_t& up = parent[static_cast<std::size_t>(element)];
    up = parent[static_cast<std::size_t>(up)];
    element = up;
  }
  return element;
}

}  // namespace

std::vector<std::int32_t> findPieces(const std::vector<Side>& sides) {
  std::vector<std::int32_t> parent(sides.size() / 3);
  std::iota(parent.begin(), parent.end(), 0);
  forEachEdge(sides, [&](const Side* first, const Side* last) {
    for (const Side* side = first + 1; side != last; ++side) {
      const std::int32_t a = pieceOf(parent, first->element - 1), b = pieceOf(parent, side->element - 1);
      parent[static_cast<std::size_t>(std::max(a, b))] = std::min(a, b);
    }
  });
  for (std::size_t e = 0; e < parent.size(); ++e) parent[e] = pieceOf(parent, static_cast<std::int32_t>(e));
  return parent;
}

}  // namespace host
