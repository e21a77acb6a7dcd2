// The factorization dispatcher: keeps the phases in order and WORK intact between them.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// Sizes that the phases return to the front end.
struct PhaseSizes {
  Int s = 0, m = 0;           // phase 1: compressed subscripts, supernodes
  Int f1 = 0, f2 = 0, g = 0;  // phase 2: rows of the largest front and update matrix, growth of the real work
};

/// Runs phase 1 (ordering), 2 (symbolic) or 3 (numeric).
///
/// phase: in, 1..3. slot: in, which of two matrices of one structure, 1 or 2. COLS, ROWI, SYSM: in. WORK, RWORK:
/// inout, their lengths are those that the phases check. nrkreq: inout, length of RWORK required; set by phase 1.
/// sizes: inout, what the phase determines.
/// IERR: out, 0 or negative as listed in ordering.hpp. outOfOrder if an earlier phase is missing, by WORK(35) or by
/// the run state; damaged if WORK changed since the last phase, with two lines on standard output.
void KMPKTF(Int phase, Int slot, Vector<const Int> COLS, Vector<const Int> ROWI, Vector<const double> SYSM,
            Vector<Int> WORK, Vector<double> RWORK, Int& nrkreq, PhaseSizes& sizes, Int& IERR);

/// True if WORK is still what phase 3 left and a valid factor stands: what the solve needs.
bool factorStands(Vector<const Int> WORK);

}  // namespace tornwalzen
