// The pieces of a mesh: triangles that hang together by edges.
#pragma once

#include <cstdint>
#include <vector>

namespace host {

// Per element (from 0) the smallest element of its piece. corners: three node numbers per triangle. A single shared
// node joins nothing.
std::vector<std::int32_t> findPieces(const std::vector<std::int32_t>& corners);

}  // namespace host
