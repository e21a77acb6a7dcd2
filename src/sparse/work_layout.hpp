// Where things stand in the solver's integer array WORK: the control header in its first 36 entries, the arrays
// behind it, and the lengths that the steps need.
//
// With NADJ = 2·(NNZ - NEQ), m supernodes and s compressed subscripts (all one-based, in this order):
//   phase 1, search    header 36 | XADJ NEQ+1 | ADJNCY NADJ | PERM INVP 2·NEQ | WXADJ NEQ+1 | WADJ NADJ |
//                      DHEAD DFORW DBAKW QSIZE LLIST MARKER 6·NEQ | COUNT NEQ+1
//   phase 1, result    header 36 | XADJ NEQ+1 | ADJNCY NADJ | PERM INVP SUPMAP 3·NEQ | XSUP m+1 | PARENT m | COLCNT m
//   phase 2, search    the same | XLINDX m+1 | LINDX s | MARKER, child lists 3·NEQ
//   phase 2, result    header 36 | PERM INVP SUPMAP 3·NEQ | XSUP m+1 | PARENT m | XLINDX m+1 | LINDX s | LCLDX s |
//                      ASTART m+1 | NCHILD m
//   phase 3            the same | XUPPER NEQ | COLIDX NNZ-NEQ | BIGMAP NEQ
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// Entries of the control header.
namespace header {
constexpr Int equations = 1;         // NEQ
constexpr Int adjacency = 2;         // NADJ
constexpr Int supernodes = 3;        // m
constexpr Int subscripts = 4;        // s
constexpr Int largestFront = 5;      // f1: rows of the largest front
constexpr Int largestUpdate = 6;     // f2: rows of the largest update matrix
constexpr Int realGrowth = 7;        // g
constexpr Int factorEntries = 8;     // entries of L below the diagonal
constexpr Int scratchDoubles = 9;    // what fronts, update stack and packing space take behind D and L
constexpr Int leanEntries = 10;      // the same before supernodes were merged: the ordering's own fill
constexpr Int realRequirement = 11;  // factor entries less NEQ: what the real requirement adds to 4·NEQ
constexpr Int shortage = 19;         // the length that a failed check asked for
constexpr Int freePhase2 = 27;       // start of the part of WORK that phase 2 may use
constexpr Int freePhase3 = 28;       // start of the part of WORK that phase 3 may use
constexpr Int freeNow1 = 29;         // free-space pointers of the running phase
constexpr Int freeNow2 = 30;
constexpr Int phase = 35;   // the last phase that was started
constexpr Int length = 36;  // entries of the header; the arrays start behind it
}  // namespace header

/// Hands out consecutive one-based arrays of WORK.
class WorkCarver {
 public:
  explicit WorkCarver(Vector<Int> WORK, Int64 firstFree = header::length + 1)
      : WORK_(WORK), next_(firstFree) {}
  Vector<Int> take(const char* name, Int64 length) {
    const Vector<Int> array(name, WORK_.data() + (next_ - 1), length);
    next_ += length;
    return array;
  }
  Int64 next() const { return next_; }

 private:
  Vector<Int> WORK_;
  Int64 next_;
};

/// The ordering as phase 1 leaves it, for phase 2.
struct OrderedStructure {
  Vector<Int> XADJ, ADJNCY;  // adjacency of the equations, both directions, diagonal excluded
  Vector<Int> PERM, INVP;    // new to old, old to new
  Vector<Int> SUPMAP;        // supernode of each column
  Vector<Int> XSUP;          // first column of each supernode, m + 1
  Vector<Int> PARENT;        // parent of each supernode in the elimination tree, 0 for a root
  Vector<Int> COLCNT;        // rows of each supernode's first column, diagonal included
  Int64 end;                 // first place of WORK behind it
};
OrderedStructure orderedStructure(Vector<Int> WORK, Int NEQ, Int NADJ, Int m);

/// The factor's structure as phase 2 leaves it, for the numeric phase and the solve.
struct FactorStructure {
  Vector<Int> PERM, INVP, SUPMAP;
  Vector<Int> XSUP, XLINDX, ASTART;  // m + 1: first column; first subscript; first entry of L in RWORK
  Vector<Int> PARENT, NCHILD;        // m: parent; number of children
  Vector<Int> LINDX;                 // s: rows of each supernode, its own columns first, increasing
  Vector<Int> LCLDX;                 // s: at the rows below a supernode, their places in the parent's front
  Int64 end;                         // first place of WORK behind it
};
FactorStructure factorStructure(Vector<Int> WORK);

/// Length of WORK for phase 1: 11·NEQ + 40 + 4·(NNZ - NEQ).
constexpr Int64 orderingLength(Int64 NEQ, Int64 NNZ) {
  return 11 * NEQ + 40 + 4 * (NNZ - NEQ);
}

/// The partial requirement P = 13·m + 2·s + 42 + 3·NEQ of what stays in WORK once the adjacency is dropped.
constexpr Int64 partialLength(Int64 NEQ, Int64 m, Int64 s) {
  return 13 * m + 2 * s + 42 + 3 * NEQ;
}

/// Length of WORK for phase 2: the largest of A + m + s + 1 + 3·NEQ, B and P + 2·m, with
/// A = 3·m + 2·(NNZ - NEQ) + 39 + 4·NEQ and B = A + 10·m + 2 + 2·s - 2·NNZ.
Int64 symbolicLength(Int64 NEQ, Int64 NNZ, Int64 m, Int64 s);

/// Length of WORK for phase 3 and the solve, beside that of phase 2: P + 2·(f1 + f2) + m + NNZ + g.
constexpr Int64 numericLength(Int64 P, Int64 f1, Int64 f2, Int64 m, Int64 NNZ, Int64 g) {
  return P + 2 * (f1 + f2) + m + NNZ + g;
}

/// Length of RWORK: 4·NEQ and what the factor and its fronts add to that, in 64 bits: the sum passes 2³¹ before the
/// factor does. requirement: in, header::realRequirement. growth: in, what phase 2 found beyond it.
constexpr Int64 realLength(Int64 NEQ, Int64 requirement, Int64 growth = 0) {
  return 4 * NEQ + requirement + growth;
}

/// Entries of L strictly below the diagonal in a supernode of w columns and c rows: w·c - w·(w+1)/2.
constexpr Int64 trapezoidEntries(Int64 w, Int64 c) {
  return w * c - w * (w + 1) / 2;
}

}  // namespace tornwalzen
