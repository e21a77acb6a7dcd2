// How the fronts are divided among threads: the bottom of the elimination tree in ranges of whole
// subtrees, which know nothing of each other, the top front by front, each divided among all. Made once for a
// structure and a number of threads, from the sizes alone; it decides where things lie and who works on them, and no
// sum depends on it.
#pragma once

#include "ground/own_array.hpp"
#include "sparse/kernels/front_layout.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

/// Consecutive supernodes; with each, all its descendants.
struct SubtreeRange {
  Int first, last;
  double work;       // as frontWork counts
  Int64 updatesEnd;  // place behind its roots' update matrices, which wait for the top: the last root's first
};

/// A front of the top.
struct TopFront {
  Int supernode;
  bool shared;       // divided among all threads; else one thread does it
  Int64 firstChild;  // in CHILDREN, NCHILD of them
  Int64 update;      // place of its update matrix
};

/// A child of a front of the top; they stand in the order in which they are added.
struct TopChild {
  Int supernode;
  Int64 update;
};

/// Places count doubles from the start of the team's memory.
struct FactorSchedule {
  OwnArray<SubtreeRange> RANGES{"RANGES"};  // ascending
  OwnArray<Int> ORDER{"ORDER"};             // the ranges by falling work: the order in which they are begun
  OwnArray<TopFront> TOP{"TOP"};            // ascending
  OwnArray<TopChild> CHILDREN{"CHILDREN"};
  Int64 rangeSpace = 0;  // doubles that the front, the stack and the packing of a range take at most
  Int64 topPacking = 0;  // what the top's fronts take at most: the packing lies behind it,
  Int64 topScaled = 0;   // that of all threads first, then that of each
  Int64 topSpace = 0;    // front, packing and update matrices of the top
  Int64 updates = 0;     // update matrices that the ranges leave
  bool divides = false;  // false: one thread is as fast, nothing else is set

  /// Place behind the ranges' update matrices: of the ranges' fronts and stacks, and, when those have ended, of the top's.
  Int64 space() const { return linesOf(updates); }
  Int64 bytes() const;
};

/// f: in, the structure of m supernodes. threads: in, >= 2. False without memory.
bool makeSchedule(const FactorStructure& f, Int m, Int threads, FactorSchedule& s);

/// Work of a front of c rows and w pivots, in floating-point operations: those of the elimination, and for each
/// entry that is cleared, added and moved what takes as long.
double frontWork(Int64 c, Int64 w);

}  // namespace tornwalzen
