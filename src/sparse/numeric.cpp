// Multifrontal L·D·Lᵀ (I. S. Duff, J. K. Reid, The multifrontal solution of indefinite sparse symmetric linear
// equations, ACM TOMS 9, 1983; here without pivoting). Supernodes are numbered in a postorder of the elimination
// tree: each forms its front from its matrix columns and the update matrices of its children, which lie on top of
// a stack, eliminates its columns and leaves its own update matrix on the stack.
// The layout of RWORK stands in front_layout.hpp.
#include "sparse/numeric.hpp"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

#include "sparse/kernels/dense_kernels.hpp"
#include "sparse/kernels/front_layout.hpp"
#include "sparse/phase_error.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

namespace {

// The integer arrays of the numeric phase.
struct NumericArrays {
  Vector<Int> XUPPER;  // NEQ: last place in COLIDX of each column's list
  Vector<Int>
      COLIDX;  // for each column of L the matrix columns that hold one of its entries as a row, in the
               // old numbering; the other entries stand in the column's own matrix column
  Vector<Int> BIGMAP;  // NEQ: place of a row in the front at work
  Vector<Int> STACK;   // m: supernodes whose update matrices are on the stack
  Int64 end;
};

NumericArrays carveNumeric(Vector<Int> WORK, Int64 firstFree, Int64 NEQ, Int64 NNZ, Int64 m) {
  WorkCarver carve(WORK, firstFree);
  NumericArrays n;
  n.XUPPER = carve.take("XUPPER", NEQ);
  n.COLIDX = carve.take("COLIDX", NNZ - NEQ);
  n.BIGMAP = carve.take("BIGMAP", NEQ);
  n.STACK = carve.take("STACK", m);
  n.end = carve.next();
  return n;
}

// Finds for every matrix entry (i, j) below the diagonal the column of L it belongs to: that of j, or, where i comes
// first in the new order, that of i, which then lists j.
void findColumns(Vector<const Int> COLS, Vector<const Int> ROWI, const FactorStructure& f,
                 const NumericArrays& n) {
  const Int64 NEQ = n.XUPPER.length();
  for (Int64 p = 1; p <= NEQ; ++p) n.XUPPER(p) = n.BIGMAP(p) = 0;
  const auto forUpper = [&](auto visit) {
    for (Int64 j = 1; j <= NEQ; ++j)
      for (Int64 k = COLS(j) + 1; k < COLS(j + 1); ++k) {
        const Int p = f.INVP(ROWI(k));
        if (p < f.INVP(j)) visit(p, static_cast<Int>(j));
      }
  };
  forUpper([&](Int p, Int) { ++n.XUPPER(p); });
  Int end = 0;
  for (Int64 p = 1; p <= NEQ; ++p) {
    const Int count = n.XUPPER(p);
    n.XUPPER(p) = end;  // the place before the column's list, until the list is filled
    end += count;
  }
  forUpper([&](Int p, Int j) { n.COLIDX(++n.XUPPER(p)) = j; });
  for (Int64 t = Int64{end} + 1; t <= n.COLIDX.length(); ++t) n.COLIDX(t) = 0;  // in the checksum too
}

double* onCacheLine(double* p) {
  const auto address = reinterpret_cast<std::uintptr_t>(p);
  const std::uintptr_t line = frontAlignment * sizeof(double);
  return p + ((line - address % line) % line) / sizeof(double);
}

// One front. Its columns are found by the blocks they lie in, quickly in either direction.
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
  /// Zeros the lower triangle, and the rows that fill up the last cache line.
  void clear() {
    for (Int64 j = 1; j <= c; ++j) {
      double* const entries = column(j);
      const Int64 from = (j - 1) / frontAlignment * frontAlignment, end = block_.row + block_.stride;
      std::memset(entries + from, 0, static_cast<std::size_t>(end - from) * sizeof(double));
    }
  }

 private:
  void find(Int64 j) {
    while (j >= block_.end) block_ = blockAfter(block_, c, w);
    while (j < block_.first) block_ = blockBefore(block_, c, w);
  }

  double* const first_;
  FrontBlock block_;  // the one that was used last
};

// Puts the entries of the supernode's matrix columns into the front. False if one has no row there.
bool placeMatrix(Vector<const Int> COLS, Vector<const Int> ROWI, Vector<const double> SYSM,
                 const FactorStructure& f, const NumericArrays& n, Int k, Front& F) {
  const Int start = f.XLINDX(k), firstColumn = f.XSUP(k);
  for (Int l = 1; l <= F.c; ++l) n.BIGMAP(f.LINDX(start + l - 1)) = l;
  for (Int q = 1; q <= F.w; ++q) {
    const Int p = firstColumn + q - 1, j = f.PERM(p);
    double* const column = F.column(q);
    const auto put = [&](Int row, double value) {
      const Int l = n.BIGMAP(row);
      if (l < q || l > F.c || f.LINDX(start + l - 1) != row) return false;
      column[l - 1] = value;
      return true;
    };
    const Int64 diagonal = COLS(j), end = COLS(j + 1);
    column[q - 1] = SYSM(diagonal);
    for (Int64 e = diagonal + 1; e < end; ++e) {
      const Int row = f.INVP(ROWI(e));
      if (row > p && !put(row, SYSM(e))) return false;
    }
    for (Int64 t = (p > 1 ? Int64{n.XUPPER(p - 1)} : 0) + 1; t <= n.XUPPER(p); ++t) {
      const Int i = n.COLIDX(t);
      Int64 e = COLS(i) + 1;
      while (e < COLS(i + 1) && ROWI(e) < j) ++e;  // columns are short
      if (e >= COLS(i + 1) || ROWI(e) != j || !put(f.INVP(i), SYSM(e))) return false;
    }
  }
  return true;
}

