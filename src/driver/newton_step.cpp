// Newton iteration on the blank positions: K·ΔX = R with the assembled Hessian K and residual R.
#include "driver/newton_step.hpp"

#include <cmath>

#include "driver/line_search.hpp"
#include "element/assembly.hpp"
#include "sparse/phases.hpp"

namespace tornwalzen {

namespace {

constexpr Int lineSearchLimit = 4;  // LSMAX
constexpr Int heldFlag = 0;         // any other flag lets the unknown move

void solver(Analysis& run, SolverStep step, const DriverArrays& a, double& seconds) {
  const ProcessorTime time(seconds);
  solverStep(run, run.solver, step, a.COLS, a.ROWI, a.WORK, a.RWORK, a.RR, a.RB, a.SYSM, a.WRHS);
}

/// A correction with an entry that is not finite is none: the blank must stay whole.
void discardUnusableCorrection(Vector<double> RB) {
  bool finite = true;
  for (Int i = 1; i <= RB.length(); ++i) finite = finite && std::isfinite(RB(i));
  if (finite) return;
  for (Int i = 1; i <= RB.length(); ++i) RB(i) = 0.0;
}

}  // namespace

void newtonStep(Analysis& run, double& EN, const DriverArrays& a) {
  {
    const ProcessorTime time(run.record.assembly);
    assemble(run, residualAndMatrix, a);
    if (failed(run.ierrel)) return;
    imposeHeldUnknowns(run, a);
  }
  solver(run, SolverStep::numeric, a, run.record.factorization);
  run.record.factorizations += 1;
  solver(run, SolverStep::solve, a, run.record.solve);
  const ProcessorTime time(run.record.lineSearch);
  discardUnusableCorrection(a.RB);
  lineSearch(run, lineSearchLimit, a);
  energySum(run, EN, a);
}

void imposeHeldUnknowns(Analysis& run, const DriverArrays& a) {
  // Entries first, in one loop without rows: a row has about six, too few for a processor to foresee its end.
  const Int neq = run.neq, entries = a.COLS(neq + 1) - 1;
  for (Int k = 1; k <= entries; ++k)
    if (a.ARFA(a.ROWI(k)) == heldFlag) a.SYSM(k) = 0.0;
  for (Int i = 1; i <= neq; ++i) {
    if (a.ARFA(i) != heldFlag) continue;
    const Int diagonal = a.COLS(i), next = a.COLS(i + 1);
    a.SYSM(diagonal) = 1.0;
    a.RR(i) = 0.0;
    for (Int k = diagonal + 1; k < next; ++k) a.SYSM(k) = 0.0;
  }
}

}  // namespace tornwalzen
