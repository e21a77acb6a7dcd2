// What a host may set beside the fixed interface, and the way back to the state after loading.
#include "interface/default_analysis.hpp"
#include "interface/settings.hpp"
#include "tornwalzen_ext.h"

using namespace tornwalzen;

extern "C" {

int32_t tornwalzen_set_flow_curve(int32_t selector, int32_t n, const double* strain,
                                  const double* stress_mpa) {
  return setFlowCurve(defaultAnalysis(), selector, n, strain, stress_mpa);
}

int32_t tornwalzen_set_normal_anisotropy(double r) {
  return setNormalAnisotropy(defaultAnalysis(), r);
}

int32_t tornwalzen_set_energy_reference(int32_t reference) {
  return setEnergyReference(defaultAnalysis(), reference);
}

int32_t tornwalzen_set_tolerance_factors(double final_factor, double path_factor) {
  return setToleranceFactors(defaultAnalysis(), final_factor, path_factor);
}

int32_t tornwalzen_set_path(int32_t path) {
  return setPath(defaultAnalysis(), path);
}

int32_t tornwalzen_set_threads(int32_t threads) {
  return setThreads(defaultAnalysis(), threads);
}

int32_t tornwalzen_set_start(int32_t start) {
  return setStart(defaultAnalysis(), start);
}

int32_t tornwalzen_reset(void) {
  Analysis& run = defaultAnalysis();
  if (const Int busy = refuseWhileRunning(run)) return busy;
  forget<LibraryState>(run);
  forget<MeshState>(run);
  forget<RunState>(run);
  return TORNWALZEN_OK;
}

const char* tornwalzen_version(void) {
  return TORNWALZEN_VERSION;
}

}  // extern "C"
