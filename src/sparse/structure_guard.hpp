// Recognises a WORK that was changed between the solver's steps.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

class ThreadPool;

/// Checksum of the entries first..last of WORK, without those header entries that steps change (19, 29, 30, 35).
/// WORK: in; first, last: in, one-based; a range that leaves WORK gives 0. Position-dependent: a changed entry or an
/// exchange of two shows but for accidents of one in 2⁶⁴ (J. G. Fletcher, IEEE Trans. Comm. 30, 1982, here on
/// 64-bit sums).
/// pool: in, threads that may help; null: none. The sum is the same.
std::uint64_t structureSum(Vector<const Int> WORK, Int64 first, Int64 last, ThreadPool* pool = nullptr);

}  // namespace tornwalzen
