// The report of the last run, and strains per element.
#include "interface/results.hpp"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "element/element_strains.hpp"
#include "material/material_setup.hpp"

namespace tornwalzen {

namespace {

// Bytes of the report's first version, which ended with the fatal text.
constexpr Int firstReportSize = offsetof(TornwalzenReport, fatal_text) + fatalTextLength;

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
  r.path = record.path;
  r.flat_patch_start = record.flatPatchStart ? 1 : 0;
  r.solves = record.solves;
  r.laplace_factorizations = record.laplaceFactorizations;
  r.hinged_elements = record.hingedElements;
  r.start_inverted = record.startInverted;
  r.blank_inverted = record.turnedElements;
  r.minimum_certified = record.minimumCertified ? 1 : 0;
  r.smallest_stretch = record.smallestSingular;
  r.energy = record.energy;
  const BlankFigures& blank = record.blank;
  r.refusal = record.refusal;
  r.checked = record.checked ? 1 : 0;
  r.topology = blank.topology;
  r.not_finite = blank.notFinite;
  r.first_not_finite = blank.firstNotFinite;
  r.first_inverted = blank.firstInverted;
  r.smallest_stretch_triangle = blank.smallestStretchTriangle;
  r.sheet_checked = blank.sheetChecked ? 1 : 0;
  r.open_nodes = blank.openNodes;
  r.first_open_node = blank.firstOpenNode;
  r.crossings = blank.crossings;
  r.crossings_complete = blank.crossingsComplete ? 1 : 0;
  r.crossing_u = blank.crossingPlace[0];
  r.crossing_v = blank.crossingPlace[1];
  r.misplaced_loops = blank.misplacedLoops;
  r.first_misplaced_node = blank.firstMisplacedNode;
  r.overlapped_area = blank.overlappedArea;
  r.part_area = blank.partArea;
  r.blank_area = blank.blankArea;
  r.undercut_area = blank.undercutArea;
  r.undercut_share = blank.undercutShare;
  r.share_beyond_curve = blank.shareBeyondCurve;
  r.share_beyond_one = blank.shareBeyondOne;
  r.first_beyond_curve = blank.firstBeyondCurve;
  r.first_beyond_one = blank.firstBeyondOne;
  r.time_checks = record.checks;
  r.threads = threadsOf(run);
  r.thread_bytes = record.threadBytes;
  if (record.checked) {
    r.blank_inverted = blank.inverted;
    r.smallest_stretch = blank.smallestStretch;
  }
  return r;
}

}  // namespace

Int fillReport(Analysis& run, TornwalzenReport* report) {
  if (report == nullptr) return refuse(run.refusal, TORNWALZEN_NULL_POINTER, 1, 0.0);
  if (report->size < firstReportSize) return refuse(run.refusal, TORNWALZEN_SHORT_REPORT, 0, report->size);
  TornwalzenReport whole = currentReport(run);
  whole.size = std::min(report->size, whole.size);  // a host of an earlier header gets what it knows
  std::memcpy(report, &whole, static_cast<std::size_t>(whole.size));
  return TORNWALZEN_OK;
}

bool LoadedCurve::load(const RunOptions& options, Int selector) {
  return loadFlowCurve(options, selector, {"FC", table, curveRows, curveColumns}, npkt, smin);
}

FlowCurve LoadedCurve::curve(double r) {
  return FlowCurve({"FC", table, curveRows, curveColumns}, npkt, r);
}

TornwalzenElementStrain elementStrain(const double (&X)[9], const double (&U)[6], const FlowCurve& CURVE,
                                      double smin) {
  const PrincipalStrains S = triangleStrains(X, U, CURVE.weights);
  return {S.e1,
          S.e2,
          {S.blankAxis[0], S.blankAxis[1]},
          {S.partAxis[0], S.partAxis[1], S.partAxis[2]},
          S.thickness,
          S.equivalent,
          smin * flowStress(CURVE, S.equivalent).sigma};
}

}  // namespace tornwalzen
