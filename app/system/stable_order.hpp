// The order of many things by a key each, equal ones in the order in which they are given.
#pragma once

#include <cstdint>
#include <vector>

namespace host {

// The indices (from 0) of the keys, ascending by key, equal keys in their order. Time linear in their number.
// Source: H. Hollerith's sorting by digits, the least first; D. E. Knuth, The Art of Computer Programming 3, 5.2.5.
std::vector<std::int32_t> stableOrder(const std::vector<std::uint64_t>& keys);

}  // namespace host
