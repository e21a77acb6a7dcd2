// How fronts, update stack and packing space lie in the real work array, in doubles. The symbolic phase sizes with
// these formulas what the numeric phase uses; they do not depend on the processor.
//
//   RWORK:  D | L of the supernodes done | front | packing space ->    <- update stack |
// A front starts where its supernode's part of L will be: the columns of L are packed in place, and what later
// supernodes will need is free until then.
//
// A front of c rows and w pivot columns keeps its lower triangle in blocks of panelWidth columns, one block behind the
// other, the blocks of the other columns starting anew at column w;
// each is a rectangle from just above its first diagonal entry down. That is half the memory of a square for large
// fronts, and whole register tiles all the same.
// The functions are static: the kernels' files, compiled for other processors, must not share their copies.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

constexpr Int64 frontAlignment = 8;  // doubles in a cache line, and in the widest vector register
constexpr Int64 panelWidth = 64;  // pivot columns that are eliminated before the rest of the front is updated
constexpr Int64 largestTile = 32;   // rows or columns that a register tile may have at most
constexpr Int64 rowsOfBlock = 480;  // rows of L that stay in the second-level cache during an update
constexpr Int64 solveMargin = 8;    // the solve's kernels work on whole vectors, past the end of a column

/// A block of a front; rows and columns zero-based.
struct FrontBlock {
  Int64 first, end;  // columns first .. end-1
  Int64 row;         // its first row, far enough above the diagonal for a register tile
  Int64 stride;      // its leading dimension
  Int64 start;       // where it lies, from the start of the front
};

/// Rows up to the next cache line.
static constexpr Int64 linesOf(Int64 rows) {
  return (rows + frontAlignment - 1) / frontAlignment * frontAlignment;
}

/// Leading dimension for a number of rows: whole cache lines, and no multiple of 4 KiB, which would put a row's
/// entries of all columns into one set of the first-level cache.
static constexpr Int64 blockStride(Int64 rows) {
  const Int64 lines = linesOf(rows);
  return lines % 512 == 0 ? lines + frontAlignment : lines;
}

/// The block whose first column is `first`.
static constexpr FrontBlock blockFrom(Int64 first, Int64 start, Int64 c, Int64 w) {
  const Int64 last = first < w ? w : c, end = first + panelWidth < last ? first + panelWidth : last;
  const Int64 above = first - (largestTile - 1),
              row = above > 0 ? above / frontAlignment * frontAlignment : 0;
  return {first, end, row, blockStride(c - row), start};
}

static constexpr FrontBlock firstBlock(Int64 c, Int64 w) {
  return blockFrom(0, 0, c, w);
}

static constexpr FrontBlock blockAfter(const FrontBlock& b, Int64 c, Int64 w) {
  return blockFrom(b.end, b.start + (b.end - b.first) * b.stride, c, w);
}

static constexpr FrontBlock blockBefore(const FrontBlock& b, Int64 c, Int64 w) {
  const Int64 first = b.first == w ? (w - 1) / panelWidth * panelWidth : b.first - panelWidth;
  FrontBlock before = blockFrom(first, 0, c, w);
  before.start = b.start - (before.end - before.first) * before.stride;
  return before;
}

/// Place of row 0 of column j, counted from the start of the front; the rows before b.row are other columns' memory.
static constexpr Int64 columnPlace(const FrontBlock& b, Int64 j) {
  return b.start + (j - b.first) * b.stride - b.row;
}

/// A front, with room to start it on a cache line.
static constexpr Int64 frontDoubles(Int64 c, Int64 w) {
  FrontBlock b = firstBlock(c, w);
  while (b.first < c) b = blockAfter(b, c, w);
  return b.start + frontAlignment;
}

/// An update matrix of u rows on the stack: its lower triangle by columns.
constexpr Int64 updateDoubles(Int64 u) {
  return u * (u + 1) / 2;
}

/// D·Lᵀ of a panel by columns in a front of c rows, the last tile filled up.
static constexpr Int64 scaledDoubles(Int64 c) {
  return panelWidth * (c + largestTile);
}
/// A block of `rows` rows of a panel of L, at most rowsOfBlock of them, the last tile filled up.
static constexpr Int64 packedRowsDoubles(Int64 rows) {
  return panelWidth * ((rows < rowsOfBlock ? rows : rowsOfBlock) + largestTile);
}
/// Packing space of the dense kernels for a front of c rows.
constexpr Int64 packingDoubles(Int64 c) {
  return scaledDoubles(c) + packedRowsDoubles(c);
}

}  // namespace tornwalzen
