// What a host may ask for beside the fixed interface: the report of the last run, and strains per element.
#include <algorithm>
#include <cstddef>
#include <cstring>

#include "element/element_strains.hpp"
#include "interface/default_analysis.hpp"
#include "material/material_setup.hpp"
#include "tornwalzen_ext.h"

using namespace tornwalzen;

namespace {

TornwalzenReport currentReport(const Analysis& run) {
  const RunRecord& record = run.record;
  const SetUpTimes& setUpTimes = run.setUpTimes;
  TornwalzenReport r{};
  r.size = static_cast<int32_t>(sizeof r);
  r.converged = record.end == RunEnd::converged ? 1 : 0;
  r.reason = static_cast<int32_t>(record.end);
  r.increments = record.increments;
  r.repeats = record.repeats;
  r.accepted_unconverged = record.acceptedUnconverged;
  r.newton_iterations = record.newtonSteps;
  r.line_search_trials = record.lineSearchTrials;
  r.factorizations = record.factorizations;
  r.negative_pivots = record.negativePivots;
  r.unfolding_iterations = record.unfoldIterations;
  r.inverted_elements = record.invertedElements;
  r.beyond_curve = record.beyondCurve ? 1 : 0;
  r.factor_entries = record.factorEntries;
  r.factor_flops = record.factorFlops;
  r.smallest_pivot = record.smallestPivot;
  r.progress = record.progress;
  r.last_gradient = record.lastGradient;
  r.gradient_limit = record.gradientLimit;
  r.largest_measure = record.largestMeasure;
  r.largest_strain = record.largestStrain;
  r.time_structure = setUpTimes.structure;
  r.time_ordering = setUpTimes.ordering;
  r.time_symbolic = setUpTimes.symbolic;
  r.time_development = record.development;
  r.time_assembly = record.assembly;
  r.time_factorization = record.factorization;
  r.time_solve = record.solve;
  r.time_line_search = record.lineSearch;
  r.time_analysis = record.total;
  static_assert(sizeof r.fatal_text == fatalTextLength);
  std::memcpy(r.fatal_text, record.fatalText, fatalTextLength);
  return r;
}

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
  if (report == nullptr) return refuse(defaultAnalysis().refusal, TORNWALZEN_NULL_POINTER, 1, 0.0);
  if (report->size < static_cast<int32_t>(sizeof *report))
    return refuse(defaultAnalysis().refusal, TORNWALZEN_SHORT_REPORT, 0, report->size);
  *report = currentReport(defaultAnalysis());
  return TORNWALZEN_OK;
}

int32_t tornwalzen_element_strains(int32_t selector, int32_t nn, int32_t ne, const double* knots,
                                   const int32_t* inzi, const double* rx, TornwalzenElementStrain* strains) {
  if (nn < 0) return refuse(defaultAnalysis().refusal, TORNWALZEN_BAD_COUNT, 2, nn);
  if (ne < 0) return refuse(defaultAnalysis().refusal, TORNWALZEN_BAD_COUNT, 3, ne);
  const void* const pointers[] = {knots, inzi, rx, strains};
  for (Int i = 0; ne > 0 && i < 4; ++i)
    if (pointers[i] == nullptr) return refuse(defaultAnalysis().refusal, TORNWALZEN_NULL_POINTER, 4 + i, 0.0);
  double table[curveRows * curveColumns];
  const Table<double> FC("FC", table, curveRows, curveColumns);
  Int npkt;
  double smin;
  if (!loadFlowCurve(defaultAnalysis().options, selector, FC, npkt, smin))
    return refuse(defaultAnalysis().refusal, TORNWALZEN_BAD_SELECTOR, 0, selector);
  const std::size_t entries = 3 * static_cast<std::size_t>(ne);
  for (std::size_t k = 0; k < entries; ++k)
    if (inzi[k] < 1 || inzi[k] > nn)
      return refuse(defaultAnalysis().refusal, TORNWALZEN_BAD_NODE, static_cast<Int>(k) + 1, inzi[k]);

  const FlowCurve CURVE(FC, npkt, defaultAnalysis().options.anisotropy);
  for (std::size_t e = 0; e < static_cast<std::size_t>(ne); ++e) {
    double X[9], U[6];
    gather(inzi + 3 * e, knots, rx, X, U);
    const PrincipalStrains S = triangleStrains(X, U, CURVE.weights);
    strains[e] = {S.e1,
                  S.e2,
                  {S.blankAxis[0], S.blankAxis[1]},
                  {S.partAxis[0], S.partAxis[1], S.partAxis[2]},
                  S.thickness,
                  S.equivalent,
                  smin * flowStress(CURVE, S.equivalent).sigma};
  }
  return TORNWALZEN_OK;
}

}  // extern "C"
