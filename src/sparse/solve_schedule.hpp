// How the solves are divided among threads. A solve goes by every entry of the factor once in each direction, so its
// ranges are fewer and larger than those of the elimination, whose work lies near the root.
#pragma once

#include "ground/own_array.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

/// Consecutive supernodes; with each, all its descendants.
struct SolveRange {
  Int first, last;
  Int parent;      // in TOP, of the last root: those of the others are above it; 0 for none
  double work;     // predicted
  Int64 crossing;  // place of what its forward substitution adds to rows behind it
};

/// A front of the top.
struct SolveFront {
  Int supernode;
  Int parent;   // in TOP, 0 for a root
  bool shared;  // its forward substitution is divided among all threads; else one thread does it
};

struct SolveSchedule {
  OwnArray<SolveRange> RANGES{"RANGES"};  // ascending
  OwnArray<Int> ORDER{"ORDER"};           // the ranges by falling work: the order in which they are begun
  OwnArray<SolveFront> TOP{"TOP"};        // ascending
  OwnArray<Int> DOWNWARDS{"DOWNWARDS"};   // the top by falling work of the subtrees, parents before children
  OwnArray<Int> CROSSROWS{"CROSSROWS"};   // rows behind each range in the lists of its supernodes
  Int64 largestFront = 0;                 // rows
  bool divides = false;                   // false: one thread is as fast, nothing else is set

  Int64 bytes() const;
};

/// f: in, the structure of m supernodes. threads: in, >= 2. False without memory.
bool makeSolveSchedule(const FactorStructure& f, Int m, Int threads, SolveSchedule& s);

}  // namespace tornwalzen
