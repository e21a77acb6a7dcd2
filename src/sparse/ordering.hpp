// Phase 1: fill-reducing ordering and supernode partition.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// Orders the equations and finds the supernodes; fills the header and WORK as orderedStructure reads it.
///
/// COLS: in, NEQ + 1; ROWI: in, NNZ in its length; WORK: out, its length is checked against
/// 11·NEQ + 40 + 4·(NNZ - NEQ). s: out, compressed subscripts; m: out, supernodes.
/// IERR: out, 0, badPattern, shortWork1, tooLarge, or damaged after a subscript of ROWI out of its bounds was
/// reported.
void orderingPhase(Vector<const Int> COLS, Vector<const Int> ROWI, Vector<Int> WORK, Int& s, Int& m,
                   Int& IERR);

}  // namespace tornwalzen
