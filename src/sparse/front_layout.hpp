// How fronts, update stack and packing space lie in the real work array, in doubles. The symbolic phase sizes with
// these formulas what the numeric phase uses; they do not depend on the processor.
//
//   RWORK:  D | L of the supernodes done | front | packing space ->    <- update stack |
// A front starts where its supernode's part of L will be: the columns of L are packed in place, and what later
// supernodes will need is free until then.
#pragma once

#include "interface/array_view.hpp"

namespace tornwalzen {

constexpr Int64 frontAlignment = 8;    // doubles in a cache line, and in the widest vector register
constexpr Int64 panelWidth = 64;       // pivot columns that are eliminated before the rest of the front is updated

/// Leading dimension of a front of c rows: whole cache lines, and no multiple of 4 KiB, which would put a row's
/// entries of all columns into one set of the first-level cache.
constexpr Int64 frontStride(Int64 c) {
  const Int64 lines = (c + frontAlignment - 1) / frontAlignment * frontAlignment;
  return lines % 512 == 0 ? lines + frontAlignment : lines;
}

/// A front of c rows, square, with room to start it on a cache line.
constexpr Int64 frontDoubles(Int64 c) { return frontStride(c) * c + frontAlignment; }

/// An update matrix of u rows on the stack: its lower triangle by columns.
constexpr Int64 updateDoubles(Int64 u) { return u * (u + 1) / 2; }

constexpr Int64 largestTile = 32;      // rows or columns that a register tile may have at most
constexpr Int64 rowsOfBlock = 480;     // rows of L that stay in the second-level cache during an update

/// Packing space of the dense kernels for a front of c rows: D·Lᵀ of a panel by columns, and a block of its rows of L,
/// with the last tile of each filled up.
constexpr Int64 packingDoubles(Int64 c) {
  return panelWidth * (c + largestTile) + panelWidth * ((c < rowsOfBlock ? c : rowsOfBlock) + largestTile);
}

constexpr Int64 solveMargin = 8;       // the solve's kernels work on whole vectors, past the end of a column

}  // namespace tornwalzen
