// OSINIT: structure set-up in three modes. Mode 1 takes the mesh and builds the pattern of the global matrix,
// mode 2 orders its equations, mode 3 lays out the factor; each reports the work lengths that the next step needs.
#include "ground/host_pointers.hpp"
#include "ground/run_record.hpp"
#include "ground/run_state.hpp"
#include "ground/subscript_check.hpp"
#include "sparse/pattern.hpp"
#include "sparse/phases.hpp"
#include "tornwalzen.h"

namespace tornwalzen {

namespace {

enum SolverStep : Int { sizing = 11, ordering = 12, symbolic = 13 };

// The solver's step on the host's arrays; steps 11 to 13 read neither values nor vectors.
void solverStep(SolverStep step, Vector<const Int> COLS, Vector<const Int> ROWI, Vector<Int> WORK,
                Vector<double> RWORK) {
  loesys(step, COLS, ROWI, WORK, RWORK, {"RR", nullptr, 0}, {"RB", nullptr, 0}, {"SYSM", nullptr, 0},
         {"WRHS", nullptr, 0});
}

// Node by node and element by element, as the host holds them, into columns.
void takeMesh(const double* knots, const int32_t* inzi, Table<Int> INTA, Table<double> KNG) {
  const Vector<const double> KNOTS("KNOTS", knots, 3 * Int64{run.nkno});
  const Vector<const Int> INZI("INZI", inzi, 3 * Int64{run.nele});
  for (Int64 i = 1; i <= run.nkno; ++i)
    for (Int64 c = 1; c <= 3; ++c) KNG(i, c) = KNOTS(3 * (i - 1) + c);
  for (Int64 e = 1; e <= run.nele; ++e)
    for (Int64 c = 1; c <= 3; ++c) INTA(e, c) = INZI(3 * (e - 1) + c);
}

// A mesh that is refused must leave nothing of the last one that a later call could run on.
void forgetMesh() {
  run.solver = SolverProtocol{};
  run.niwor = run.nrk = run.niwreq = run.nrkreq = 0;
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
  run.lunout = 6;
  run.ierrso = 0;
  if (!argumentsGiven({{"MODE", MODE}})) {
    *ISTAT = -1;
    return;
  }

  if (*MODE == 1) {
    record = RunRecord{};
    setUpTimes = SetUpTimes{};
    const ProcessorTime time(setUpTimes.structure);
    forgetMesh();
    if (!argumentsGiven(
            {{"NKNO", NKNO}, {"NELE", NELE}, {"NEQ", NEQ}, {"MNSYSM", MNSYSM}, {"NIWOR", NIWOR}}) ||
        !meshCountsUsable(*NKNO, *NELE, *NEQ, *MNSYSM) ||
        !argumentsGiven({{"KNOTS", KNOTS, *NKNO},
                         {"INZI", INZI, *NELE},
                         {"INTA", INTA, *NELE},
                         {"COLS", COLS},
                         {"ROWI", ROWI, *MNSYSM},
                         {"KNG", KNG, *NKNO}})) {
      *ISTAT = -1;
      return;
    }
    run.nkno = run.maxkno = *NKNO;
    run.nele = run.maxele = *NELE;
    run.neq = run.maxsys = *NEQ;
    run.mnsysm = *MNSYSM;
    const Table<Int> incidences("INTA", INTA, run.maxele, 3);
    takeMesh(KNOTS, INZI, incidences, {"KNG", KNG, run.maxkno, 3});
    const Vector<Int> columns("COLS", COLS, Int64{run.maxsys} + 1), rows("ROWI", ROWI, run.mnsysm);
    loeini(incidences, columns, rows);
    if (failed(run.ierrso)) {
      *ISTAT = -1;
      return;
    }
    run.mnsysm = run.nsysm;
    *MNSYSM = run.mnsysm;
    solverStep(sizing, columns, {"ROWI", ROWI, run.mnsysm}, {"WORK", nullptr, 0}, {"RWORK", nullptr, 0});
    if (failed(run.ierrso)) {
      *ISTAT = -1;
      return;
    }
    run.niwor = run.niwreq;
    *NIWOR = run.niwor;
    return;
  }
  if (*MODE != 2 && *MODE != 3) return;

  if (!argumentsGiven({{"NIWOR", NIWOR},
                       {"NRK", NRK},
                       {"COLS", COLS},
                       {"ROWI", ROWI, run.mnsysm},
                       {"WORK", WORK, run.niwor},
                       {"RWORK", RWORK, *MODE == 3 ? run.nrk : 0}})) {
    *ISTAT = -1;
    return;
  }
  const ProcessorTime time(*MODE == 2 ? setUpTimes.ordering : setUpTimes.symbolic);
  solverStep(*MODE == 2 ? ordering : symbolic, {"COLS", COLS, Int64{run.maxsys} + 1},
             {"ROWI", ROWI, run.mnsysm}, {"WORK", WORK, run.niwor}, {"RWORK", RWORK, run.nrk});
  if (failed(run.ierrso)) {
    *ISTAT = -1;
    return;
  }
  run.niwor = run.niwreq;
  run.nrk = run.nrkreq;
  *NIWOR = run.niwor;
  *NRK = run.nrk;
}
