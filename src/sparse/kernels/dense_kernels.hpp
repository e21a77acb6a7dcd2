// The dense kernels of the factorization and the solves: one table per instruction set, the best one that the
// processor has chosen once at load. The portable table is the truth that the others are tested against.
// Zero-based, on contiguous column-major memory.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

struct DenseKernels {
  const char* name;

  /// Eliminates the first w columns of a front, F = L·D·Lᵀ + Schur complement, without pivoting.
  /// F: inout, c rows and columns, lower triangle, in the blocks of front_layout.hpp, on a cache line; out: columns
  /// below w hold D on the diagonal and L below it, the rest the Schur complement. What the blocks hold above the
  /// diagonal is scratch; the rows behind c up to the next cache line are scratch too and must hold numbers.
  /// packing: scratch of packingDoubles(c), on a cache line.
  /// Returns 0, or the one-based column whose pivot is exactly zero; the front is then left half done.
  Int64 (*factorFront)(double* F, Int64 c, Int64 w, double* packing);

  /// One supernode of w columns and c rows in the forward substitution: y1 := L11⁻¹·y1, y2 := -L21·y1.
  /// L: in, its columns one after the other, each from below its diagonal: trapezoidEntries(w, c), then
  /// solveMargin doubles that may be read but do not matter. y: inout, c entries, y1 its first w, the others
  /// out; then solveMargin doubles of scratch.
  void (*forward)(const double* L, Int64 w, Int64 c, double* y);

  /// The same in the backward substitution: y1 := L11⁻ᵀ·(y1 - L21ᵀ·y2). Arguments as above, y2 stays.
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
