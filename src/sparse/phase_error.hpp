// The steps of the solver and the codes with which its phases fail.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// The codes are those of the front end's callers.
enum class SolverStep : Int { sizing = 11, ordering = 12, symbolic = 13, numeric = 44, solve = 1 };

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
}  // namespace ierr

}  // namespace tornwalzen
