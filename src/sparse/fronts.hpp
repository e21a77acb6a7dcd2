// The fronts of the multifrontal method: how one is formed from the matrix and its children, eliminated and stored.
#pragma once

#include "ground/array_view.hpp"
#include "sparse/kernels/front_layout.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

struct DenseKernels;

/// What the elimination reads, and where it leaves the factor.
struct Elimination {
  const DenseKernels& kernels;
  Vector<const Int> COLS, ROWI;
  Vector<const double> SYSM;
  FactorStructure f;
  Vector<Int> XUPPER;  // NEQ: last place in COLIDX of each column's list
  Vector<Int>
      COLIDX;     // for each column of L the matrix columns that hold one of its entries as a row, in the
                  // old numbering; the other entries stand in the column's own matrix column
  double *D, *L;  // NEQ pivots; L by supernodes

  Int64 rows(Int k) const { return f.XLINDX(k + 1) - f.XLINDX(k); }
  Int64 pivots(Int k) const { return f.XSUP(k + 1) - f.XSUP(k); }
  Int64 updateRows(Int k) const { return rows(k) - pivots(k); }
  double* block(Int k) const { return L + (f.ASTART(k) - 1); }
};

/// One front. Its columns are found by the blocks they lie in, quickly in either direction.
class Front {
 public:
  const Int64 c, w;  // rows; pivot columns

  Front(double* first, Int64 rows, Int64 pivots)
      : c(rows), w(pivots), first_(first), block_(firstBlock(rows, pivots)) {}

  double* first() const { return first_; }
  /// Column j, one-based, so that [i - 1] is its entry in row i.
  double* column(Int64 j) {
    find(j - 1);
    return first_ + columnPlace(block_, j - 1);
  }

 private:
  void find(Int64 j) {
    while (j >= block_.end) block_ = blockAfter(block_, c, w);
    while (j < block_.first) block_ = blockBefore(block_, c, w);
  }

  double* const first_;
  FrontBlock block_;  // the one that was used last
};

/// The first place from p on that begins a cache line.
double* onCacheLine(double* p);

/// Each of these works on the columns from .. to of the front, one-based; they may be divided among threads.

/// Zeros the lower triangle, and the rows that fill up the last cache line.
void clearColumns(Front& F, Int64 from, Int64 to);

/// BIGMAP: out, the place of each of the supernode's rows in its front; the other entries stay.
void mapRows(const FactorStructure& f, Int k, Vector<Int> BIGMAP);

/// Puts the entries of the supernode's matrix columns into the front. BIGMAP: in, as mapRows left it. False if one has
/// no row there.
bool placeMatrix(const Elimination& a, Int k, Vector<const Int> BIGMAP, Front& F, Int64 from, Int64 to);

/// Adds the update matrix U (lower triangle by columns) of supernode `child` to those columns of its parent's front.
void extendAdd(const FactorStructure& f, Int child, const double* U, Front& F, Int64 from, Int64 to);

/// Packs columns of L below their diagonals to L, the place of the supernode's first, and keeps the pivots. L may lie
/// where the front starts: in rising order the columns move down.
void storeFactor(Front& F, double* L, double* D, Int64 from, Int64 to);

/// Moves columns of the Schur complement to the update matrix at U, from > w. In falling order they may move up into
/// the front itself.
void storeUpdate(Front& F, double* U, Int64 from, Int64 to);

/// What one thread needs to eliminate supernodes one after the other.
struct FrontSpace {
  Vector<Int> BIGMAP;  // NEQ: place of a row in the front at work
  Vector<Int> STACK;   // supernodes whose update matrices are on the stack
  double* front;       // where every front starts; null: each where its part of L will be
  double* stackTop;    // of the update matrices, which grow downwards
  double* leaving =
      nullptr;      // likewise where those go whose parent does not follow; none where all parents do
  Int pending = 0;  // update matrices on the stack
};

/// Eliminates the supernodes first .. last one after the other; with each, all its descendants are among them. IERR: out, 0, noPlace or
/// zeroPivot. Returns the supernode that failed.
Int eliminateRange(const Elimination& a, Int first, Int last, FrontSpace& space, Int& IERR);

}  // namespace tornwalzen
