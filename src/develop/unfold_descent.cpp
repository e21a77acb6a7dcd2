// Steepest descent with halving: the direction is scaled so that its largest free component is 1 mm, and the
// step length is the last power of ½ that still lowered the objective.
#include "develop/unfold_descent.hpp"

#include <algorithm>

#include "develop/unfold_geometry.hpp"
#include "develop/unfold_report.hpp"
#include "ground/progress.hpp"

namespace tornwalzen {

namespace {

constexpr double forceLimit = 1.0000000116860974e-07;  // 1e-7, held in single precision and widened (1/mm)
constexpr double halving = 0.5;
constexpr double smallestFactor = 0.001;
constexpr Int iterationLimit = 5000;
constexpr Int leastIterations = 20;
constexpr Int lineInterval = 10;
constexpr Int advanceInterval = 100;

void setDirection(Analysis& run, const DriverArrays& a) {
  for (Int i = 1; i <= run.neq; ++i) a.RB(i) = a.ARFA(i) == 1 ? a.RR(i) / run.maxgrad : 0.0;
}

void moveForward(Analysis& run, const DriverArrays& a, double f) {
  for (Int i = 1; i <= run.neq; ++i) a.RX(i) = a.RX(i) + f * a.RB(i);
}

void moveBack(Analysis& run, const DriverArrays& a, double f) {
  for (Int i = 1; i <= run.neq; ++i) a.RX(i) = a.RX(i) - f * a.RB(i);
}

/// Leaves a.RX at the accepted point. step: out, the accepted step length (mm), a power of ½ down to 2⁻⁹.
void halvingSearch(Analysis& run, const DriverArrays& a, const VisitedElements& visited, double& step) {
  Int degenerate;
  double Ep, En;
  moveForward(run, a, 1.0);
  unfoldObjective(run, a, visited, degenerate, Ep);
  double f = halving;
  for (;;) {
    moveBack(run, a, f);  // from the step length 2f to f
    unfoldObjective(run, a, visited, degenerate, En);
    if (Ep <= En || f <= smallestFactor) break;
    f *= halving;
    Ep = En;
  }
  moveForward(run, a,
              f);  // one halving back, also where the search ended on the smallest factor while improving
  step = 2.0 * f;
}

}  // namespace

bool unfoldConverged(double qmax, Int degenerate, Int iteration) {
  return !(qmax > targetMeasure) && degenerate < 1 && iteration >= leastIterations;
}

namespace {

/// How far the worst measure so far has come from that of the projection to the target, 0..1.
double developedFraction(const DescentState& state) {
  const double range = state.qmaxAtStart - targetMeasure;
  if (!(range > 0.0)) return 1.0;
  return std::clamp((state.qmaxAtStart - state.qmin) / range, 0.0, 1.0);
}

void keepForTheReport(Analysis& run, const DescentState& state) {
  run.record.unfoldIterations = state.iteration;
  run.record.invertedElements = state.degenerate;
  run.record.largestMeasure = run.qmax;
}

}  // namespace

void unfoldDescent(Analysis& run, const DriverArrays& a, VisitedElements& visited) {
  DescentState state{};
  unfoldObjective(run, a, visited, state.degenerate, state.EN);
  state.qmaxAtStart = state.qmin = run.qmax;
  keepForTheReport(run, state);
  reportFraction(run.progress, run.qmax);

  for (Int k = 1; k <= iterationLimit; ++k) {
    unfoldForces(run, a, visited);
    if (run.maxgrad < forceLimit) return;
    setDirection(run, a);
    visited.select(a);
    halvingSearch(run, a, visited, state.step);
    unfoldObjective(run, a, visited, state.degenerate, state.EN);
    state.iteration = k;
    state.qmax = run.qmax;
    keepForTheReport(run, state);
    if (!hostContinues(run.progress, {RunPhase::development, developedFraction(state), 0, k})) return;
    if (state.qmax <= state.qmin) state.qmin = state.qmax;
    if (k % lineInterval == 1) {
      reportIteration(run, state);
      reportFraction(run.progress, state.qmin);
    }
    if (k % advanceInterval == 1) reportAdvance(run, state);
    if (unfoldConverged(state.qmax, state.degenerate, k)) {
      reportIteration(run, state);
      return;
    }
    state.EN1 = state.EN;
  }
  run.ierrel = errorSet;
  reportNoConvergence(run, state.degenerate, iterationLimit + 1);
}

}  // namespace tornwalzen
