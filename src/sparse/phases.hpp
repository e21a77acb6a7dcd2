// Front end of the sparse symmetric direct solver: A = L·D·Lᵀ without pivoting, A given by the lower triangle in
// compressed columns (COLS, ROWI, SYSM; diagonal first in each column).
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// Performs one step:
///   11  sizing: sets run.niwreq for step 12 (pattern counts only)
///   12  fill-reducing ordering (J. W. H. Liu, ACM TOMS 11, 1985): fills WORK, sets run.niwreq, run.nrkreq
///   13  supernodal symbolic factorization (E. G. Ng, B. W. Peyton, SIAM J. Sci. Comput. 14, 1993): as 12
///   44  numeric factorization (I. S. Duff, J. K. Reid, ACM TOMS 9, 1983) of SYSM into RWORK
///    1  solve: RHS is copied into SOLUTION and solved there; a zero vector after a failed step 44
/// Any other value does nothing.
///
/// COLS: in, neq + 1; ROWI: in, nsysm; WORK: inout, run.niwor; RWORK: inout, run.nrk; RHS: in, neq, unchanged;
/// SOLUTION: out, neq; SYSM: in, nsysm; WRHS: scratch, neq. Steps 11 to 13 read no values and no vectors.
///
/// Failure: the fatal text in the solver's MSGSTR and `ierrso` = -1: lengths too small, steps out of order, WORK
/// damaged between the steps, a zero pivot.
void loesys(Int IDO, Vector<const Int> COLS, Vector<const Int> ROWI, Vector<Int> WORK, Vector<double> RWORK,
            Vector<const double> RHS, Vector<double> SOLUTION, Vector<const double> SYSM,
            Vector<double> WRHS);

}  // namespace tornwalzen