// Adds the update matrix U (lower triangle by columns) of supernode `child` to the front of its parent.
void extendAdd(const FactorStructure& f, Int child, const double* U, Front& F) {
  const Int64 below = Int64{f.XLINDX(child)} + (f.XSUP(child + 1) - f.XSUP(child));
  const Int64 u = f.XLINDX(child + 1) - below;
  const Int* const place = f.LCLDX.data() + (below - 1);  // one-based places, zero-based list
  for (Int64 j = 0; j < u; ++j) {
    double* const column = F.column(place[j]) - 1;
    for (Int64 i = j; i < u; ++i) column[place[i]] += U[i - j];
    U += u - j;
  }
}

// Packs the columns of L below their diagonals to where the front starts, in place: each moves down. Keeps the pivots.
void storeFactor(Front& F, double* L, double* D) {
  for (Int64 q = 1; q <= F.w; ++q) {
    const double* const column = F.column(q);
    D[q - 1] = column[q - 1];
    std::memmove(L, column + q, static_cast<std::size_t>(F.c - q) * sizeof(double));
    L += F.c - q;
  }
}

// Moves the Schur complement to the stack, which may grow into the front itself: its columns, the last one first,
// each move up. Returns the new top of the stack.
double* pushUpdate(Front& F, double* stackTop) {
  for (Int64 j = F.c; j > F.w; --j) {
    stackTop -= F.c - j + 1;
    std::memmove(stackTop, F.column(j) + (j - 1), static_cast<std::size_t>(F.c - j + 1) * sizeof(double));
  }
  return stackTop;
}

}  // namespace

Int64 numericEnd(Vector<Int> WORK, Int64 firstFree, Int64 NEQ, Int64 NNZ, Int64 m) {
  return carveNumeric(WORK, firstFree, NEQ, NNZ, m).end;
}

void numericPhase(const DenseKernels& kernels, bool first, Vector<const Int> COLS, Vector<const Int> ROWI,
                  Vector<const double> SYSM, Vector<Int> WORK, Vector<double> RWORK, Int& IERR) {
  const Int NEQ = WORK(header::equations), m = WORK(header::supernodes),
            NNZ = static_cast<Int>(ROWI.length());
  const Int64 factorEntries = WORK(header::factorEntries);
  IERR = ierr::shortWork3;
  const Int64 intLength =
      numericLength(partialLength(NEQ, m, WORK(header::subscripts)), WORK(header::largestFront),
                    WORK(header::largestUpdate), m, NNZ, WORK(header::realGrowth));
  const Int64 realLength = factorEntries + NEQ + WORK(header::scratchDoubles);
  for (const auto& [length, required] : {std::pair{WORK.length(), intLength}, {RWORK.length(), realLength}})
    if (length < required) {
      WORK(header::shortage) = static_cast<Int>(std::min<Int64>(required, std::numeric_limits<Int>::max()));
      return;
    }

  const FactorStructure f = factorStructure(WORK);
  const NumericArrays n = carveNumeric(WORK, WORK(header::freePhase3), NEQ, NNZ, m);
  if (first) findColumns(COLS, ROWI, f, n);

  double* const D = RWORK.data();
  double* const L = D + NEQ;
  double* stackTop = L + factorEntries + WORK(header::scratchDoubles);  // the stack grows downwards
  Int pending = 0;                                                      // update matrices on the stack
  for (Int k = 1; k <= m; ++k) {
    const Int64 c = f.XLINDX(k + 1) - f.XLINDX(k), w = f.XSUP(k + 1) - f.XSUP(k);
    double* const block = L + (f.ASTART(k) - 1);
    Front F(onCacheLine(block), c, w);
    F.clear();
    if (!placeMatrix(COLS, ROWI, SYSM, f, n, k, F)) {
      IERR = ierr::noPlace;
      return;
    }
    for (Int child = 0; child < f.NCHILD(k); ++child) {
      const Int below = n.STACK(pending--);
      extendAdd(f, below, stackTop, F);
      stackTop +=
          updateDoubles((f.XLINDX(below + 1) - f.XLINDX(below)) - (f.XSUP(below + 1) - f.XSUP(below)));
    }
    if (kernels.factorFront(F.first(), c, w, F.first() + (frontDoubles(c, w) - frontAlignment)) != 0) {
      IERR = ierr::zeroPivot;
      return;
    }
    stackTop = pushUpdate(F, stackTop);
    if (c > w) n.STACK(++pending) = k;
    storeFactor(F, block, D + (f.XSUP(k) - 1));
  }
  IERR = ierr::ok;
}

}  // namespace tornwalzen
