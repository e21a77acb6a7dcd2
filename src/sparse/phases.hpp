// Front end of the sparse symmetric direct solver: A = L·D·Lᵀ without pivoting, A given by the lower triangle in
// compressed columns (COLS, ROWI, SYSM; diagonal first in each column).
#pragma once

#include "ground/analysis.hpp"
#include "sparse/phase_error.hpp"

namespace tornwalzen {

/// Performs one step of a system; the fields named here are those of `system`:
///   sizing    sets niwreq for the ordering (pattern counts only)
///   ordering  fill-reducing ordering (J. W. H. Liu, ACM TOMS 11, 1985): fills WORK, sets niwreq, nrkreq
///   symbolic  supernodal symbolic factorization (E. G. Ng, B. W. Peyton, SIAM J. Sci. Comput. 14, 1993): likewise
///   numeric   numeric factorization (I. S. Duff, J. K. Reid, ACM TOMS 9, 1983) of SYSM into RWORK
///   solve     RHS is copied into SOLUTION and solved there; a zero vector after a failed numeric step
///
/// run: inout, messages and error word. system: inout, in neq, nsysm and the lengths niwor, nrk that the owner of the
/// arrays supplied. COLS: in, neq + 1; ROWI: in, nsysm; WORK: inout, niwor; RWORK: inout, nrk; RHS: in, neq,
/// unchanged; SOLUTION: out, neq; SYSM: in, nsysm; WRHS: scratch, neq. The first three steps read no values and no
/// vectors: theirs may be empty.
///
/// Failure: the fatal text in the solver's MSGSTR and `ierrso` = -1: lengths too small, steps out of order, WORK
/// damaged between the steps, a zero pivot.
void solverStep(Analysis& run, SolverState& system, SolverStep step, Vector<const Int> COLS,
                Vector<const Int> ROWI, Vector<Int> WORK, Vector<double> RWORK, Vector<const double> RHS = {},
                Vector<double> SOLUTION = {}, Vector<const double> SYSM = {}, Vector<double> WRHS = {});

}  // namespace tornwalzen
