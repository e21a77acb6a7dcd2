// Newton iteration on the blank positions: K·ΔX = R with the assembled Hessian K and residual R.
#include "driver/newton_step.hpp"

#include <cmath>

#include "driver/line_search.hpp"
#include "element/assembly.hpp"
#include "element/element.hpp"
#include "ground/run_record.hpp"
#include "ground/run_state.hpp"
#include "sparse/phases.hpp"

namespace tornwalzen {

namespace {

constexpr Int lineSearchLimit = 4;  // LSMAX
constexpr Int numericStep = 44;     // step codes of the solver
constexpr Int solveStep = 1;
constexpr Int heldFlag = 0;  // any other flag lets the unknown move

void solver(Int step, const DriverArrays& a, double& seconds) {
  const ProcessorTime time(seconds);
  loesys(step, a.COLS, a.ROWI, a.WORK, a.RWORK, a.RR, a.RB, a.SYSM, a.WRHS);
}

/// A correction with an entry that is not finite is none: the blank must stay whole.
void discardUnusableCorrection(Vector<double> RB) {
  bool finite = true;
  for (Int i = 1; i <= run.neq; ++i) finite = finite && std::isfinite(RB(i));
  if (finite) return;
  for (Int i = 1; i <= run.neq; ++i) RB(i) = 0.0;
}

}  // namespace

void newtonStep(double& EN, const DriverArrays& a, Table<const double> FC) {
  {
    const ProcessorTime time(record.assembly);
    assemble(residualAndMatrix, a, FC);
    if (failed(run.ierrel)) return;
    imposeHeldUnknowns(a);
  }
  solver(numericStep, a, record.factorization);
  record.factorizations += 1;
  solver(solveStep, a, record.solve);
  const ProcessorTime time(record.lineSearch);
  discardUnusableCorrection(a.RB);
  lineSearch(lineSearchLimit, a, FC);
  energySum(EN, a, FC);
}

void imposeHeldUnknowns(const DriverArrays& a) {
  for (Int i = 1; i <= run.neq; ++i) {
    const Int diagonal = a.COLS(i), next = a.COLS(i + 1);
    if (a.ARFA(i) == heldFlag) {
      a.SYSM(diagonal) = 1.0;
      a.RR(i) = 0.0;
      for (Int k = diagonal + 1; k < next; ++k) a.SYSM(k) = 0.0;
    } else {
      for (Int k = diagonal + 1; k < next; ++k)
        if (a.ARFA(a.ROWI(k)) == heldFlag) a.SYSM(k) = 0.0;
    }
  }
}

void energySum(double& EN, const DriverArrays& a, Table<const double> FC) {
  measureElements(a.INTA, a.RX, a.KNZ, FC, EN, a.ELG);
}

}  // namespace tornwalzen
