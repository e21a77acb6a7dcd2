// The factorization dispatcher.
#include "sparse/phase_guard.hpp"

#include <algorithm>

#include "ground/kernel_tables.hpp"
#include "ground/messages.hpp"
#include "sparse/factor_team.hpp"
#include "sparse/kernels/dense_kernels.hpp"
#include "sparse/numeric.hpp"
#include "sparse/ordering.hpp"
#include "sparse/phase_error.hpp"
#include "sparse/structure_guard.hpp"
#include "sparse/symbolic.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

namespace {

// What stands in WORK between the steps, and the checksum that the protocol keeps of each part.
enum GuardedPart { orderedPart, factorPart, matrixColumnsPart };

std::uint64_t sumOf(Vector<const Int> WORK, GuardedPart part, Int64 NNZ, ThreadPool* pool) {
  const Int64 free3 = WORK(header::freePhase3);
  switch (part) {
    case orderedPart:
      return structureSum(WORK, 1, Int64{WORK(header::freePhase2)} - 1, pool);
    case factorPart:
      return structureSum(WORK, 1, free3 - 1, pool);
    default:
      return structureSum(WORK, free3, free3 + NNZ - 1, pool);  // XUPPER and COLIDX
  }
}

bool intact(const SolverProtocol& protocol, Vector<const Int> WORK, GuardedPart part, Int64 NNZ,
            ThreadPool* pool) {
  if (WORK.length() <= header::length) return false;
  return protocol.ownMemory || sumOf(WORK, part, NNZ, pool) == protocol.structureSum[part];
}

void remember(SolverProtocol& protocol, Vector<const Int> WORK, GuardedPart part, Int64 NNZ,
              ThreadPool* pool) {
  if (!protocol.ownMemory) protocol.structureSum[part] = sumOf(WORK, part, NNZ, pool);
}

void printControlFailure(Analysis& run, Int phase) {
  printText(run.messages, " FATALER FEHLER  IN DER STEUERUNG DES LOESERS");
  printText(run.messages, MessageLine()
                              .text("   IDO= ")
                              .integer(phase, 4)
                              .text(" IST FALSCH, BITTE KOMMENTAR IN KMPKTF LESEN")
                              .nul()
                              .buffer());
}

// Phase 2, or what it determined before: it may be repeated, although it drops the adjacency that it needs.
void symbolicOnce(ThreadPool* pool, SolverProtocol& protocol, Int64 NNZ, Vector<Int> WORK, PhaseSizes& sizes,
                  Int& IERR) {
  if (protocol.lastPhase >= 2 && intact(protocol, WORK, factorPart, NNZ, pool)) {
    sizes.f1 = WORK(header::largestFront);
    sizes.f2 = WORK(header::largestUpdate);
    sizes.g = WORK(header::realGrowth);
    IERR = ierr::ok;
    return;
  }
  if (!intact(protocol, WORK, orderedPart, NNZ, pool)) {
    IERR = ierr::damaged;
    return;
  }
  symbolicPhase(static_cast<Int>(NNZ), WORK, sizes.f1, sizes.f2, sizes.g, IERR);
  if (IERR != ierr::ok) return;
  protocol.lastPhase = 2;
  protocol.factorized = false;
  remember(protocol, WORK, factorPart, NNZ, pool);
}

void numericGuarded(Analysis& run, SolverProtocol& protocol, Vector<const Int> COLS, Vector<const Int> ROWI,
                    Vector<const double> SYSM, Vector<Int> WORK, Vector<double> RWORK, Int& IERR) {
  const Int64 NNZ = ROWI.length();
  const bool first = !protocol.factorized;
  ThreadPool* const pool = run.pool.get();
  protocol.factorValid = false;
  IERR = ierr::damaged;
  if (!intact(protocol, WORK, factorPart, NNZ, pool) ||
      (!first && !intact(protocol, WORK, matrixColumnsPart, NNZ, pool)))
    return;
  FactorTeam* const team = teamOf(run, protocol, WORK);
  if (team != nullptr) run.record.threadBytes = std::max(run.record.threadBytes, team->bytes());
  numericPhase(kernelsOf(run), team, first, COLS, ROWI, SYSM, WORK, RWORK, IERR);
  if (IERR == ierr::shortWork3) return;
  if (first) remember(protocol, WORK, matrixColumnsPart, NNZ, pool);
  protocol.factorized = true;
  protocol.lastPhase = 3;
  protocol.factorValid = IERR == ierr::ok;
}

}  // namespace

void runPhase(Analysis& run, SolverProtocol& protocol, Int phase, Vector<const Int> COLS,
              Vector<const Int> ROWI, Vector<const double> SYSM, Vector<Int> WORK, Vector<double> RWORK,
              PhaseSizes& sizes, Int& IERR) {
  const Int64 NNZ = ROWI.length();
  ThreadPool* const pool = run.pool.get();
  const bool hasHeader = WORK.length() >= header::length;
  const Int started = phase == 1 || !hasHeader ? 0 : WORK(header::phase);
  IERR = ierr::outOfOrder;
  if (phase > started + 1 || phase > protocol.lastPhase + 1) return;
  if (hasHeader) WORK(header::phase) = phase;

  switch (phase) {
    case 1:
      protocol.restart();
      orderingPhase(COLS, ROWI, WORK, sizes.s, sizes.m, IERR);
      if (IERR != ierr::ok) break;
      protocol.lastPhase = 1;
      remember(protocol, WORK, orderedPart, NNZ, pool);
      break;
    case 2:
      WORK(header::freeNow1) = WORK(header::freeNow2) = WORK(header::freePhase2);
      symbolicOnce(pool, protocol, NNZ, WORK, sizes, IERR);
      break;
    case 3:
      WORK(header::freeNow1) = WORK(header::freeNow2) = WORK(header::freePhase3);
      numericGuarded(run, protocol, COLS, ROWI, SYSM, WORK, RWORK, IERR);
      break;
    default:
      break;
  }
  if (IERR == ierr::damaged) printControlFailure(run, phase);
}

bool structureStands(const SolverProtocol& protocol, Vector<const Int> WORK, ThreadPool* pool) {
  return protocol.lastPhase >= 2 && intact(protocol, WORK, factorPart, 0, pool);
}

void noteStructure(SolverProtocol& protocol, Vector<Int> WORK, ThreadPool* pool) {
  protocol.lastPhase = 2;
  WORK(header::phase) = 2;
  remember(protocol, WORK, factorPart, 0, pool);
}

const DenseKernels& kernelsOf(const Analysis& run) {
  return run.kernels != nullptr ? *run.kernels : denseKernelTables().best();
}

bool factorStands(const SolverProtocol& protocol, Vector<const Int> WORK, ThreadPool* pool) {
  return protocol.lastPhase == 3 && protocol.factorValid && intact(protocol, WORK, factorPart, 0, pool);
}

}  // namespace tornwalzen
