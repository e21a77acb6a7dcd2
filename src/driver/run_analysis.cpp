// The choice of the path, topology before and figures after it.
#include "driver/run_analysis.hpp"

#include <algorithm>

#include "driver/inverse_driver.hpp"
#include "driver/known_topology.hpp"
#include "driver/result_checks.hpp"
#include "driver/sure_path.hpp"
#include "element/element_parts.hpp"
#include "tornwalzen_ext.h"

namespace tornwalzen {

Int refuseTopology(Analysis& run, Table<const Int> INTA, Table<const double> KNG) {
  const PartTopology* const topology = topologyOf(run, {KNG, INTA, run.nkno, run.nele});
  if (topology == nullptr) return refuse(run.refusal, TORNWALZEN_NO_MEMORY, 0, 0.0);
  if (topology->code == TORNWALZEN_OK) return TORNWALZEN_OK;
  const Int code = refuse(run.refusal, topology->code, topology->index, topology->value);
  run.topology.reset();
  return code;
}

void runAnalysis(Analysis& run, const DriverArrays& a, Vector<double> EVAL, const PressArrays& press) {
  run.parts = ElementParts::divide(run.pool.get(), run.nele, run.nkno, a.INTA, a.KNG);
  if (run.options.goesSurePath())
    surePath(run, a, EVAL, press);
  else
    inverseDriver(run, a, EVAL);
  if (run.pool) run.record.threadBytes = std::max(run.record.threadBytes, run.pool->scratchBytes());
  if (run.parts) run.record.threadBytes += run.parts->bytes();
  run.parts.reset();
  checkResult(run, a);
  run.topology.reset();
}

}  // namespace tornwalzen
