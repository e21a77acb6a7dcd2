// Supernodal symbolic factorization (E. G. Ng, B. W. Peyton, Block sparse Cholesky algorithms on advanced
// uniprocessor computers, SIAM J. Sci. Comput. 14, 1993): the rows of a supernode are those of its matrix
// columns and those that its children leave over.
#include "sparse/symbolic.hpp"

#include <algorithm>
#include <cstring>
#include <limits>

#include "sparse/kernels/front_layout.hpp"
#include "sparse/phase_error.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

namespace {

constexpr Int64 largestInt = std::numeric_limits<Int>::max();

// LINDX and XLINDX; false if the rows found do not match the counts of phase 1.
bool findSubscripts(const OrderedStructure& o, Int m, Vector<Int> XLINDX, Vector<Int> LINDX,
                    Vector<Int> MARKER, Vector<Int> FIRST, Vector<Int> BRTHER) {
  for (Int64 i = 1; i <= MARKER.length(); ++i) MARKER(i) = 0;
  for (Int k = 1; k <= m; ++k) FIRST(k) = 0;
  Int next = 1;
  for (Int k = 1; k <= m; ++k) {
    const Int first = o.XSUP(k), last = o.XSUP(k + 1) - 1;
    const Int64 end = Int64{next} + o.COLCNT(k);  // the place behind this supernode's subscripts
    if (end - 1 > LINDX.length()) return false;
    XLINDX(k) = next;
    for (Int j = first; j <= last; ++j) LINDX(next++) = j;
    const Int below = next;
    bool fits = true;
    const auto add = [&](Int row) {
      if (row <= last || MARKER(row) == k) return;
      MARKER(row) = k;
      if (next < end)
        LINDX(next++) = row;
      else
        fits = false;
    };
    for (Int c = FIRST(k); c > 0; c = BRTHER(c))
      for (Int64 p = Int64{XLINDX(c)} + (o.XSUP(c + 1) - o.XSUP(c)); p < XLINDX(c + 1); ++p) add(LINDX(p));
    for (Int j = first; j <= last; ++j) {
      const Int i = o.PERM(j);
      for (Int64 p = o.XADJ(i); p < o.XADJ(i + 1); ++p) add(o.INVP(o.ADJNCY(p)));
    }
    if (!fits || next != end) return false;
    std::sort(LINDX.data() + (below - 1), LINDX.data() + (next - 1));
    XLINDX(k + 1) = next;
    const Int parent = next > below ? o.SUPMAP(LINDX(below)) : 0;
    if (parent != o.PARENT(k)) return false;
    if (parent > 0) {
      BRTHER(k) = FIRST(parent);
      FIRST(parent) = k;
    }
  }
  if (m == 0) XLINDX(1) = 1;
  return true;
}

// Moves an array to its place in the final layout; the new place never lies behind the old one.
void move(Vector<const Int> from, Vector<Int> to) {
  if (to.length() > 0)
    std::memmove(to.data(), from.data(), static_cast<std::size_t>(to.length()) * sizeof(Int));
}

// LCLDX: merging the sorted rows of a supernode with the sorted rows of its parent; 0 at its own columns, which are
// in the checksum too.
void findLocalIndices(const FactorStructure& f, Int m) {
  for (Int64 i = 1; i <= f.LCLDX.length(); ++i) f.LCLDX(i) = 0;
  for (Int k = 1; k <= m; ++k) {
    const Int parent = f.PARENT(k);
    if (parent == 0) continue;
    const Int start = f.XLINDX(parent);
    Int p = start;
    for (Int64 i = Int64{f.XLINDX(k)} + (f.XSUP(k + 1) - f.XSUP(k)); i < f.XLINDX(k + 1); ++i) {
      while (f.LINDX(p) != f.LINDX(i)) ++p;
      f.LCLDX(i) = p - start + 1;
    }
  }
}

// The children of each supernode and the start of its block in L.
void findBlocks(const FactorStructure& f, Int m) {
  for (Int k = 1; k <= m; ++k) f.NCHILD(k) = 0;
  Int start = 1;
  for (Int k = 1; k <= m; ++k) {
    f.ASTART(k) = start;
    start += static_cast<Int>(trapezoidEntries(f.XSUP(k + 1) - f.XSUP(k), f.XLINDX(k + 1) - f.XLINDX(k)));
    if (f.PARENT(k) > 0) ++f.NCHILD(f.PARENT(k));
  }
  f.ASTART(m + 1) = start;
}

// Doubles that fronts, update stack and packing space take behind D and L at their peak; also f1 and f2. The
// children's update matrices are on the stack until they are added to their parent's front; then the kernels
// may pack. The solve takes f1 + solveMargin of it. ONSTACK is scratch, m.
Int64 findPeak(const FactorStructure& f, Int m, Int64 factorEntries, Vector<Int> ONSTACK, Int& f1, Int& f2) {
  Int64 stack = 0, done = 0, peak = 0;  // done: entries of L before this supernode
  f1 = f2 = 0;
  for (Int k = 1; k <= m; ++k) ONSTACK(k) = 0;
  for (Int k = 1; k <= m; ++k) {
    const Int c = f.XLINDX(k + 1) - f.XLINDX(k), w = f.XSUP(k + 1) - f.XSUP(k), u = c - w;
    f1 = std::max(f1, c);
    f2 = std::max(f2, u);
    const Int64 others = stack - ONSTACK(k);
    peak = std::max(peak, done + frontDoubles(c, w) + std::max(stack, others + packingDoubles(c)));
    stack = others + updateDoubles(u);
    if (stack > largestInt) return stack;
    if (f.PARENT(k) > 0) ONSTACK(f.PARENT(k)) += static_cast<Int>(updateDoubles(u));
    done += trapezoidEntries(w, c);
  }
  return std::max(f1 + solveMargin, peak - factorEntries);
}

}  // namespace

