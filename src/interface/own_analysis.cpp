// The same steps as the call protocol of tornwalzen.h, in memory of our own.
#include "interface/own_analysis.hpp"

#include <algorithm>
#include <limits>
#include <utility>

#include "driver/run_analysis.hpp"
#include "ground/progress.hpp"
#include "material/material_setup.hpp"
#include "sparse/pattern.hpp"
#include "sparse/phases.hpp"

namespace tornwalzen {

namespace {

/// Every array of a list, until one cannot be had.
template <class T>
bool allocate(std::initializer_list<OwnArray<T>*> arrays, Int64 length) {
  for (OwnArray<T>* array : arrays)
    if (!array->allocate(length)) return false;
  return true;
}

/// Most entries that a pattern can have: three a node, four for each pair of nodes, three pairs a triangle.
Int patternBound(Int64 nn, Int64 ne) {
  return static_cast<Int>(std::min<Int64>(3 * nn + 12 * ne, std::numeric_limits<Int>::max() - 1));
}

}  // namespace

Int OwnAnalysis::takeMesh(const GivenMesh& mesh) {
  OwnArray<Int> INTA("INTA"), ARFA("ARFA");
  OwnArray<double> KNG("KNG");
  if (!INTA.allocate(3 * Int64{mesh.ne}) || !ARFA.allocate(2 * Int64{mesh.nn}) ||
      !KNG.allocate(3 * Int64{mesh.nn}))
    return TORNWALZEN_NO_MEMORY;
  forget<MeshState>(run);
  forget<RunState>(run);
  structureStands_ = hasRun_ = false;
  for (auto* array : {&COLS_, &ROWI_, &WORK_, &TRIANGLES_, &FLANGE_, &BEADNODES_, &BEADENDS_})
    array->release();
  for (auto* array : {&RWORK_, &RR_, &RB_, &RX_, &TEMP_, &KNZ_, &KNA_, &ELG_, &SYSM_, &RXA_, &WRHS_, &EVAL_,
                      &START_, &BEADFORCE_, &CONTACT_, &GRIP_})
    array->release();
  INTA_ = std::move(INTA);
  ARFA_ = std::move(ARFA);
  KNG_ = std::move(KNG);
  firstIndex = mesh.firstIndex;
  run.nkno = run.maxkno = mesh.nn;
  run.nele = run.maxele = mesh.ne;
  run.neq = 2 * mesh.nn;
  const Table<double> points = KNG_.table(3);
  const Table<Int> incidences = INTA_.table(3);
  for (Int64 n = 1; n <= mesh.nn; ++n)
    for (Int64 c = 1; c <= 3; ++c) points(n, c) = mesh.points[3 * (n - 1) + c - 1];
  for (Int64 e = 1; e <= mesh.ne; ++e)
    for (Int64 c = 1; c <= 3; ++c)
      incidences(e, c) = mesh.triangles[3 * (e - 1) + c - 1] + (1 - mesh.firstIndex);
  ARFA_.fill(1);
  return TORNWALZEN_OK;
}

void OwnAnalysis::hold(const Int* held) {
  const Vector<Int> ARFA = ARFA_.vector();
  for (Int64 i = 1; i <= ARFA.length(); ++i) ARFA(i) = held[i - 1] == 1 ? 0 : 1;
}

bool OwnAnalysis::goesOn(RunPhase phase) {
  return hostContinues(run.progress, {phase, 0.0});
}

/// WORK and RWORK as long as the next step asks for. Before the first factorization nothing stands in RWORK.
bool OwnAnalysis::supplyWork() {
  SolverState& system = run.solver;
  if (!WORK_.resize(system.niwreq) || !RWORK_.allocate(system.nrkreq)) return false;
  system.niwor = system.niwreq;
  system.nrk = system.nrkreq;
  return true;
}

/// Pattern, ordering, layout of the factor, and, beside the ordering, the arrays of the run. False: no memory, or `ierrso`
/// is set, or the host asked for the end.
bool OwnAnalysis::setUp() {
  SolverState& system = run.solver;
  if (!goesOn(RunPhase::structure)) return false;
  {
    const ProcessorTime time(run.setUpTimes.structure);
    system = SolverState{};
    system.protocol.ownMemory = true;
    system.mnsysm = patternBound(run.nkno, run.nele);
    if (!COLS_.allocate(Int64{run.neq} + 1) || !ROWI_.allocate(system.mnsysm)) return false;
    buildPattern(run, INTA_.table(3), COLS_.vector(), ROWI_.vector());
    if (failed(run.ierrso)) return false;
    system.mnsysm = system.nsysm;
    if (!ROWI_.resize(system.nsysm)) return false;
    solverStep(run, system, SolverStep::sizing, COLS_.vector(), ROWI_.vector(), {}, {});
    if (failed(run.ierrso) || !supplyWork()) return false;
  }
  if (!goesOn(RunPhase::ordering)) return false;
  const auto order = [&] {
    const ProcessorTime time(run.setUpTimes.ordering);
    solverStep(run, system, SolverStep::ordering, COLS_.vector(), ROWI_.vector(), WORK_.vector(),
               RWORK_.vector());
  };
  bool supplied = false;
  bothSteps(run.pool.get(), order, [&] { supplied = supplyRunArrays(); });
  if (failed(run.ierrso) || !supplied || !supplyWork()) return false;
  if (!goesOn(RunPhase::symbolic)) return false;
  const ProcessorTime time(run.setUpTimes.symbolic);
  solverStep(run, system, SolverStep::symbolic, COLS_.vector(), ROWI_.vector(), WORK_.vector(),
             RWORK_.vector());
  structureStands_ = !failed(run.ierrso) && supplyWork();
  return structureStands_;
}

/// The arrays of a run, zeroed; the element table holds no numbers until an increment has converged.
bool OwnAnalysis::supplyRunArrays() {
  const Int64 neq = run.neq, ne = run.nele;
  if (!allocate({&RR_, &RB_, &RX_, &TEMP_, &RXA_, &WRHS_, &START_}, neq) ||
      !allocate({&KNZ_, &KNA_}, KNG_.length()) || !allocate({&ELG_, &EVAL_}, 5 * ne) ||
      !allocate({&SYSM_}, run.solver.nsysm) || !allocate({&TRIANGLES_}, 3 * ne))
    return false;
  for (auto* array : {&RR_, &RB_, &RX_, &TEMP_, &RXA_, &WRHS_, &KNZ_, &KNA_, &ELG_, &SYSM_}) array->fill(0.0);
  const bool press = run.options.press.chosen;
  if (!allocate({&CONTACT_, &GRIP_}, press ? ne : 0)) return false;
  CONTACT_.fill(0.0);
  GRIP_.fill(0.0);
  const Table<Int> INTA = INTA_.table(3);
  const Vector<Int> TRIANGLES = TRIANGLES_.vector();
  for (Int64 e = 1; e <= ne; ++e)
    for (Int64 c = 1; c <= 3; ++c) TRIANGLES(3 * (e - 1) + c) = INTA(e, c);
  EVAL_.fill(std::numeric_limits<double>::quiet_NaN());
  return true;
}

DriverArrays OwnAnalysis::arrays() {
  return {INTA_.table(3), ARFA_.vector(), COLS_.vector(), ROWI_.vector(), WORK_.vector(), RWORK_.vector(),
          RR_.vector(),   RB_.vector(),   RX_.vector(),   TEMP_.vector(), KNG_.table(3),  KNZ_.table(3),
          KNA_.table(3),  ELG_.table(5),  SYSM_.vector(), RXA_.vector(),  WRHS_.vector()};
}

PressArrays OwnAnalysis::pressArrays() {
  return {FLANGE_.vector(),    BEADNODES_.vector(), BEADENDS_.vector(),
          BEADFORCE_.vector(), CONTACT_.vector(),   GRIP_.vector()};
}

Int OwnAnalysis::takeFlange(const Int* marks) {
  if (marks == nullptr || std::all_of(marks, marks + run.nele, [](Int mark) { return mark == 0; })) {
    FLANGE_.release();
    return TORNWALZEN_OK;
  }
  OwnArray<Int> FLANGE("FLANGE");
  if (!FLANGE.allocate(run.nele)) return TORNWALZEN_NO_MEMORY;
  std::copy_n(marks, run.nele, FLANGE.data());
  FLANGE_ = std::move(FLANGE);
  return TORNWALZEN_OK;
}

Int OwnAnalysis::takeBeads(Int count, const Int* lengths, const Int* nodes, const double* force) {
  Int64 total = 0;
  for (Int bead = 0; bead < count; ++bead) total += lengths[bead];
  OwnArray<Int> NODES("BEADNODES"), ENDS("BEADENDS");
  OwnArray<double> FORCE("BEADFORCE");
  if (!NODES.allocate(total) || !ENDS.allocate(count) || !FORCE.allocate(count)) return TORNWALZEN_NO_MEMORY;
  for (Int64 i = 0; i < total; ++i) NODES.data()[i] = nodes[i] + 1 - firstIndex;
  Int end = 0;
  for (Int bead = 0; bead < count; ++bead) {
    ENDS.data()[bead] = end += lengths[bead];
    FORCE.data()[bead] = force[bead];
  }
  BEADNODES_ = std::move(NODES);
  BEADENDS_ = std::move(ENDS);
  BEADFORCE_ = std::move(FORCE);
  return TORNWALZEN_OK;
}

/// The results in the order in which a host reads them, and the mesh as it was given: a run may turn its triangles, and
/// the next is to find what the first one found.
void OwnAnalysis::publish() {
  const Table<double> KNA = KNA_.table(3);
  const Table<Int> INTA = INTA_.table(3);
  const Vector<double> START = START_.vector();
  const Vector<Int> TRIANGLES = TRIANGLES_.vector();
  for (Int64 n = 1; n <= run.nkno; ++n)
    for (Int64 c = 1; c <= 2; ++c) START(2 * (n - 1) + c) = KNA(n, c);
  for (Int64 e = 1; e <= run.nele; ++e)
    for (Int64 c = 1; c <= 3; ++c) {
      Int& given = TRIANGLES(3 * (e - 1) + c);
      std::swap(given, INTA(e, c));
      given -= 1 - firstIndex;
    }
  hasRun_ = true;
}

Int OwnAnalysis::analyse() {
  const RunLifetime lifetime(run);
  const ProcessorTime time(run.record.total);
  run.ierrso = run.ierrel = 0;
  hasRun_ = false;
  if (run.options.goesSurePath()) {
    if (const Int code = refuseTopology(run, INTA_.table(3), KNG_.table(3)); code != TORNWALZEN_OK)
      return code;
  }
  if (structureStands_) {
    if (!supplyRunArrays()) return TORNWALZEN_NO_MEMORY;
  } else if (!setUp()) {
    if (failed(run.ierrso)) return TORNWALZEN_SETUP_FAILED;
    if (!run.progress.stopAsked) return TORNWALZEN_NO_MEMORY;
    run.record.end = RunEnd::stoppedByHost;
    return TORNWALZEN_OK;
  }
  selectMaterial(run, selector);
  runAnalysis(run, arrays(), EVAL_.vector(), pressArrays());
  if (failed(run.ierrso)) run.record.end = RunEnd::solverFailed;
  publish();
  return TORNWALZEN_OK;
}

void OwnAnalysis::strains(TornwalzenElementStrain* strains) {
  LoadedCurve loaded;
  loaded.load(run.options, selector);
  const FlowCurve CURVE = loaded.curve(run.options.anisotropy);
  const Table<double> KNG =
      run.options.press.chosen ? KNZ_.table(3) : KNG_.table(3);  // the middle of the sheet
  const Vector<Int> TRIANGLES = TRIANGLES_.vector();
  const Vector<double> RX = RX_.vector();
  for (Int64 e = 1; e <= run.nele; ++e) {
    double X[9], U[6];
    for (Int corner = 0; corner < 3; ++corner) {
      const Int n = TRIANGLES(3 * (e - 1) + corner + 1) + (1 - firstIndex);
      for (Int i = 0; i < 3; ++i) X[3 * corner + i] = KNG(n, i + 1);
      U[2 * corner] = RX(2 * n - 1);
      U[2 * corner + 1] = RX(2 * n);
    }
    strains[e - 1] = elementStrain(X, U, CURVE, loaded.smin);
  }
}

}  // namespace tornwalzen
