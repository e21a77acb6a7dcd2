// Multifrontal L·D·Lᵀ (I. S. Duff, J. K. Reid, The multifrontal solution of indefinite sparse symmetric linear
// equations, ACM TOMS 9, 1983; here without pivoting): the places of the matrix entries, the check of the lengths, and the fronts
// one after the other or among threads.
#include "sparse/numeric.hpp"

#include <algorithm>
#include <limits>

#include "sparse/fronts.hpp"
#include "sparse/phase_error.hpp"
#include "sparse/team_numeric.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

namespace {

// The integer arrays of the numeric phase.
struct NumericArrays {
  Vector<Int> XUPPER, COLIDX;  // as in Elimination
  Vector<Int> BIGMAP;          // NEQ: place of a row in the front at work
  Vector<Int> STACK;           // m: supernodes whose update matrices are on the stack
  Int64 end;
};

NumericArrays carveNumeric(Vector<Int> WORK, Int64 firstFree, Int64 NEQ, Int64 NNZ, Int64 m) {
  WorkCarver carve(WORK, firstFree);
  NumericArrays n;
  n.XUPPER = carve.take("XUPPER", NEQ);
  n.COLIDX = carve.take("COLIDX", NNZ - NEQ);
  n.BIGMAP = carve.take("BIGMAP", NEQ);
  n.STACK = carve.take("STACK", m);
  n.end = carve.next();
  return n;
}

// Finds for every matrix entry (i, j) below the diagonal the column of L it belongs to: that of j, or, where i comes
// first in the new order, that of i, which then lists j.
void findColumns(Vector<const Int> COLS, Vector<const Int> ROWI, const FactorStructure& f,
                 const NumericArrays& n) {
  const Int64 NEQ = n.XUPPER.length();
  for (Int64 p = 1; p <= NEQ; ++p) n.XUPPER(p) = n.BIGMAP(p) = 0;
  const auto forUpper = [&](auto visit) {
    for (Int64 j = 1; j <= NEQ; ++j)
      for (Int64 k = COLS(j) + 1; k < COLS(j + 1); ++k) {
        const Int p = f.INVP(ROWI(k));
        if (p < f.INVP(j)) visit(p, static_cast<Int>(j));
      }
  };
  forUpper([&](Int p, Int) { ++n.XUPPER(p); });
  Int end = 0;
  for (Int64 p = 1; p <= NEQ; ++p) {
    const Int count = n.XUPPER(p);
    n.XUPPER(p) = end;  // the place before the column's list, until the list is filled
    end += count;
  }
  forUpper([&](Int p, Int j) { n.COLIDX(++n.XUPPER(p)) = j; });
  for (Int64 t = Int64{end} + 1; t <= n.COLIDX.length(); ++t) n.COLIDX(t) = 0;  // in the checksum too
}

}  // namespace

Int64 numericEnd(Vector<Int> WORK, Int64 firstFree, Int64 NEQ, Int64 NNZ, Int64 m) {
  return carveNumeric(WORK, firstFree, NEQ, NNZ, m).end;
}

void numericPhase(const DenseKernels& kernels, FactorTeam* team, bool first, Vector<const Int> COLS,
                  Vector<const Int> ROWI, Vector<const double> SYSM, Vector<Int> WORK, Vector<double> RWORK,
                  Int& IERR) {
  const Int NEQ = WORK(header::equations), m = WORK(header::supernodes),
            NNZ = static_cast<Int>(ROWI.length());
  const Int64 factorEntries = WORK(header::factorEntries);
  IERR = ierr::shortWork3;
  const Int64 intLength =
      numericLength(partialLength(NEQ, m, WORK(header::subscripts)), WORK(header::largestFront),
                    WORK(header::largestUpdate), m, NNZ, WORK(header::realGrowth));
  const Int64 realLength = factorEntries + NEQ + WORK(header::scratchDoubles);
  for (const auto& [length, required] : {std::pair{WORK.length(), intLength}, {RWORK.length(), realLength}})
    if (length < required) {
      WORK(header::shortage) = static_cast<Int>(std::min<Int64>(required, std::numeric_limits<Int>::max()));
      return;
    }

  const FactorStructure f = factorStructure(WORK);
  const NumericArrays n = carveNumeric(WORK, WORK(header::freePhase3), NEQ, NNZ, m);
  if (first) findColumns(COLS, ROWI, f, n);

  double* const D = RWORK.data();
  const Elimination a{kernels, COLS, ROWI, SYSM, f, n.XUPPER, n.COLIDX, D, D + NEQ};
  if (team != nullptr) return eliminateInTeam(a, *team, n.BIGMAP, n.STACK, IERR);
  FrontSpace space{n.BIGMAP, n.STACK, nullptr, a.L + factorEntries + WORK(header::scratchDoubles)};
  eliminateRange(a, 1, m, space, IERR);
}

}  // namespace tornwalzen
