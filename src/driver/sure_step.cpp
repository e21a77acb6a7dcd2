// Curved and straight steps with their searches.
#include "driver/sure_step.hpp"

#include <algorithm>
#include <cmath>

#include "ground/run_record.hpp"

namespace tornwalzen {

namespace {

constexpr double turnLimit = 0.05;  // radians: below it straight and curved are the same
constexpr Int curvedHalvings = 4;
constexpr Int straightHalvings = 30;
constexpr double inversionShare = 0.9;  // of the step to the first inversion
constexpr double armijo = 1e-4;         // of the foretold decrease
constexpr double energyDigits = 1e-11;  // of the energy: a decrease below it is rounding
constexpr double surplus = 0.75;        // of the foretold decrease, half of which a quadratic gives
constexpr double thinAlways = 0.3;      // a guarded step may thin a triangle out to this singular value,
constexpr double thinShare = 0.6;       // or to this share of the smallest that there is
constexpr double longestStep = 4.0;
constexpr double longestTurn = 1.5;  // radians

struct Search {
  const SureProblem& problem;
  SureValue before;
  double descent;
  double least;  // singular value that a guarded step must leave

  void keep() const {
    for (Int64 i = 1; i <= problem.RX.length(); ++i) problem.TRIAL(i) = problem.RX(i);
  }
  void putBack() const {
    for (Int64 i = 1; i <= problem.RX.length(); ++i) problem.RX(i) = problem.TRIAL(i);
  }
  void straightTo(double t) const {
    for (Int64 i = 1; i <= problem.RX.length(); ++i) problem.RX(i) = problem.TRIAL(i) + t * problem.RB(i);
  }
  void curvedTo(double t) const {
    turnedLoads(problem.mesh, problem.TRIAL, problem.RB, t, problem.LOADS);
    problem.joiner.join(problem.LOADS, problem.LOADS);
    for (Int64 i = 1; i <= problem.RX.length(); ++i) problem.RX(i) = problem.TRIAL(i) + problem.LOADS(i);
  }
  void moveTo(bool curved, double t) const { curved ? curvedTo(t) : straightTo(t); }

  /// Does RX, at t, keep what was foretold? Where the decrease drowns in the energy's digits the gradient judges.
  bool better(double t, SureValue& now) const {
    ++problem.counts.trials;
    if (problem.guarded && blankShape(problem.mesh, problem.RX).smallest < least) return false;
    now = evaluateBlank(problem);
    if (t * descent < energyDigits * before.energy) return now.gradient <= before.gradient;
    return now.energy <= before.energy - armijo * t * descent;
  }

  /// From the accepted t on, doubled while each time more comes of it than was foretold.
  void lengthen(bool curved, double longest, double& t, SureValue& value) const {
    while (before.energy - value.energy > surplus * t * descent && 2.0 * t <= longest) {
      SureValue further;
      moveTo(curved, 2.0 * t);
      if (!better(2.0 * t, further) || !(further.energy < value.energy)) {
        moveTo(curved, t);
        value = evaluateBlank(problem);
        return;
      }
      t *= 2.0;
      value = further;
    }
  }
};

}  // namespace

StepTaken takeStep(const SureProblem& problem, const SureValue& before, double descent, bool soft) {
  const ProcessorTime time(problem.counts.search);
  const double least =
      problem.guarded ? std::min(thinAlways, thinShare * blankShape(problem.mesh, problem.RX).smallest) : 0.0;
  const Search search{problem, before, descent, least};
  const double turn = largestTurn(problem.mesh, problem.RX, problem.RB);
  search.keep();
  SureValue value = before;
  if (turn > turnLimit) {
    double t = std::min(1.0, 1.0 / turn);
    for (Int halving = 0; halving <= curvedHalvings; ++halving, t *= 0.5) {
      search.moveTo(true, t);
      if (!search.better(t, value)) continue;
      if (soft && t >= 1.0) search.lengthen(true, std::min(longestStep, longestTurn / turn), t, value);
      return {true, true, t, value};
    }
    search.putBack();
  }
  const double toInversion = inversionShare * stepToInversion(problem.mesh, problem.RX, problem.RB);
  double t = std::min(1.0, toInversion);
  for (Int halving = 0; halving <= straightHalvings; ++halving, t *= 0.5) {
    search.moveTo(false, t);
    if (!search.better(t, value)) continue;
    if (soft && t >= 1.0) search.lengthen(false, std::min(longestStep, toInversion), t, value);
    return {true, false, t, value};
  }
  search.putBack();
  return {false, false, 0.0, evaluateBlank(problem)};
}

}  // namespace tornwalzen
