// Supernode amalgamation and the final numbering.
//
// Each element of the minimum degree search is a supernode with w = -QSIZE columns and c = COUNT rows, and the
// element that absorbed it is its parent in the elimination tree. A child merged into its parent gives w' = wk + wp
// columns of c' = wk + cp rows: the rows of a child below its columns are all among those of its parent.
#include "sparse/supernodes.hpp"

#include <algorithm>
#include <limits>

#include "sparse/kernels/front_layout.hpp"

namespace tornwalzen {

namespace {

constexpr Int64 largestInt = std::numeric_limits<Int>::max();

// The scratch of the search under its names in this step, all by node number.
struct SupernodeScratch {
  Vector<Int> QSIZE;   // minus the columns of a supernode; 0: no supernode of its own
  Vector<Int> DEGREE;  // rows of a supernode (COUNT of the search)
  Vector<Int> ABSORB;  // parent > 0, root 0, representative < 0
  Vector<Int> FIRST;   // first child
  Vector<Int> BRTHER;  // next sibling
  Vector<Int> MERGED;  // the supernode that took this one in, 0 if none
  Vector<Int> OFILL;   // explicit zeros of a supernode; later the peak of its subtree
  Vector<Int> NEWSEQ;  // supernodes in their new sequence; lists of children while they are sorted
  Vector<Int> NEWNOD;  // new number of a supernode
};

bool isSupernode(const SupernodeScratch& t, Int v) {
  return t.QSIZE(v) < 0;
}

// Follows the links of `next` from v to their end, and shortens them.
template <class Next, class Set>
Int followLinks(Int v, Next next, Set set) {
  Int end = v;
  while (next(end) > 0) end = next(end);
  while (next(v) > 0) {
    const Int after = next(v);
    set(v, end);
    v = after;
  }
  return end;
}

Int mergedInto(const SupernodeScratch& t, Int v) {
  return followLinks(
      v, [&](Int i) { return t.MERGED(i); },
      [&](Int i, Int end) {
        if (i != end) t.MERGED(i) = end;
      });
}

// The element that an absorbed node finally went into.
Int elementOf(const SupernodeScratch& t, Int v) {
  const auto representative = [&](Int i) { return t.QSIZE(i) < 0 ? 0 : -t.ABSORB(i); };
  return followLinks(v, representative, [&](Int i, Int end) { t.ABSORB(i) = -end; });
}

// Child lists from parents; children and roots (list of node 0) in ascending order. Returns the first root.
template <class Parent>
Int buildTree(const SupernodeScratch& t, Int nodes, Parent parent) {
  Int firstRoot = 0;
  for (Int v = 1; v <= nodes; ++v) t.FIRST(v) = 0;
  for (Int v = nodes; v >= 1; --v) {
    if (!isSupernode(t, v) || t.MERGED(v) > 0) continue;
    Int& list = parent(v) > 0 ? t.FIRST(parent(v)) : firstRoot;
    t.BRTHER(v) = list;
    list = v;
  }
  return firstRoot;
}

// Calls visit(v) for every supernode, children before their parent, in the order of the child lists.
template <class Parent, class Visit>
void postorder(const SupernodeScratch& t, Int firstRoot, Parent parent, Visit visit) {
  const auto deepest = [&](Int v) {
    while (t.FIRST(v) > 0) v = t.FIRST(v);
    return v;
  };
  for (Int v = firstRoot > 0 ? deepest(firstRoot) : 0; v > 0;) {
    const Int brother = t.BRTHER(v), up = parent(v);  // visit may change the children's links, not v's own
    visit(v);
    v = brother > 0 ? deepest(brother) : up;
  }
}

// Takes children into their parent while the explicit zeros stay allowed, bottom up, the tallest child first.
void amalgamate(const SupernodeScratch& t, Int nodes) {
  const auto parent = [&](Int v) { return t.ABSORB(v); };
  for (Int v = 1; v <= nodes; ++v) t.MERGED(v) = t.OFILL(v) = 0;
  const Int firstRoot = buildTree(t, nodes, parent);
  postorder(t, firstRoot, parent, [&](Int p) {
    Int children = 0;
    for (Int k = t.FIRST(p); k > 0; k = t.BRTHER(k)) t.NEWSEQ(++children) = k;
    Int* const list = t.NEWSEQ.data();
    std::sort(list, list + children,
              [&](Int a, Int b) { return t.DEGREE(a) != t.DEGREE(b) ? t.DEGREE(a) > t.DEGREE(b) : a < b; });
    for (Int i = 1; i <= children; ++i) {
      const Int k = t.NEWSEQ(i);
      const Int64 wk = -t.QSIZE(k), ck = t.DEGREE(k), wp = -t.QSIZE(p), cp = t.DEGREE(p);
      const Int64 w = wk + wp, c = wk + cp;
      const Int64 zeros = trapezoidEntries(w, c) - (trapezoidEntries(wk, ck) - t.OFILL(k)) -
                          (trapezoidEntries(wp, cp) - t.OFILL(p));
      if (zeros > largestInt || !mergeAllowed(w, c, zeros)) continue;
      t.MERGED(k) = p;
      t.QSIZE(p) = static_cast<Int>(-w);
      t.DEGREE(p) = static_cast<Int>(c);
      t.OFILL(p) = static_cast<Int>(zeros);
    }
  });
}

// Orders the children of every supernode so that the stack of update matrices stays low: by decreasing difference
// of what a subtree needs at its peak and what it leaves behind. Returns the first root.
Int orderChildren(const SupernodeScratch& t, Int nodes) {
  const auto parent = [&](Int v) { return t.ABSORB(v) > 0 ? mergedInto(t, t.ABSORB(v)) : 0; };
  const auto left = [&](Int v) { return updateDoubles(Int64{t.DEGREE(v)} + t.QSIZE(v)); };
  const Int firstRoot = buildTree(t, nodes, parent);
  const Vector<Int>& PEAK = t.OFILL;
  postorder(t, firstRoot, parent, [&](Int p) {
    Int children = 0;
    for (Int k = t.FIRST(p); k > 0; k = t.BRTHER(k)) t.NEWSEQ(++children) = k;
    Int* const list = t.NEWSEQ.data();
    std::sort(list, list + children, [&](Int a, Int b) {
      const Int64 keyA = PEAK(a) - left(a), keyB = PEAK(b) - left(b);
      return keyA != keyB ? keyA > keyB : a < b;
    });
    Int64 stack = 0, peak = 0;
    t.FIRST(p) = 0;
    for (Int i = 1; i <= children; ++i) {
      const Int k = t.NEWSEQ(i);
      peak = std::max(peak, stack + PEAK(k));
      stack += left(k);
      t.BRTHER(k) = i < children ? t.NEWSEQ(i + 1) : 0;
    }
    if (children > 0) t.FIRST(p) = t.NEWSEQ(1);
    peak = std::max(peak, stack + frontDoubles(t.DEGREE(p), -t.QSIZE(p)));
    PEAK(p) = static_cast<Int>(std::min(peak, largestInt));
  });
  return firstRoot;
}

}  // namespace

bool mergeAllowed(Int64 w, Int64 c, Int64 zeros) {
  // Wider supernodes run faster, zeros cost memory and the bandwidth of the solves: the narrow ones, whose work is
  // all overhead, may take a fifth of zeros, wide ones next to none.
  struct Limit {
    Int64 columns;
    double share;  // of the entries below the diagonal
  };
  constexpr Limit limits[] = {{2, 1.0}, {8, 0.2}, {16, 0.05}};
  constexpr double shareOfWide = 0.03;
  double share = shareOfWide;
  for (const Limit& limit : limits)
    if (w <= limit.columns) {
      share = limit.share;
      break;
    }
  return static_cast<double>(zeros) <= share * static_cast<double>(trapezoidEntries(w, c));
}

SupernodeSizes supernodeStep(const EliminationGraph& g, Int nodes, Vector<Int> WORK, Int NEQ, Int NADJ) {
  const SupernodeScratch t{g.QSIZE, g.COUNT, g.ABSORB, g.DHEAD, g.DFORW, g.DBAKW, g.LLIST, g.MARKER, g.WXADJ};
  SupernodeSizes sizes;
  for (Int v = 1; v <= nodes; ++v)
    if (isSupernode(t, v)) sizes.leanEntries += trapezoidEntries(-t.QSIZE(v), t.DEGREE(v));
  amalgamate(t, nodes);
  const Int firstRoot = orderChildren(t, nodes);
  const auto parent = [&](Int v) { return t.ABSORB(v) > 0 ? mergedInto(t, t.ABSORB(v)) : 0; };

  postorder(t, firstRoot, parent, [&](Int v) {
    t.NEWSEQ(++sizes.m) = v;
    t.NEWNOD(v) = sizes.m;
  });
  for (Int v = 1; v <= nodes; ++v)
    if (isSupernode(t, v) && t.MERGED(v) > 0) t.NEWNOD(v) = t.NEWNOD(mergedInto(t, v));

  // Widths, rows and parents by new number. The result overlaps the scratch in front: these four arrays lie behind
  // it (WIDTH takes the place of NEWSEQ, ABOVE that of DEGREE, entry by entry after the last use).
  const OrderedStructure o = orderedStructure(WORK, NEQ, NADJ, sizes.m);
  const Vector<Int>&ROWS = g.LLIST, &WIDTH = g.MARKER, &ABOVE = g.COUNT, &NODE = g.DFORW;
  for (Int i = 1; i <= NEQ; ++i) o.INVP(i) = t.NEWNOD(elementOf(t, o.INVP(i)));
  for (Int k = 1; k <= sizes.m; ++k) {
    NODE(k) = t.NEWSEQ(k);
    ROWS(k) = t.DEGREE(NODE(k));
    WIDTH(k) = -t.QSIZE(NODE(k));
    sizes.s += ROWS(k);
    sizes.factorEntries += trapezoidEntries(WIDTH(k), ROWS(k));
  }
  for (Int k = 1; k <= sizes.m; ++k) {
    const Int up = parent(NODE(k));
    ABOVE(k) = up > 0 ? t.NEWNOD(up) : 0;
  }

  Int column = 1;
  for (Int k = 1; k <= sizes.m; ++k) {
    o.XSUP(k) = column;
    o.PARENT(k) = ABOVE(k);
    o.COLCNT(k) = ROWS(k);
    ROWS(k) = column;  // from here on: the next column to hand out
    column += WIDTH(k);
  }
  o.XSUP(sizes.m + 1) = column;
  for (Int i = 1; i <= NEQ; ++i) {  // equations keep their order within a supernode
    const Int k = o.INVP(i), j = ROWS(k)++;
    o.INVP(i) = j;
    o.PERM(j) = i;
    o.SUPMAP(j) = k;
  }
  return sizes;
}

}  // namespace tornwalzen
