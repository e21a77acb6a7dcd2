// OSMAIN: the inverse analysis. Loads the material, checks the host's index arrays, runs the driver.
#include "driver/run_analysis.hpp"
#include "ground/host_pointers.hpp"
#include "ground/subscript_check.hpp"
#include "interface/default_analysis.hpp"
#include "material/material_setup.hpp"
#include "tornwalzen.h"

using namespace tornwalzen;

extern "C" void OSMAIN(int32_t* INTA, const int32_t* ARFA, const int32_t* COLS, const int32_t* ROWI,
                       int32_t* WORK, double* RWORK, double* RR, double* RB, double* RX, double* TEMP,
                       const double* KNG, double* KNZ, double* KNA, double* ELG, double* SYSM, double* RXA,
                       double* WRHS, const int32_t* ICTRL, double* EVAL, int32_t* ISTAT) {
  if (ISTAT == nullptr) return;
  *ISTAT = 0;
  Analysis& run = defaultAnalysis();
  const RunLifetime lifetime(run);
  const ProcessorTime time(run.record.total);
  if (!argumentsGiven(run, {{"ICTRL", ICTRL}})) {
    *ISTAT = -1;
    return;
  }
  selectMaterial(run, *ICTRL);

  const Int64 nodes = run.maxkno, elements = run.maxele, equations = run.neq, entries = run.solver.mnsysm;
  const DriverArrays a{{"INTA", INTA, elements, 3},
                       {"ARFA", ARFA, equations},
                       {"COLS", COLS, equations + 1},
                       {"ROWI", ROWI, entries},
                       {"WORK", WORK, run.solver.niwor},
                       {"RWORK", RWORK, run.solver.nrk},
                       {"RR", RR, equations},
                       {"RB", RB, equations},
                       {"RX", RX, equations},
                       {"TEMP", TEMP, equations},
                       {"KNG", KNG, nodes, 3},
                       {"KNZ", KNZ, nodes, 3},
                       {"KNA", KNA, nodes, 3},
                       {"ELG", ELG, elements, 5},
                       {"SYSM", SYSM, entries},
                       {"RXA", RXA, equations},
                       {"WRHS", WRHS, equations}};
  const Vector<double> results("EVAL", EVAL, 5 * elements);
  const bool given =
      argumentsGiven(run, {a.INTA, a.ARFA, a.COLS, a.ROWI, a.WORK, a.RWORK, a.RR, a.RB, a.RX, a.TEMP, a.KNG,
                           a.KNZ, a.KNA, a.ELG, a.SYSM, a.RXA, a.WRHS, results});
  const bool usable = given && incidencesInside(run, a.INTA, run.nkno) &&
                      (run.neq == 0 || patternInside(run, a.COLS, a.ROWI, run.neq));
  if (usable) runAnalysis(run, a, results);
  if (usable && failed(run.ierrso)) run.record.end = RunEnd::solverFailed;
  *ISTAT = failed(run.ierrso) ? -1 : run.istat;
}
