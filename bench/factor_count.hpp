// What a factorization costs in a given order, counted without it.
#pragma once

#include "contender.hpp"

namespace bench {

/// Entries of L and operations for eliminating the equations in the order `order` (a permutation,
/// zero-based), by the elimination tree and its row subtrees (J. W. H. Liu, The role of elimination trees in
/// sparse factorization, SIAM J. Matrix Anal. 11, 1990). Takes time proportional to the entries of L.
Fill countFactor(const SymmetricMatrix& a, const std::vector<std::int32_t>& order);

}  // namespace bench
