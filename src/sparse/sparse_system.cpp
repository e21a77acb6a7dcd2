// Systems of equations over the solver's phases.
#include "sparse/sparse_system.hpp"

#include <algorithm>

#include "ground/messages.hpp"
#include "sparse/node_structure.hpp"
#include "sparse/phase_guard.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

namespace {

constexpr char noMemory[] = " FATALER FEHLER : kein Speicher fuer ein Gleichungssystem @";

}  // namespace

SparseSystem::SparseSystem(Analysis& run, Vector<const Int> COLS, Vector<const Int> ROWI, Vector<Int> WORK,
                           Vector<double> RWORK, Vector<double> SYSM, Vector<double> WRHS)
    : run_(run),
      state_(&run.solver),
      COLS_(COLS),
      ROWI_(ROWI),
      WORK_(WORK),
      RWORK_(RWORK),
      SYSM_(SYSM),
      WRHS_(WRHS) {}

bool SparseSystem::prepareNodes(Vector<const Int> COLS, Vector<const Int> ROWI, const SparseSystem* pairs) {
  const Int64 nodes = (COLS.length() - 1) / 2;
  Int64 entries = 0;
  for (Int64 n = 1; n <= nodes; ++n) entries += (COLS(2 * n) - COLS(2 * n - 1)) / 2;
  if (!cols_.allocate(nodes + 1) || !rowi_.allocate(entries) || !sysm_.allocate(entries) ||
      !wrhs_.allocate(nodes)) {
    failSolver(run_, noMemory);
    return false;
  }
  const Vector<Int> columns = cols_.vector(), rows = rowi_.vector();
  Int next = 1;
  for (Int64 n = 1; n <= nodes; ++n) {
    columns(n) = next;
    for (Int64 p = COLS(2 * n - 1); p < COLS(2 * n); p += 2) rows(next++) = (ROWI(p) + 1) / 2;
  }
  columns(nodes + 1) = next;
  COLS_ = columns;
  ROWI_ = rows;
  SYSM_ = sysm_.vector();
  WRHS_ = wrhs_.vector();
  ownState_ = SolverState{};
  ownState_.protocol.ownMemory = true;
  ownState_.neq = static_cast<Int>(nodes);
  ownState_.nsysm = ownState_.mnsysm = static_cast<Int>(entries);
  if (pairs != nullptr && halve(*pairs)) return enlarge();
  for (const SolverStep phase : {SolverStep::sizing, SolverStep::ordering, SolverStep::symbolic})
    if (!step(phase, {}, {}) || !enlarge()) return false;
  return true;
}

/// Order and layout from those of `pairs`. False: they cannot be had there, and nothing has changed but WORK.
bool SparseSystem::halve(const SparseSystem& pairs) {
  ThreadPool* const pool = run_.pool.get();
  const Vector<Int> PAIRS = pairs.WORK_;
  if (!structureStands(pairs.state_->protocol, PAIRS, pool)) return false;
  // what the numeric phase needs is no more than with the fronts of the pairs: enlarge() has it then without a copy
  const Int64 length = halvedLength(PAIRS);
  const Int64 most = numericLength(length, PAIRS(header::largestFront), PAIRS(header::largestUpdate), 0,
                                   ownState_.nsysm, PAIRS(header::realGrowth));
  if (!work_.allocate(std::max(length, most)) || !work_.resize(length)) return false;
  const Vector<Int> WORK = work_.vector();
  Int f1, f2, g, IERR;
  halveStructure(PAIRS, WORK, f1, f2, g, IERR);
  if (IERR != ierr::ok) return false;
  const Int64 NEQ = ownState_.neq, m = WORK(header::supernodes), s = WORK(header::subscripts);
  const Int64 P = partialLength(NEQ, m, s);
  ownState_.niwreq = static_cast<Int>(std::max(
      work_.length(), numericLength(P, f1, f2, m, ownState_.nsysm, g)));  // half of what fitted an Int
  ownState_.nrkreq =
      static_cast<Int>(realLength(NEQ, WORK(header::realRequirement), g > NEQ ? 2 * Int64{g} : 0));
  ownState_.protocol.supernodes = static_cast<Int>(m);
  ownState_.protocol.partialRequirement = static_cast<Int>(P);
  noteStructure(ownState_.protocol, WORK, pool);
  return true;
}

/// Memory as long as the next step needs, what stands in WORK kept; in RWORK nothing stands before the factorization.
bool SparseSystem::enlarge() {
  if (!work_.resize(ownState_.niwreq) || !rwork_.allocate(ownState_.nrkreq)) {
    failSolver(run_, noMemory);
    return false;
  }
  WORK_ = work_.vector();
  RWORK_ = rwork_.vector();
  ownState_.niwor = ownState_.niwreq;
  ownState_.nrk = ownState_.nrkreq;
  return true;
}

bool SparseSystem::step(SolverStep step, Vector<const double> RHS, Vector<double> SOLUTION) {
  const Int before = run_.ierrso;
  run_.ierrso = 0;
  solverStep(run_, *state_, step, COLS_, ROWI_, WORK_, RWORK_, RHS, SOLUTION, SYSM_, WRHS_);
  const bool done = !failed(run_.ierrso);
  run_.ierrso = before;
  return done;
}

void SparseSystem::hold(Vector<const Int> FREE) const {
  constexpr Int64 leastHeld = 8192;  // columns of a range
  inRanges(run_.pool.get(), FREE.length(), leastHeld, [&](Int64 first, Int64 last) {
    for (Int64 i = first; i <= last; ++i) {
      const Int diagonal = COLS_(i), next = COLS_(i + 1);
      if (FREE(i) == 0) SYSM_(diagonal) = 1.0;
      for (Int k = diagonal + 1; k < next; ++k)
        if (FREE(i) == 0 || FREE(ROWI_(k)) == 0) SYSM_(k) = 0.0;
    }
  });
}

bool SparseSystem::factorize() {
  return step(SolverStep::numeric, {}, {});
}

void SparseSystem::solve(Vector<const double> RHS, Vector<double> SOLUTION) {
  step(SolverStep::solve, RHS, SOLUTION);
}

Int SparseSystem::negativePivots() const {
  constexpr Int64 leastCounted = 32768;  // pivots of a range
  Int negative = 0;
  const auto ofRange = [&](Int64 first, Int64 last) {
    Int count = 0;
    for (Int64 i = first; i <= last; ++i)
      if (RWORK_(i) < 0.0) ++count;
    return count;
  };
  mergeRanges(run_.pool.get(), COLS_.length() - 1, leastCounted, ofRange,
              [&](Int count) { negative += count; });
  return negative;
}

}  // namespace tornwalzen
