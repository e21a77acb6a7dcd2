// The solve: permute, L·y = P·b, y := y/D, Lᵀ·z = y, permute back; supernode by supernode, through a
// contiguous copy of the rows of each.
#include "sparse/solve.hpp"

#include "sparse/kernels/dense_kernels.hpp"
#include "sparse/phase_error.hpp"
#include "sparse/team_solve.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

void triangularSolve(const DenseKernels& kernels, FactorTeam* team, Vector<double> RWORK, Vector<Int> WORK,
                     Vector<double> WRHS, Vector<double> SOLUTION, Int& IERR) {
  const Int NEQ = WORK(header::equations), m = WORK(header::supernodes);
  const Int64 required = Int64{WORK(header::freePhase3)} - 1;
  if (WORK.length() < required) {
    WORK(header::shortage) = static_cast<Int>(required);
    IERR = ierr::shortWorkSolve;
    return;
  }
  IERR = ierr::ok;
  const FactorStructure f = factorStructure(WORK);
  if (team != nullptr && team->solve.divides) return solveInTeam(kernels, f, *team, RWORK, WRHS, SOLUTION);
  const double* const D = RWORK.data();
  const double* const L = D + NEQ;
  double* const y =
      RWORK.data() + NEQ + WORK(header::factorEntries);  // f1 + solveMargin of the fronts' space

  for (Int i = 1; i <= NEQ; ++i) WRHS(f.INVP(i)) = SOLUTION(i);
  for (Int k = 1; k <= m; ++k) {
    const Int first = f.XSUP(k), w = f.XSUP(k + 1) - first, rows = f.XLINDX(k), c = f.XLINDX(k + 1) - rows;
    for (Int i = 0; i < w; ++i) y[i] = WRHS(first + i);
    kernels.forward(L + (f.ASTART(k) - 1), w, c, y);
    for (Int i = 0; i < w; ++i) WRHS(first + i) = y[i];
    for (Int i = w; i < c; ++i) WRHS(f.LINDX(rows + i)) += y[i];
  }
  for (Int j = 1; j <= NEQ; ++j) WRHS(j) /= D[j - 1];
  for (Int k = m; k >= 1; --k) {
    const Int first = f.XSUP(k), w = f.XSUP(k + 1) - first, rows = f.XLINDX(k), c = f.XLINDX(k + 1) - rows;
    for (Int i = 0; i < c; ++i) y[i] = WRHS(f.LINDX(rows + i));
    kernels.backward(L + (f.ASTART(k) - 1), w, c, y);
    for (Int i = 0; i < w; ++i) WRHS(first + i) = y[i];
  }
  for (Int j = 1; j <= NEQ; ++j) SOLUTION(f.PERM(j)) = WRHS(j);
}

}  // namespace tornwalzen
