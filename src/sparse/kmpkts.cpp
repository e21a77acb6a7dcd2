// The solve: permute, L·y = P·b, y := y/D, Lᵀ·z = y, permute back; supernode by supernode, through a contiguous copy
// of the rows below each.
#include "sparse/kmpkts.hpp"

#include "sparse/dense_kernels.hpp"
#include "sparse/ordering.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

void KMPKTS(Vector<double> RWORK, Vector<Int> WORK, Vector<double> WRHS, Vector<double> SOLUTION, Int& IERR) {
  const Int NEQ = WORK(header::equations), m = WORK(header::supernodes);
  const Int64 required = Int64{WORK(header::freePhase3)} - 1;
  if (WORK.length() < required) {
    WORK(header::shortage) = static_cast<Int>(required);
    IERR = ierr::shortWorkSolve;
    return;
  }
  IERR = ierr::ok;
  const FactorStructure f = factorStructure(WORK);
  const double* const D = RWORK.data();
  const double* const L = D + NEQ;
  double* const below = RWORK.data() + NEQ + WORK(header::factorEntries);   // f2 doubles of the fronts' space
  const DenseKernels& kernels = denseKernels();

  for (Int i = 1; i <= NEQ; ++i) WRHS(f.INVP(i)) = SOLUTION(i);
  for (Int k = 1; k <= m; ++k) {
    const Int first = f.XSUP(k), w = f.XSUP(k + 1) - first, rows = f.XLINDX(k) + w, u = f.XLINDX(k + 1) - rows;
    kernels.forward(L + (f.ASTART(k) - 1), w, Int64{w} + u, &WRHS(first), below);
    for (Int i = 0; i < u; ++i) WRHS(f.LINDX(rows + i)) -= below[i];
  }
  for (Int j = 1; j <= NEQ; ++j) WRHS(j) /= D[j - 1];
  for (Int k = m; k >= 1; --k) {
    const Int first = f.XSUP(k), w = f.XSUP(k + 1) - first, rows = f.XLINDX(k) + w, u = f.XLINDX(k + 1) - rows;
    for (Int i = 0; i < u; ++i) below[i] = WRHS(f.LINDX(rows + i));
    kernels.backward(L + (f.ASTART(k) - 1), w, Int64{w} + u, &WRHS(first), below);
  }
  for (Int j = 1; j <= NEQ; ++j) SOLUTION(f.PERM(j)) = WRHS(j);
}

}  // namespace tornwalzen
