// What a host may set beside the fixed interface, and the way back to the state after loading.
#include <cmath>

#include "interface/default_analysis.hpp"
#include "material/curve_check.hpp"
#include "tornwalzen_ext.h"

using namespace tornwalzen;

namespace {

int32_t refuseBusy() {
  return refuse(defaultAnalysis().refusal, TORNWALZEN_BUSY, 0, 0.0);
}

bool usableFactor(double factor) {
  return factor > 0.0 && factor <= 1.0;
}

}  // namespace

extern "C" {

int32_t tornwalzen_set_flow_curve(int32_t selector, int32_t n, const double* strain,
                                  const double* stress_mpa) {
  if (defaultAnalysis().running) return refuseBusy();
  if (selector < 0 || selector >= curveSelectors)
    return refuse(defaultAnalysis().refusal, TORNWALZEN_BAD_SELECTOR, 0, selector);
  if (n == 0) {
    defaultAnalysis().options.curves[selector] = HostCurve{};
    return TORNWALZEN_OK;
  }
  if (n < leastCurvePoints || n > mostCurvePoints)
    return refuse(defaultAnalysis().refusal, TORNWALZEN_BAD_POINT_COUNT, 0, n);
  if (strain == nullptr) return refuse(defaultAnalysis().refusal, TORNWALZEN_NULL_POINTER, 3, 0.0);
  if (stress_mpa == nullptr) return refuse(defaultAnalysis().refusal, TORNWALZEN_NULL_POINTER, 4, 0.0);
  const Int code = checkHostCurve(defaultAnalysis().refusal, n, strain, stress_mpa);
  if (code == TORNWALZEN_OK) defaultAnalysis().options.curves[selector] = hostCurve(n, strain, stress_mpa);
  return code;
}

int32_t tornwalzen_set_normal_anisotropy(double r) {
  if (defaultAnalysis().running) return refuseBusy();
  if (!(r > 0.0) || !std::isfinite(r))
    return refuse(defaultAnalysis().refusal, TORNWALZEN_BAD_ANISOTROPY, 0, r);
  defaultAnalysis().options.anisotropy = r;
  return TORNWALZEN_OK;
}

int32_t tornwalzen_set_energy_reference(int32_t reference) {
  if (defaultAnalysis().running) return refuseBusy();
  if (reference != 0 && reference != 1)
    return refuse(defaultAnalysis().refusal, TORNWALZEN_BAD_REFERENCE, 0, reference);
  defaultAnalysis().options.partReference = reference == 1;
  return TORNWALZEN_OK;
}

int32_t tornwalzen_set_tolerance_factors(double final_factor, double path_factor) {
  if (defaultAnalysis().running) return refuseBusy();
  if (!usableFactor(final_factor))
    return refuse(defaultAnalysis().refusal, TORNWALZEN_BAD_TOLERANCE, 1, final_factor);
  if (!usableFactor(path_factor))
    return refuse(defaultAnalysis().refusal, TORNWALZEN_BAD_TOLERANCE, 2, path_factor);
  defaultAnalysis().options.finalTolerance = final_factor;
  defaultAnalysis().options.pathTolerance = path_factor;
  return TORNWALZEN_OK;
}

int32_t tornwalzen_reset(void) {
  if (defaultAnalysis().running) return refuseBusy();
  Analysis& run = defaultAnalysis();
  forget<LibraryState>(run);
  forget<MeshState>(run);
  forget<RunState>(run);
  return TORNWALZEN_OK;
}

const char* tornwalzen_version(void) {
  return TORNWALZEN_VERSION;
}

}  // extern "C"
