// The solver's front end: work lengths in and out, one fatal message for every failure.
#include "sparse/phases.hpp"

#include <algorithm>
#include <limits>

#include "ground/messages.hpp"
#include "sparse/factor_team.hpp"
#include "sparse/phase_error.hpp"
#include "sparse/phase_guard.hpp"
#include "sparse/solve.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

namespace {

constexpr char integersShortBefore[] = " FATALER FEHLER : mniwor zu klein @";
constexpr char realsShort[] = " FATALER FEHLER : nrk zu klein @";
constexpr char integersShort[] = " FATALER FEHLER : niwor zu klein @";
constexpr char orderingFailed[] = " FATALER FEHLER : FEHLER 1 IN LOESUNGSPHASE @";
constexpr char symbolicFailed[] = " FATALER FEHLER : FEHLER 2 IN LOESUNGSPHASE @";
constexpr char numericFailed[] = " FATALER FEHLER : FEHLER 3 IN LOESUNGSPHASE @";
constexpr char solveFailed[] = " FATALER FEHLER : FEHLER 4 IN LOESUNGSPHASE @";

// A requirement is kept if a host can be told of it: it must fit its 32 bits.
bool setRequirement(Analysis& run, Int& requirement, Int64 length, const char* failure) {
  if (length > std::numeric_limits<Int>::max()) {
    failSolver(run, failure);
    return false;
  }
  requirement = static_cast<Int>(length);
  return true;
}

void sizingStep(Analysis& run, SolverState& system) {
  system.protocol.restart();
  setRequirement(run, system.niwreq, orderingLength(system.neq, system.nsysm), orderingFailed);
}

void orderingStep(Analysis& run, SolverState& system, Vector<const Int> COLS, Vector<const Int> ROWI,
                  Vector<Int> WORK, Vector<double> RWORK) {
  if (system.niwor < system.niwreq) return failSolver(run, integersShortBefore);
  PhaseSizes sizes;
  Int IERR = 0;
  runPhase(run, system.protocol, 1, COLS, ROWI, {}, WORK, RWORK, sizes, IERR);
  if (IERR != ierr::ok) return failSolver(run, orderingFailed);
  const Int64 NEQ = system.neq, NNZ = system.nsysm, m = sizes.m, s = sizes.s;
  if (!setRequirement(run, system.nrkreq, realLength(NEQ, WORK(header::realRequirement)), orderingFailed))
    return;
  if (!setRequirement(run, system.niwreq, symbolicLength(NEQ, NNZ, m, s), orderingFailed)) return;
  system.protocol.supernodes = sizes.m;
  setRequirement(run, system.protocol.partialRequirement, partialLength(NEQ, m, s), orderingFailed);
}

void symbolicStep(Analysis& run, SolverState& system, Vector<const Int> COLS, Vector<const Int> ROWI,
                  Vector<Int> WORK, Vector<double> RWORK) {
  if (system.nrk < system.nrkreq) return failSolver(run, realsShort);
  if (system.niwor < system.niwreq) return failSolver(run, integersShort);
  PhaseSizes sizes;
  Int IERR = 0;
  runPhase(run, system.protocol, 2, COLS, ROWI, {}, WORK, RWORK, sizes, IERR);
  if (IERR != ierr::ok) return failSolver(run, symbolicFailed);
  // from the ordering's requirement again, so that a repeated step does not grow it twice
  const Int64 growth = sizes.g > system.neq ? 2 * Int64{sizes.g} : 0;
  const Int64 real = realLength(system.neq, WORK(header::realRequirement), growth);
  const Int64 integer = numericLength(system.protocol.partialRequirement, sizes.f1, sizes.f2,
                                      system.protocol.supernodes, system.nsysm, sizes.g);
  if (!setRequirement(run, system.nrkreq, real, symbolicFailed)) return;
  setRequirement(run, system.niwreq, std::max<Int64>(system.niwreq, integer), symbolicFailed);
}

void factorizeStep(Analysis& run, SolverState& system, Vector<const Int> COLS, Vector<const Int> ROWI,
                   Vector<Int> WORK, Vector<double> RWORK, Vector<const double> SYSM) {
  PhaseSizes sizes;
  Int IERR = 0;
  system.protocol.factorFailed = false;
  runPhase(run, system.protocol, 3, COLS, ROWI, SYSM, WORK, RWORK, sizes, IERR);
  if (IERR == ierr::ok) return;
  system.protocol.factorFailed = true;
  failSolver(run, numericFailed);
}

// A solve without a factor gives a zero correction, so that the unknowns stay whole. After a failed factorization
// its message stands; otherwise the factor is missing or WORK was damaged since.
void solveStep(Analysis& run, SolverState& system, Vector<Int> WORK, Vector<double> RWORK,
               Vector<const double> RHS, Vector<double> SOLUTION, Vector<double> WRHS) {
  const bool usable = factorStands(system.protocol, WORK, run.pool.get());
  constexpr Int64 leastCopied = 32768;  // entries, for a thread
  inRanges(run.pool.get(), system.neq, leastCopied, [&](Int64 first, Int64 last) {
    for (Int64 i = first; i <= last; ++i) SOLUTION(i) = usable ? RHS(i) : 0.0;
  });
  Int IERR = ierr::damaged;
  if (usable)
    triangularSolve(kernelsOf(run), teamOf(run, system.protocol, WORK), RWORK, WORK, WRHS, SOLUTION, IERR);
  else if (system.protocol.factorFailed)
    return;
  if (IERR != ierr::ok) failSolver(run, solveFailed);
}

}  // namespace

void solverStep(Analysis& run, SolverState& system, SolverStep step, Vector<const Int> COLS,
                Vector<const Int> ROWI, Vector<Int> WORK, Vector<double> RWORK, Vector<const double> RHS,
                Vector<double> SOLUTION, Vector<const double> SYSM, Vector<double> WRHS) {
  switch (step) {
    case SolverStep::sizing:
      return sizingStep(run, system);
    case SolverStep::ordering:
      return orderingStep(run, system, COLS, ROWI, WORK, RWORK);
    case SolverStep::symbolic:
      return symbolicStep(run, system, COLS, ROWI, WORK, RWORK);
    case SolverStep::numeric:
      return factorizeStep(run, system, COLS, ROWI, WORK, RWORK, SYSM);
    case SolverStep::solve:
      return solveStep(run, system, WORK, RWORK, RHS, SOLUTION, WRHS);
  }
}

}  // namespace tornwalzen
