// OSINIT: structure set-up in three modes. Mode 1 takes the mesh and builds the pattern of the global matrix,
// mode 2 orders its equations, mode 3 lays out the factor; each reports the work lengths that the next step needs.
#include "ground/host_pointers.hpp"
#include "interface/default_analysis.hpp"
#include "sparse/pattern.hpp"
#include "sparse/phases.hpp"
#include "tornwalzen.h"

namespace tornwalzen {

namespace {

/// The arguments of OSINIT that its modes use, under the names of tornwalzen.h.
struct SetUpArguments {
  const Int *NKNO, *NELE, *NEQ;
  Int *MNSYSM, *NIWOR, *NRK;
  const double* KNOTS;
  const Int* INZI;
  Int *INTA, *COLS, *ROWI, *WORK;
  double *RWORK, *KNG;
};

bool meshGiven(Analysis& run, const SetUpArguments& h) {
  return argumentsGiven(run, {{"NKNO", h.NKNO},
                              {"NELE", h.NELE},
                              {"NEQ", h.NEQ},
                              {"MNSYSM", h.MNSYSM},
                              {"NIWOR", h.NIWOR}}) &&
         meshCountsUsable(run, *h.NKNO, *h.NELE, *h.NEQ, *h.MNSYSM) &&
         argumentsGiven(run, {{"KNOTS", h.KNOTS, *h.NKNO},
                              {"INZI", h.INZI, *h.NELE},
                              {"INTA", h.INTA, *h.NELE},
                              {"COLS", h.COLS},
                              {"ROWI", h.ROWI, *h.MNSYSM},
                              {"KNG", h.KNG, *h.NKNO}});
}

// Node by node and element by element, as the host holds them, into columns.
void copyMesh(const Analysis& run, const SetUpArguments& h, Table<Int> INTA, Table<double> KNG) {
  const Vector<const double> KNOTS("KNOTS", h.KNOTS, 3 * Int64{run.nkno});
  const Vector<const Int> INZI("INZI", h.INZI, 3 * Int64{run.nele});
  for (Int64 i = 1; i <= run.nkno; ++i)
    for (Int64 c = 1; c <= 3; ++c) KNG(i, c) = KNOTS(3 * (i - 1) + c);
  for (Int64 e = 1; e <= run.nele; ++e)
    for (Int64 c = 1; c <= 3; ++c) INTA(e, c) = INZI(3 * (e - 1) + c);
}

/// Mode 1. Failure: `ierrso` is set; the mesh is then for the caller to forget.
void takeMesh(Analysis& run, const SetUpArguments& h) {
  forget<MeshState>(run);
  forget<RunState>(run);
  const ProcessorTime time(run.setUpTimes.structure);
  if (!meshGiven(run, h)) return;
  run.nkno = run.maxkno = *h.NKNO;
  run.nele = run.maxele = *h.NELE;
  run.neq = *h.NEQ;
  run.solver.mnsysm = *h.MNSYSM;
  const Table<Int> INTA("INTA", h.INTA, run.maxele, 3);
  copyMesh(run, h, INTA, {"KNG", h.KNG, run.maxkno, 3});
  const Vector<Int> COLS("COLS", h.COLS, Int64{run.neq} + 1);
  buildPattern(run, INTA, COLS, {"ROWI", h.ROWI, run.solver.mnsysm});
  if (failed(run.ierrso)) return;
  run.solver.mnsysm = run.solver.nsysm;
  *h.MNSYSM = run.solver.mnsysm;
  solverStep(run, run.solver, SolverStep::sizing, COLS, {"ROWI", h.ROWI, run.solver.mnsysm},
             {"WORK", nullptr, 0}, {"RWORK", nullptr, 0});
  if (failed(run.ierrso)) return;
  run.solver.niwor = run.solver.niwreq;
  *h.NIWOR = run.solver.niwor;
}

/// Modes 2 and 3. Failure: `ierrso` is set.
void prepareFactor(Analysis& run, SolverStep step, const SetUpArguments& h) {
  SolverState& system = run.solver;
  const bool ordering = step == SolverStep::ordering;
  if (!argumentsGiven(run, {{"NIWOR", h.NIWOR},
                            {"NRK", h.NRK},
                            {"COLS", h.COLS},
                            {"ROWI", h.ROWI, system.mnsysm},
                            {"WORK", h.WORK, system.niwor},
                            {"RWORK", h.RWORK, ordering ? 0 : system.nrk}}))
    return;
  const ProcessorTime time(ordering ? run.setUpTimes.ordering : run.setUpTimes.symbolic);
  solverStep(run, system, step, {"COLS", h.COLS, Int64{run.neq} + 1}, {"ROWI", h.ROWI, system.mnsysm},
             {"WORK", h.WORK, system.niwor}, {"RWORK", h.RWORK, system.nrk});
  if (failed(run.ierrso)) return;
  system.niwor = system.niwreq;
  system.nrk = system.nrkreq;
  *h.NIWOR = system.niwor;
  *h.NRK = system.nrk;
}

}  // namespace

}  // namespace tornwalzen

using namespace tornwalzen;

extern "C" void OSINIT(const int32_t* MODE, const int32_t* NKNO, const int32_t* NELE, const int32_t* NEQ,
                       int32_t* MNSYSM, int32_t* NIWOR, int32_t* NRK, const double* KNOTS,
                       const int32_t* INZI, int32_t* INTA, int32_t*, int32_t* COLS, int32_t* ROWI,
                       int32_t* WORK, double* RWORK, double*, double*, double*, double*, double* KNG, double*,
                       double*, double*, double*, double*, double*, int32_t* ISTAT) {
  if (ISTAT == nullptr) return;
  *ISTAT = 0;
  Analysis& run = defaultAnalysis();
  run.ierrso = 0;
  const SetUpArguments h{NKNO, NELE, NEQ,  MNSYSM, NIWOR, NRK,   KNOTS,
                         INZI, INTA, COLS, ROWI,   WORK,  RWORK, KNG};
  if (argumentsGiven(run, {{"MODE", MODE}})) {
    if (*MODE == 1) {
      takeMesh(run, h);
      if (failed(run.ierrso)) forget<MeshState>(run);  // a refused mesh leaves nothing to run on
    }
    if (*MODE == 2) prepareFactor(run, SolverStep::ordering, h);
    if (*MODE == 3) prepareFactor(run, SolverStep::symbolic, h);
  }
  if (failed(run.ierrso)) *ISTAT = -1;
}
