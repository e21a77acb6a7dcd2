// What a host may ask for beside the fixed interface: the report of the last run, strains per element, texts.
#include <algorithm>
#include <cstddef>

#include "ground/refusal_text.hpp"
#include "interface/default_analysis.hpp"
#include "interface/results.hpp"
#include "tornwalzen_ext.h"

using namespace tornwalzen;

namespace {

/// Positions of the element's corners on the part (mm) and in the blank (mm).
void gather(const int32_t* corners, const double* knots, const double* rx, double (&X)[9], double (&U)[6]) {
  for (int corner = 0; corner < 3; ++corner) {
    const std::size_t n = static_cast<std::size_t>(corners[corner]) - 1;
    std::copy(knots + 3 * n, knots + 3 * n + 3, X + 3 * corner);
    std::copy(rx + 2 * n, rx + 2 * n + 2, U + 2 * corner);
  }
}

}  // namespace

extern "C" {

int32_t tornwalzen_get_report(TornwalzenReport* report) {
  return fillReport(defaultAnalysis(), report);
}

const char* tornwalzen_error_text(int32_t code, int32_t language) {
  return refusalText(defaultAnalysis(), code, language);
}

int32_t tornwalzen_element_strains(int32_t selector, int32_t nn, int32_t ne, const double* knots,
                                   const int32_t* inzi, const double* rx, TornwalzenElementStrain* strains) {
  Analysis& run = defaultAnalysis();
  if (nn < 0) return refuse(run.refusal, TORNWALZEN_BAD_COUNT, 2, nn);
  if (ne < 0) return refuse(run.refusal, TORNWALZEN_BAD_COUNT, 3, ne);
  const void* const pointers[] = {knots, inzi, rx, strains};
  for (Int i = 0; ne > 0 && i < 4; ++i)
    if (pointers[i] == nullptr) return refuse(run.refusal, TORNWALZEN_NULL_POINTER, 4 + i, 0.0);
  LoadedCurve loaded;
  if (!loaded.load(run.options, selector)) return refuse(run.refusal, TORNWALZEN_BAD_SELECTOR, 0, selector);
  const std::size_t entries = 3 * static_cast<std::size_t>(ne);
  for (std::size_t k = 0; k < entries; ++k)
    if (inzi[k] < 1 || inzi[k] > nn)
      return refuse(run.refusal, TORNWALZEN_BAD_NODE, static_cast<Int>(k) + 1, inzi[k]);

  const FlowCurve CURVE = loaded.curve(run.options.anisotropy);
  for (std::size_t e = 0; e < static_cast<std::size_t>(ne); ++e) {
    double X[9], U[6];
    gather(inzi + 3 * e, knots, rx, X, U);
    strains[e] = elementStrain(X, U, CURVE, loaded.smin);
  }
  return TORNWALZEN_OK;
}

}  // extern "C"
