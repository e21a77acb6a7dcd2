// Step lengths of the load increments.
#include "driver/load_path.hpp"

#include <algorithm>

namespace tornwalzen {

namespace {
constexpr double initialStep = 0.004999999888241291;  // 0.005, held in single precision and widened
constexpr double growthFactor = 1.5;
constexpr double stepCeiling = 0.1;
constexpr double shrinkDivisor = 1.5;
constexpr double stepFloor = 0.005;
constexpr double abortStep = 1e-5;
constexpr double repeatFactor = 0.5;
constexpr Int easyIncrement = 2;  // at most so many Newton iterations
constexpr Int hardIncrement = 7;  // at least so many
constexpr double toleranceNumerator = 0.1;
constexpr double intermediateFactor = 10.0;
}  // namespace

double nextStep(double dlam, Int m) {
  if (m <= easyIncrement) return std::min(dlam * growthFactor, stepCeiling);
  if (m >= hardIncrement) return std::max(dlam / shrinkDivisor, stepFloor);
  return dlam;
}

double gradientLimit(double tol, double lambda) {
  return lambda == lambdaEnd ? tol : intermediateFactor * tol;
}

double toleranceFactor(Analysis& run, double lambda) {
  return lambda == lambdaEnd ? run.options.finalTolerance : run.options.pathTolerance;
}

double gradientTolerance(Int istat) {
  return toleranceNumerator / (10.0 - 9.0 * istat);
}

LoadPath::LoadPath() : dlam(initialStep), dlamPrev(initialStep), dlamRule(0.0) {}

void LoadPath::adjustStep(bool& exhausted) {
  dlamPrev = dlam;
  dlam = nextStep(dlam, m);
  // A shrunk step stops at the floor; from the same state it would fail in the same way for ever.
  exhausted = dlam <= abortStep || (restored && dlam == dlamRule);
  dlamRule = dlam;
}

void LoadPath::advance() {
  k += 1;
  m = 0;
  restored = false;
  if (lambdaEnd - lambda <= dlam) dlam = lambdaEnd - lambda;
  lambda += dlam;
}

void LoadPath::stepBack() {
  k -= 1;
  lambda -= dlam;
  dlam = repeatFactor * dlamPrev;
  restored = true;
}

}  // namespace tornwalzen
