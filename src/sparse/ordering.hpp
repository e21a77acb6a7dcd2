// Phase 1: fill-reducing ordering and supernode partition.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// Error codes of the solver's phases.
namespace ierr {
constexpr Int ok = 0;
constexpr Int damaged = -1;         // WORK is not what the last phase left
constexpr Int outOfOrder = -2;      // phase requested before the one it builds on
constexpr Int badPattern = -10000;  // phase 1: COLS, ROWI are not a lower triangle by columns, diagonal first
constexpr Int shortWork1 = -10001;  // phase 1: WORK too short, requirement in WORK(19)
constexpr Int tooLarge = -10002;    // phases 1, 2: a length passes 2^31 - 1
constexpr Int shortWork2 = -20001;  // phase 2: WORK too short, requirement in WORK(19)
constexpr Int inconsistent = -20002;    // phase 2: subscripts found do not match the counts of phase 1
constexpr Int shortWork3 = -30001;      // phase 3: WORK (or RWORK) too short, requirement in WORK(19)
constexpr Int noPlace = -30002;         // phase 3: a matrix entry has no place in the factor structure
constexpr Int zeroPivot = -30003;       // phase 3: a pivot is exactly zero
constexpr Int shortWorkSolve = -40001;  // solve: WORK too short, requirement in WORK(19)
constexpr Int shortRealSolve = -50001;  // solve: RWORK too short; reserved, no phase produces it
}  // namespace ierr

/// Orders the equations and finds the supernodes; fills the header and WORK as orderedStructure reads it.
///
/// COLS: in, NEQ + 1; ROWI: in, NNZ in its length; WORK: out, its length is checked against
/// 11·NEQ + 40 + 4·(NNZ - NEQ). s: out, compressed subscripts; m: out, supernodes.
/// IERR: out, 0, badPattern, shortWork1, tooLarge, or damaged after a subscript of ROWI out of its bounds was
/// reported.
void orderingPhase(Vector<const Int> COLS, Vector<const Int> ROWI, Vector<Int> WORK, Int& s, Int& m,
                   Int& IERR);

}  // namespace tornwalzen
