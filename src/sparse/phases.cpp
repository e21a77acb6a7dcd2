// The solver's front end: work lengths in and out, one fatal message for every failure.
#include "sparse/phases.hpp"

#include <algorithm>
#include <limits>

#include "ground/messages.hpp"
#include "ground/run_state.hpp"
#include "sparse/phase_guard.hpp"
#include "sparse/solve.hpp"
#include "sparse/ordering.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

namespace {

enum SolverStep : Int { sizing = 11, ordering = 12, symbolic = 13, factorize = 44, solve = 1 };
constexpr Int matrixSlot = 1;  // this system has one matrix of its structure

constexpr char integersShortBefore[] = " FATALER FEHLER : mniwor zu klein @";
constexpr char realsShort[] = " FATALER FEHLER : nrk zu klein @";
constexpr char integersShort[] = " FATALER FEHLER : niwor zu klein @";
constexpr char orderingFailed[] = " FATALER FEHLER : FEHLER 1 IN LOESUNGSPHASE @";
constexpr char symbolicFailed[] = " FATALER FEHLER : FEHLER 2 IN LOESUNGSPHASE @";
constexpr char numericFailed[] = " FATALER FEHLER : FEHLER 3 IN LOESUNGSPHASE @";
constexpr char solveFailed[] = " FATALER FEHLER : FEHLER 4 IN LOESUNGSPHASE @";
constexpr char solveRealsShort[] = " FATALER FEHLER : RWOR ZU KLEIN @";

// A requirement is kept if a host can be told of it: it must fit its 32 bits.
bool setRequirement(Int& requirement, Int64 length, const char* failure) {
  if (length > std::numeric_limits<Int>::max()) {
    failSolver(failure);
    return false;
  }
  requirement = static_cast<Int>(length);
  return true;
}

void sizingStep() {
  run.solver = SolverProtocol{};
  setRequirement(run.niwreq, orderingLength(run.neq, run.nnzl), orderingFailed);
  run.nwsol = run.neq;
}

void orderingStep(Vector<const Int> COLS, Vector<const Int> ROWI, Vector<Int> WORK, Vector<double> RWORK) {
  if (run.niwor < run.niwreq) return failSolver(integersShortBefore);
  PhaseSizes sizes;
  Int IERR = 0;
  KMPKTF(1, matrixSlot, COLS, ROWI, {"SYSM", nullptr, 0}, WORK, RWORK, run.nrkreq, sizes, IERR);
  if (IERR != ierr::ok) return failSolver(orderingFailed);
  const Int64 NEQ = run.neq, NNZ = run.nnzl, m = sizes.m, s = sizes.s;
  if (!setRequirement(run.nrkreq, 4 * NEQ + WORK(header::realRequirement), orderingFailed)) return;
  if (!setRequirement(run.niwreq, symbolicLength(NEQ, NNZ, m, s), orderingFailed)) return;
  run.solver.supernodes = sizes.m;
  setRequirement(run.solver.partialRequirement, partialLength(NEQ, m, s), orderingFailed);
}

void symbolicStep(Vector<const Int> COLS, Vector<const Int> ROWI, Vector<Int> WORK, Vector<double> RWORK) {
  if (run.nrk < run.nrkreq) return failSolver(realsShort);
  if (run.niwor < run.niwreq) return failSolver(integersShort);
  PhaseSizes sizes;
  Int IERR = 0;
  KMPKTF(2, matrixSlot, COLS, ROWI, {"SYSM", nullptr, 0}, WORK, RWORK, run.nrkreq, sizes, IERR);
  if (IERR != ierr::ok) return failSolver(symbolicFailed);
  // from the ordering's requirement again, so that a repeated step does not grow it twice
  const Int64 growth = sizes.g > run.neq ? 2 * Int64{sizes.g} : 0;
  const Int64 real = 4 * Int64{run.neq} + WORK(header::realRequirement) + growth;
  const Int64 integer = numericLength(run.solver.partialRequirement, sizes.f1, sizes.f2,
                                      run.solver.supernodes, run.nnzl, sizes.g);
  if (!setRequirement(run.nrkreq, real, symbolicFailed)) return;
  setRequirement(run.niwreq, std::max<Int64>(run.niwreq, integer), symbolicFailed);
}

void factorizeStep(Vector<const Int> COLS, Vector<const Int> ROWI, Vector<Int> WORK, Vector<double> RWORK,
                   Vector<const double> SYSM) {
  PhaseSizes sizes;
  Int IERR = 0;
  run.solver.factorFailed = false;
  KMPKTF(3, matrixSlot, COLS, ROWI, SYSM, WORK, RWORK, run.nrkreq, sizes, IERR);
  if (IERR == ierr::ok) return;
  run.solver.factorFailed = true;
  failSolver(numericFailed);
}

// A solve without a factor gives a zero correction, so that the unknowns stay whole. After a failed factorization
// its message stands; otherwise the factor is missing or WORK was damaged since.
void solveStep(Vector<Int> WORK, Vector<double> RWORK, Vector<const double> RHS, Vector<double> SOLUTION,
               Vector<double> WRHS) {
  const bool usable = factorStands(WORK);
  for (Int64 i = 1; i <= run.neq; ++i) SOLUTION(i) = usable ? RHS(i) : 0.0;
  Int IERR = ierr::damaged;
  if (usable)
    KMPKTS(RWORK, WORK, WRHS, SOLUTION, IERR);
  else if (run.solver.factorFailed)
    return;
  if (IERR == ierr::shortRealSolve) return failSolver(solveRealsShort);
  if (IERR != ierr::ok) failSolver(solveFailed);
}

}  // namespace

void loesys(Int IDO, Vector<const Int> COLS, Vector<const Int> ROWI, Vector<Int> WORK, Vector<double> RWORK,
            Vector<const double> RHS, Vector<double> SOLUTION, Vector<const double> SYSM,
            Vector<double> WRHS) {
  switch (IDO) {
    case sizing:
      return sizingStep();
    case ordering:
      return orderingStep(COLS, ROWI, WORK, RWORK);
    case symbolic:
      return symbolicStep(COLS, ROWI, WORK, RWORK);
    case factorize:
      return factorizeStep(COLS, ROWI, WORK, RWORK, SYSM);
    case solve:
      return solveStep(WORK, RWORK, RHS, SOLUTION, WRHS);
    default:
      return;
  }
}

}  // namespace tornwalzen
