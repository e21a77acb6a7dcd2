// Supernodes are numbered in a postorder of the elimination tree: each forms its front from its matrix columns and the
// update matrices of its children, which lie on top of a stack, eliminates its columns and leaves its own update matrix
// on the stack. The layout stands in front_layout.hpp.
#include "sparse/fronts.hpp"

#include <algorithm>
#include <cstring>

#include "sparse/kernels/dense_kernels.hpp"
#include "sparse/phase_error.hpp"

namespace tornwalzen {

double* onCacheLine(double* p) {
  const auto address = reinterpret_cast<std::uintptr_t>(p);
  const std::uintptr_t line = frontAlignment * sizeof(double);
  return p + ((line - address % line) % line) / sizeof(double);
}

void clearColumns(Front& F, Int64 from, Int64 to) {
  for (Int64 j = from; j <= to; ++j) {
    double* const entries = F.column(j);
    const Int64 first = (j - 1) / frontAlignment * frontAlignment, end = linesOf(F.c);
    std::memset(entries + first, 0, static_cast<std::size_t>(end - first) * sizeof(double));
  }
}

void mapRows(const FactorStructure& f, Int k, Vector<Int> BIGMAP) {
  const Int before = f.XLINDX(k) - 1, c = f.XLINDX(k + 1) - f.XLINDX(k);
  for (Int l = 1; l <= c; ++l) BIGMAP(f.LINDX(before + l)) = l;
}

bool placeMatrix(const Elimination& a, Int k, Vector<const Int> BIGMAP, Front& F, Int64 from, Int64 to) {
  const FactorStructure& f = a.f;
  const Int start = f.XLINDX(k), firstColumn = f.XSUP(k);
  for (Int64 q = from; q <= to; ++q) {
    const Int p = firstColumn + static_cast<Int>(q) - 1, j = f.PERM(p);
    double* const column = F.column(q);
    const auto put = [&](Int row, double value) {
      const Int l = BIGMAP(row);
      if (l < q || l > F.c || f.LINDX(start + l - 1) != row) return false;
      column[l - 1] = value;
      return true;
    };
    const Int64 diagonal = a.COLS(j), end = a.COLS(j + 1);
    column[q - 1] = a.SYSM(diagonal);
    for (Int64 e = diagonal + 1; e < end; ++e) {
      const Int row = f.INVP(a.ROWI(e));
      if (row > p && !put(row, a.SYSM(e))) return false;
    }
    for (Int64 t = (p > 1 ? Int64{a.XUPPER(p - 1)} : 0) + 1; t <= a.XUPPER(p); ++t) {
      const Int i = a.COLIDX(t);
      Int64 e = a.COLS(i) + 1;
      while (e < a.COLS(i + 1) && a.ROWI(e) < j) ++e;  // columns are short
      if (e >= a.COLS(i + 1) || a.ROWI(e) != j || !put(f.INVP(i), a.SYSM(e))) return false;
    }
  }
  return true;
}

void extendAdd(const FactorStructure& f, Int child, const double* U, Front& F, Int64 from, Int64 to) {
  const Int64 below = Int64{f.XLINDX(child)} + (f.XSUP(child + 1) - f.XSUP(child));
  const Int64 u = f.XLINDX(child + 1) - below;
  const Int* const place = f.LCLDX.data() + (below - 1);  // one-based places, zero-based list
  const Int64 first = from > place[0] ? std::lower_bound(place, place + u, from) - place : 0;
  U += first * u - first * (first - 1) / 2;
  for (Int64 j = first; j < u && place[j] <= to; ++j) {
    double* const column = F.column(place[j]) - 1;
    for (Int64 i = j; i < u; ++i) column[place[i]] += U[i - j];
    U += u - j;
  }
}

void storeFactor(Front& F, double* L, double* D, Int64 from, Int64 to) {
  L += trapezoidEntries(from - 1, F.c);
  for (Int64 q = from; q <= to; ++q) {
    const double* const column = F.column(q);
    D[q - 1] = column[q - 1];
    std::memmove(L, column + q, static_cast<std::size_t>(F.c - q) * sizeof(double));
    L += F.c - q;
  }
}

void storeUpdate(Front& F, double* U, Int64 from, Int64 to) {
  U += updateDoubles(F.c - F.w) - updateDoubles(F.c - to);
  for (Int64 j = to; j >= from; --j) {
    U -= F.c - j + 1;
    std::memmove(U, F.column(j) + (j - 1), static_cast<std::size_t>(F.c - j + 1) * sizeof(double));
  }
}

Int eliminateRange(const Elimination& a, Int first, Int last, FrontSpace& space, Int& IERR) {
  for (Int k = first; k <= last; ++k) {
    const Int64 c = a.rows(k), w = a.pivots(k);
    double* const block = a.block(k);
    Front F(space.front != nullptr ? space.front : onCacheLine(block), c, w);
    clearColumns(F, 1, c);
    mapRows(a.f, k, space.BIGMAP);
    if (!placeMatrix(a, k, space.BIGMAP, F, 1, w)) {
      IERR = ierr::noPlace;
      return k;
    }
    for (Int child = 0; child < a.f.NCHILD(k); ++child) {
      const Int below = space.STACK(space.pending--);
      extendAdd(a.f, below, space.stackTop, F, 1, c);
      space.stackTop += updateDoubles(a.updateRows(below));
    }
    double* const packing = F.first() + (frontDoubles(c, w) - frontAlignment);
    if (a.kernels.factorFront(F.first(), c, w, packing) != 0) {
      IERR = ierr::zeroPivot;
      return k;
    }
    const bool leaves = a.f.PARENT(k) > last;
    double*& top = leaves ? space.leaving : space.stackTop;
    top -= updateDoubles(c - w);
    storeUpdate(F, top, w + 1, c);
    if (c > w && !leaves) space.STACK(++space.pending) = k;
    storeFactor(F, block, a.D + (a.f.XSUP(k) - 1), 1, w);
  }
  IERR = ierr::ok;
  return 0;
}

}  // namespace tornwalzen
