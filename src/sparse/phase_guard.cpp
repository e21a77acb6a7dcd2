// The factorization dispatcher.
#include "sparse/phase_guard.hpp"

#include <cstdio>

#include "ground/run_state.hpp"
#include "sparse/numeric.hpp"
#include "sparse/ordering.hpp"
#include "sparse/structure_guard.hpp"
#include "sparse/symbolic.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

namespace {

// What stands in WORK between the steps, and the checksum that the run state keeps of each part.
enum GuardedPart { orderedPart, factorPart, matrixColumnsPart };

std::uint64_t sumOf(Vector<const Int> WORK, GuardedPart part, Int64 NNZ) {
  const Int64 free3 = WORK(header::freePhase3);
  switch (part) {
    case orderedPart:
      return structureSum(WORK, 1, Int64{WORK(header::freePhase2)} - 1);
    case factorPart:
      return structureSum(WORK, 1, free3 - 1);
    default:
      return structureSum(WORK, free3, free3 + NNZ - 1);  // XUPPER and COLIDX
  }
}

bool intact(Vector<const Int> WORK, GuardedPart part, Int64 NNZ) {
  return WORK.length() > header::length && sumOf(WORK, part, NNZ) == run.solver.structureSum[part];
}

void remember(Vector<const Int> WORK, GuardedPart part, Int64 NNZ) {
  run.solver.structureSum[part] = sumOf(WORK, part, NNZ);
}

void printControlFailure(Int phase) {
  std::printf(" FATALER FEHLER  IN DER STEUERUNG DES LOESERS\n");
  std::printf("   IDO= %4d IST FALSCH, BITTE KOMMENTAR IN KMPKTF LESEN\n", phase);
  std::fflush(stdout);
}

// Phase 2, or what it determined before: it may be repeated, although it drops the adjacency that it needs.
void symbolicOnce(Int64 NNZ, Vector<Int> WORK, PhaseSizes& sizes, Int& IERR) {
  if (run.solver.lastPhase >= 2 && intact(WORK, factorPart, NNZ)) {
    sizes.f1 = WORK(header::largestFront);
    sizes.f2 = WORK(header::largestUpdate);
    sizes.g = WORK(header::realGrowth);
    IERR = ierr::ok;
    return;
  }
  if (!intact(WORK, orderedPart, NNZ)) {
    IERR = ierr::damaged;
    return;
  }
  symbolicPhase(static_cast<Int>(NNZ), WORK, sizes.f1, sizes.f2, sizes.g, IERR);
  if (IERR != ierr::ok) return;
  run.solver.lastPhase = 2;
  run.solver.factorized[0] = run.solver.factorized[1] = false;
  remember(WORK, factorPart, NNZ);
}

void numericGuarded(Int slot, Vector<const Int> COLS, Vector<const Int> ROWI, Vector<const double> SYSM,
                    Vector<Int> WORK, Vector<double> RWORK, Int& IERR) {
  SolverProtocol& solver = run.solver;
  const Int64 NNZ = ROWI.length();
  const bool first = !solver.factorized[slot - 1];
  solver.factorValid = false;
  IERR = ierr::damaged;
  if (!intact(WORK, factorPart, NNZ) || (!first && !intact(WORK, matrixColumnsPart, NNZ))) return;
  numericPhase(first, COLS, ROWI, SYSM, WORK, RWORK, IERR);
  if (IERR == ierr::shortWork3) return;
  if (first) remember(WORK, matrixColumnsPart, NNZ);
  solver.factorized[slot - 1] = true;
  solver.lastPhase = 3;
  solver.factorValid = IERR == ierr::ok;
}

}  // namespace

void KMPKTF(Int phase, Int slot, Vector<const Int> COLS, Vector<const Int> ROWI, Vector<const double> SYSM,
            Vector<Int> WORK, Vector<double> RWORK, Int& nrkreq, PhaseSizes& sizes, Int& IERR) {
  const Int64 NNZ = ROWI.length();
  const bool hasHeader = WORK.length() >= header::length;
  const Int started = phase == 1 || !hasHeader ? 0 : WORK(header::phase);
  IERR = ierr::outOfOrder;
  if (phase > started + 1 || phase > run.solver.lastPhase + 1) return;
  if (hasHeader) WORK(header::phase) = phase;

  switch (phase) {
    case 1:
      run.solver = SolverProtocol{};
      orderingPhase(COLS, ROWI, WORK, sizes.s, sizes.m, IERR);
      if (IERR != ierr::ok) break;
      run.solver.lastPhase = 1;
      remember(WORK, orderedPart, NNZ);
      nrkreq = 4 * run.neq + WORK(header::realRequirement);
      break;
    case 2:
      WORK(header::freeNow1) = WORK(header::freeNow2) = WORK(header::freePhase2);
      symbolicOnce(NNZ, WORK, sizes, IERR);
      break;
    case 3:
      WORK(header::freeNow1) = WORK(header::freeNow2) = WORK(header::freePhase3);
      numericGuarded(slot, COLS, ROWI, SYSM, WORK, RWORK, IERR);
      break;
    default:
      break;
  }
  if (IERR == ierr::damaged) printControlFailure(phase);
}

bool factorStands(Vector<const Int> WORK) {
  return run.solver.lastPhase == 3 && run.solver.factorValid && intact(WORK, factorPart, 0);
}

}  // namespace tornwalzen
