// The edges of a triangle mesh: which triangles meet at each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "mesh/mesh.hpp"

namespace host {

// One side of one triangle.
struct Side {
  std::int32_t low, high;  // the two node numbers, low < high
  std::int32_t element;    // from 1
  bool rising;             // the triangle runs along it from the lower number to the higher
};

// The sides of all triangles, sorted by edge, then by element. corners: three node numbers (from 1) per triangle.
std::vector<Side> sortedSides(const std::vector<std::int32_t>& corners);

// What sidesOf keeps.
struct SortedSides {
  std::vector<std::int64_t> corners;  // whose sides they are
  std::vector<Side> sides;
};

// The same of a mesh whose corners are in range; kept with it, and only sorted anew when its corners have changed. Not
// for several threads at once.
std::shared_ptr<const SortedSides> sidesOf(const Mesh& mesh);

// Calls visit(first, last) with the range of sides of each edge, in ascending order of the edges.
template <class Visit>
void forEachEdge(const std::vector<Side>& sides, Visit visit) {
  for (std::size_t first = 0; first < sides.size();) {
    std::size_t last = first + 1;
    while (last < sides.size() && sides[last].low == sides[first].low &&
           sides[last].high == sides[first].high)
      ++last;
    visit(&sides[first], sides.data() + last);
    first = last;
  }
}

}  // namespace host
