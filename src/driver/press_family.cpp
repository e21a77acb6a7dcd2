// Down the family of sheet_work.hpp, from its softest member to the work itself.
//
// A member has a blank of its own as long as its tangent there is positive definite. A deformation theory loses that where
// it is strained beyond what its hardening bears: in tension the sheet necks, in shear it slips in bands (S. Stören,
// J. R. Rice, Localized necking in thin sheets, 1975). From there on more triangles give another answer, so the way ends.
#include <algorithm>
#include <cmath>

#include "driver/press_path.hpp"
#include "driver/press_report.hpp"

namespace tornwalzen {

namespace {

constexpr double leastStretch = 0.05;    // as long as the blank has no barrier
constexpr Int firstFactorizations = 12;  // for the first member
constexpr double exponents[] = {2.0, 1.7, 1.4, 1.2, 1.1, 1.05, 1.0};
constexpr double leastWay = 0.01;      // between two exponents
constexpr Int mostBackSteps = 4;       // from an exponent that holds loosely alone, each twice the one before
constexpr double thinnestGuess = 0.7;  // of the singular value that was

/// As the reports write it.
double fourDigits(double exponent) {
  return std::round(1e4 * exponent) / 1e4;
}

double exponentAfter(double exponent) {
  for (const double next : exponents)
    if (next < exponent) return next;
  return 1.0;
}

}  // namespace

/// One member of the family: the first, far from its blank, by minimisation without loads; then by steps that follow them.
NewtonOutcome PressPath::member(SureProblem& problem, double exponent, double limit) {
  work_.choose(exponent);
  NewtonOutcome found{SureEnd::minimum, {}, 0.0, 0};
  if (exponent == exponents[0])
    found = minimise(
        problem, {looseGradient, false, leastStretch, problem.counts.factorizations + firstFactorizations});
  if (holds(found)) found = balance(problem, limit, true);
  reportPressWork(run_, exponent, holds(found), found.value.gradient, found.smallest);
  return found;
}

/// RX: out, on the line through the blanks of the exponents before and held, where the residual of `to` is smaller there.
void PressPath::guess(SureProblem& problem, double before, double held, double to) {
  if (before == 0.0) return;
  work_.choose(to);
  const double share = (held - to) / (before - held);
  const double thin = blankShape(problem.mesh, problem.RX).smallest;
  const auto residual = [&] {
    if (loads_) freezeLoads(problem);
    return evaluateBlank(problem).gradient;
  };
  const double here = residual();
  for (Int64 i = 1; i <= problem.RX.length(); ++i)
    problem.RX(i) += share * (problem.RX(i) - past_.vector()(i));
  if (blankShape(problem.mesh, problem.RX).smallest > thinnestGuess * thin && residual() < here) return;
  putBack(problem, kept_);
}

/// Each member loosely, from the ones before; one that fails is met half way from the last that held, as long as that is
/// a way. The last one is then met in full.
NewtonOutcome PressPath::downTheFamily(SureProblem& problem, double limit) {
  NewtonOutcome found = member(problem, exponents[0], looseGradient);
  if (!holds(found)) return found;
  double before = 0.0, held = exponents[0], failed = 0.0;
  while (held > 1.0) {
    const double to = std::max(exponentAfter(held), fourDigits(0.5 * (held + failed)));
    if (held - to < leastWay) break;
    keep(problem, kept_);
    guess(problem, before, held, to);
    found = member(problem, to, looseGradient);
    if (found.end == SureEnd::stopped) return found;
    if (stands(found)) {
      std::copy_n(kept_.blank.data(), problem.RX.length(), past_.data());
      before = held;
      held = to;
    } else {
      putBack(problem, kept_);
      failed = to;
    }
  }
  return inFull(problem, held, limit);
}

/// What holds loosely may not hold in full: then a little less is asked for.
NewtonOutcome PressPath::inFull(SureProblem& problem, double exponent, double limit) {
  NewtonOutcome found{};
  double way = leastWay;
  for (Int back = 0; back <= mostBackSteps; ++back, exponent = fourDigits(exponent + way), way *= 2.0) {
    keep(problem, kept_);
    found = member(problem, exponent, limit);
    if (stands(found) || found.end == SureEnd::stopped) break;
    putBack(problem, kept_);
  }
  if (stands(found)) {
    told(exponent);
    reportPressExponent(run_, exponent);
  } else if (holds(found)) {
    found.end = SureEnd::noDescent;
  }
  return found;
}

}  // namespace tornwalzen
