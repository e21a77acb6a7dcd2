// The pieces of a mesh: triangles that hang together by edges.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/edges.hpp"

namespace host {

// Per element (from 0) the smallest element of its piece. sides: of all elements, sorted. A single shared node joins
// nothing.
std::vector<std::int32_t> findPieces(const std::vector<Side>& sides);

}  // namespace host