void layOutFactor(Vector<Int> WORK, Int& f1, Int& f2, Int& g, Int& IERR) {
  const Int NEQ = WORK(header::equations), m = WORK(header::supernodes);
  const FactorStructure f = factorStructure(WORK);
  IERR = ierr::ok;
  findLocalIndices(f, m);
  const Int64 peak = findPeak(f, m, WORK(header::factorEntries), f.ASTART, f1, f2);
  findBlocks(f, m);

  const Int64 growth =
      peak <= 2 * Int64{NEQ} ? Int64{NEQ} : std::max(Int64{NEQ} + 1, (peak - 2 * Int64{NEQ} + 1) / 2);
  const Int64 real = Int64{WORK(header::factorEntries)} + 3 * Int64{NEQ} + (growth > NEQ ? 2 * growth : 0);
  if (real > largestInt) {
    IERR = ierr::tooLarge;
    return;
  }
  g = static_cast<Int>(growth);
  WORK(header::largestFront) = f1;
  WORK(header::largestUpdate) = f2;
  WORK(header::realGrowth) = g;
  WORK(header::scratchDoubles) = static_cast<Int>(peak);
  WORK(header::freePhase3) = static_cast<Int>(f.end);
}

void symbolicPhase(Int NNZ, Vector<Int> WORK, Int& f1, Int& f2, Int& g, Int& IERR) {
  const Int NEQ = WORK(header::equations), m = WORK(header::supernodes), s = WORK(header::subscripts);
  f1 = f2 = g = 0;
  IERR = ierr::ok;
  const Int64 required = symbolicLength(NEQ, NNZ, m, s);
  if (WORK.length() < required) {
    WORK(header::shortage) = static_cast<Int>(std::min(required, largestInt));
    IERR = ierr::shortWork2;
    return;
  }

  const OrderedStructure o = orderedStructure(WORK, NEQ, WORK(header::adjacency), m);
  WorkCarver carve(WORK, o.end);
  const Vector<Int> XLINDX = carve.take("XLINDX", Int64{m} + 1), LINDX = carve.take("LINDX", s);
  const Vector<Int> MARKER = carve.take("MARKER", NEQ), FIRST = carve.take("FIRST", NEQ),
                    BRTHER = carve.take("BRTHER", NEQ);
  if (!findSubscripts(o, m, XLINDX, LINDX, MARKER, FIRST, BRTHER)) {
    IERR = ierr::inconsistent;
    return;
  }

  const FactorStructure f = factorStructure(WORK);
  move(o.PERM, f.PERM);
  move(o.INVP, f.INVP);
  move(o.SUPMAP, f.SUPMAP);
  move(o.XSUP, f.XSUP);
  move(o.PARENT, f.PARENT);
  move(XLINDX, f.XLINDX);
  move(LINDX, f.LINDX);
  layOutFactor(WORK, f1, f2, g, IERR);
}

}  // namespace tornwalzen
