// The dense kernels of the factorization and the solves: one table per instruction set, the best one that the
// processor has chosen once at load. The portable table is the truth that the others are tested against.
// Zero-based, on contiguous column-major memory.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

struct FrontBlock;

struct DenseKernels {
  const char* name;

  /// Eliminates the first w columns of a front, F = L·D·Lᵀ + Schur complement, without pivoting.
  /// F: inout, c rows and columns, lower triangle, in the blocks of front_layout.hpp, on a cache line; out: columns
  /// below w hold D on the diagonal and L below it, the rest the Schur complement. What the blocks hold above the
  /// diagonal is scratch; the rows behind c up to the next cache line are scratch too and must hold numbers.
  /// packing: scratch of packingDoubles(c), on a cache line.
  /// Returns 0, or the one-based column whose pivot is exactly zero; the front is then left half done.
  Int64 (*factorFront)(double* F, Int64 c, Int64 w, double* packing);

  /// The same in shares for several threads, panel by panel, with the same bits. Rows are counted from the panel's
  /// first diagonal entry, zero-based; K is the number of its columns.
  ///   factorDiagonal  the panel's rows 0 .. linesOf(K)-1; returns as factorFront
  ///   factorRows      its rows from .. to-1 below them; from: a multiple of frontAlignment, to: that or the last row
  ///   scaleBlock      D·Lᵀ for the columns of a block behind the panel; scaled: out, the panel's scaledDoubles(c),
  ///                   of which the blocks fill different parts. Needs all of factorRows
  ///   updateRows      the rest of the front in the rows from .. to-1, from >= K rounded down to a cache line, at
  ///                   most rowsOfBlock of them; from, to as above. Needs all of scaleBlock
  /// packing: scratch of packedRowsDoubles(rowsOfBlock) for each thread.
  Int64 (*factorDiagonal)(double* F, const FrontBlock& panel, Int64 c, double* packing);
  void (*factorRows)(double* F, const FrontBlock& panel, Int64 from, Int64 to, double* packing);
  void (*scaleBlock)(const double* F, const FrontBlock& panel, const FrontBlock& behind, double* scaled);
  void (*updateRows)(double* F, const FrontBlock& panel, const FrontBlock& behind, Int64 c, Int64 w,
                     Int64 end, Int64 from, Int64 to, const double* scaled, double* packing);

  /// One supernode of w columns and c rows in the forward substitution: y1 := L11⁻¹·y1, y2 := -L21·y1.
  /// L: in, its columns one after the other, each from below its diagonal: trapezoidEntries(w, c), then
  /// solveMargin doubles that may be read but do not matter. y: inout, c entries, y1 its first w, the others
  /// out; then solveMargin doubles of scratch.
  void (*forward)(const double* L, Int64 w, Int64 c, double* y);

  /// The same in shares for several threads, with the same bits: for the columns first .. last-1, first a multiple of
  /// 4, that of the rows first .. last-1, then that of the rows from .. to-1 behind them; to - from: whole cache
  /// lines, but in the last share. The columns go in rising order.
  void (*forwardTop)(const double* L, Int64 c, Int64 first, Int64 last, double* y);
  void (*forwardRows)(const double* L, Int64 w, Int64 c, Int64 first, Int64 last, Int64 from, Int64 to,
                      double* y);

  /// The supernode in the backward substitution: y1 := L11⁻ᵀ·(y1 - L21ᵀ·y2). Arguments as above, y2 stays.
  void (*backward)(const double* L, Int64 w, Int64 c, double* y);
};

template <class Table>
struct KernelTables;

/// All tables that this processor can run, the portable one first; an analysis uses the last, unless it names one.
const KernelTables<DenseKernels>& denseKernelTables();

extern const DenseKernels portableKernels;
#ifdef TORNWALZEN_X86_KERNELS
extern const DenseKernels avx2Kernels;
extern const DenseKernels avx512Kernels;
#endif

}  // namespace tornwalzen
