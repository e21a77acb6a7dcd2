// Projected, softened and exact Newton steps, chord steps with an old factor, and the proof of a minimum.
#include "driver/sure_newton.hpp"

#include <algorithm>
#include <cmath>

#include "driver/sure_report.hpp"
#include "driver/sure_step.hpp"
#include "element/map_joining.hpp"
#include "ground/progress.hpp"

namespace tornwalzen {

namespace {

constexpr double quadraticDecrease = 5e-2;  // of the energy: below it a full step asks for the exact tangent
constexpr double patience = 0.3;            // what each failure of an exact tangent multiplies that with
constexpr double exactStep = 0.25;          // an exact step this long is followed by another
constexpr Int failuresBeforeSoft = 3;
constexpr double softStart = 0.2, softLeast = 0.02, softMost = 0.9;
constexpr Int chordSteps = 8;              // a step costs a sixth of a factorization
constexpr Int chordStepsFar = 3;           // where another exact tangent is needed all the same
constexpr double chordGain = 1.5;          // what a chord step must divide the gradient by
constexpr double certifiedStretch = 0.03;  // by so much a stretch may differ from that of the exact tangent
constexpr double settledStep = 1e-3;       // mm
constexpr double finestStep = 1e-7;        // of the part's size: what a settled blank may still move
constexpr Int settlings = 3;               // exact steps for soft modes at most
constexpr Int64 leastUnknowns = 16384;     // of a range
constexpr double thresholdFloor = 1e-8;    // of s0: no sheet is thinned out so far

void addLoads(const SureProblem& problem) {
  for (Int64 i = 1; i <= problem.LOAD.length(); ++i) problem.RR(i) += problem.LOAD(i);
}

class Newton {
 public:
  Newton(SureProblem& problem, const NewtonLimits& limits) : problem_(problem), limits_(limits) {}

  NewtonOutcome run() {
    value_ = evaluateBlank(problem_);
    look();
    for (;;) {
      if (!std::isfinite(value_.energy) || !std::isfinite(value_.gradient)) return end(SureEnd::notFinite);
      if (shape_.smallest < limits_.leastStretch) return end(SureEnd::tooThin);
      if (value_.gradient <= limits_.gradient) {
        if (lowerThreshold()) continue;
        if (!limits_.certify) return end(SureEnd::minimum);
        if (certified() && settle()) {
          if (lowerThreshold()) continue;
          return end(SureEnd::minimum);
        }
        if (settlings_ >= settlings) return end(certified() ? SureEnd::minimum : SureEnd::stationary);
        ++settlings_;
        if (!indefiniteHere_) theta_ = 0.0;
      }
      if (problem_.counts.factorizations >= limits_.factorizations) return end(SureEnd::tooLong);
      const bool exact = theta_ == 0.0;
      if (!factorize()) {
        if (noFactor_) return end(SureEnd::noFactor);
        continue;
      }
      if (exact && value_.gradient <= limits_.gradient && settle()) {
        if (lowerThreshold()) continue;
        return end(SureEnd::minimum);
      }
      solve();
      if (!step(exact)) return end(SureEnd::noDescent);
      if (exact && lastLength_ >= 1.0) chord();
      if (!reportSureStep(problem_.run, problem_.counts.iterations, value_.gradient))
        return end(SureEnd::stopped);
    }
  }

 private:
  NewtonOutcome end(SureEnd how) const { return {how, value_, shape_.smallest, shape_.inverted}; }

  void look() { shape_ = blankShape(problem_.mesh, problem_.RX); }

  /// A blank in equilibrium with the extended potential alone: the threshold goes down.
  bool lowerThreshold() {
    if (shape_.smallest >= problem_.s0 || problem_.s0 <= thresholdFloor) return false;
    problem_.s0 = std::max(problem_.s0 / 64.0, std::min(problem_.s0 / 4.0, 0.5 * shape_.smallest));
    exactStands_ = false;
    settlings_ = 0;
    theta_ = 1.0;
    value_ = evaluateBlank(problem_);
    reportSureThreshold(problem_.run, problem_.s0);
    return true;
  }

  /// Tangent with theta_ and its factor. False: not to be used, theta_ says what to try next.
  bool factorize() {
    {
      const ProcessorTime time(problem_.counts.assembly);
      potentialTangent(problem_.mesh, problem_.RX, problem_.potential(theta_), problem_.tangent.COLS(),
                       problem_.tangent.ROWI(), problem_.RR, problem_.tangent.SYSM());
      problem_.tangent.hold(problem_.FREE);
      addLoads(problem_);
      for (Int64 i = 1; i <= problem_.RR.length(); ++i)
        if (problem_.FREE(i) == 0) problem_.RR(i) = 0.0;
    }
    const ProcessorTime time(problem_.counts.factorization);
    ++problem_.counts.factorizations;
    problem_.memory.forget();
    const bool factored = problem_.tangent.factorize();
    const bool definite = factored && problem_.tangent.negativePivots() == 0;
    exactStands_ = definite && theta_ == 0.0;
    if (exactStands_)
      for (Int64 i = 1; i <= problem_.RX.length(); ++i) problem_.FACTORED(i) = problem_.RX(i);
    if (definite) return true;
    if (theta_ == 0.0) {
      ++failures_;
      indefiniteHere_ = true;
      theta_ = softTheta();
    } else if (theta_ < softMost) {
      soft_ = std::min(softMost, 2.0 * soft_);
      theta_ = soft_;
    } else if (theta_ < 1.0) {
      theta_ = 1.0;
    } else {
      noFactor_ = !factored;
      return factored;  // softened to the full: what is negative is rounding
    }
    return false;
  }

  /// Is the exact tangent that proved positive definite that of the blank as it is?
  bool certified() const {
    return exactStands_ && stretchesWithin(problem_.mesh, problem_.FACTORED, problem_.RX, certifiedStretch);
  }

  double softTheta() const { return failures_ >= failuresBeforeSoft ? soft_ : 1.0; }

  void solve() {
    const ProcessorTime time(problem_.counts.solve);
    ++problem_.counts.solves;
    problem_.tangent.solve(problem_.RR, problem_.RB);
  }

  double largestMove() const {
    double largest = 0.0;
    for (Int64 i = 1; i <= problem_.RB.length(); ++i) largest = std::max(largest, std::fabs(problem_.RB(i)));
    return largest;
  }

  /// Takes the step RB; chooses the tangent of the next.
  bool step(bool exact) {
    ++problem_.counts.iterations;
    indefiniteHere_ = false;
    const double descent = descentAlong(problem_), before = value_.energy;
    if (value_.gradient == 0.0) {
      lastLength_ = 1.0;
      return true;
    }
    StepTaken taken{false, false, 0.0, value_};
    if (exact) problem_.memory.begin(problem_.RX, problem_.RR);
    if (descent > 0.0) taken = takeStep(problem_, value_, descent, !exact);
    if (exact && taken.accepted) problem_.memory.end(problem_.RX, problem_.RR);
    value_ = taken.value;
    if (!taken.accepted && exact) {  // an exact direction that leads nowhere: as if it had not been definite
      ++failures_;
      theta_ = softTheta();
      exactStands_ = false;
      lastLength_ = 0.0;
      return true;
    }
    if (!taken.accepted) return value_.gradient <= limits_.gradient;
    const double softened = theta_;
    look();
    lastLength_ = taken.length;
    reportSureIteration(problem_.run, problem_.counts.iterations, softened, taken.curved, taken.length,
                        value_.gradient, shape_.smallest, value_.energy);
    const bool settling = taken.length >= 1.0 &&
                          before - value_.energy < quadraticDecrease * std::pow(patience, failures_) * before;
    if (softened > 0.0 && softened < 1.0) soft_ = std::max(softLeast, 0.5 * soft_);
    theta_ = settling || (exact && taken.length >= exactStep) ? 0.0 : softTheta();
    return true;
  }

  /// One step with the factor that stands, taken if the gradient falls below `most`. move: out, its size (mm).
  bool chordStep(double most, double& move) {
    problem_.memory.begin(problem_.RX, problem_.RR);
    problem_.memory.before(problem_.RR);
    solve();
    problem_.memory.after(problem_.RB);
    move = largestMove();
    for (Int64 i = 1; i <= problem_.RX.length(); ++i) problem_.RX(i) += problem_.RB(i);
    const SureValue now = evaluateBlank(problem_);
    if (now.gradient <= most) {
      problem_.memory.end(problem_.RX, problem_.RR);
      value_ = now;
      look();
      return true;
    }
    problem_.memory.putBack(problem_.RX, problem_.RR);
    return false;
  }

  /// Steps with the old factor while they pay.
  void chord() {
    double move;
    const Int most = !limits_.certify || certified() ? chordSteps : chordStepsFar;
    for (Int k = 0; k < most && value_.gradient > limits_.gradient; ++k) {
      if (!chordStep(value_.gradient / chordGain, move)) return;
      reportSureChord(problem_.run, value_.gradient, shape_.smallest, value_.energy);
    }
  }

  /// At a gradient that is small enough: soft modes may still have a way to go. True: they have not, or had it. Goes on
  /// while the blank still moves by more than rounding, so that what is symmetric comes out symmetric.
  bool settle() {
    const double finest = finestStep * std::sqrt(problem_.run.atot);
    double move = INFINITY;
    for (Int k = 0; k < chordSteps && move > finest; ++k)
      if (!chordStep(limits_.gradient, move)) break;
    return move <= settledStep;
  }

  SureProblem& problem_;
  const NewtonLimits& limits_;
  SureValue value_{};
  BlankShape shape_{};
  double theta_ = 1.0, soft_ = softStart, lastLength_ = 0.0;
  Int failures_ = 0, settlings_ = 0;
  bool exactStands_ = false, indefiniteHere_ = false, noFactor_ = false;
};

}  // namespace

double loadWork(const SureProblem& problem) {
  return sumInParts(problem.mesh.pool, problem.LOAD.length(),
                    [&](Int64 i) { return problem.LOAD(i) * (problem.RX(i) - problem.ORIGIN(i)); });
}

SureValue evaluateBlank(const SureProblem& problem) {
  SureValue value{potentialResidual(problem.mesh, problem.RX, problem.potential(0.0), problem.RR), 0.0};
  value.energy -= loadWork(problem);
  addLoads(problem);
  const auto ofRange = [&](Int64 first, Int64 last) {
    double largest = 0.0;
    for (Int64 i = first; i <= last; ++i) {
      if (problem.FREE(i) == 0) problem.RR(i) = 0.0;
      const double size = std::fabs(problem.RR(i));
      if (size > largest || std::isnan(size)) largest = size;
    }
    return largest;
  };
  mergeRanges(problem.mesh.pool, problem.RR.length(), leastUnknowns, ofRange, [&](double largest) {
    if (largest > value.gradient || std::isnan(largest)) value.gradient = largest;
  });
  return value;
}

double descentAlong(const SureProblem& problem) {
  return sumInParts(problem.mesh.pool, problem.RR.length(),
                    [&](Int64 i) { return problem.RR(i) * problem.RB(i); });
}

NewtonOutcome minimise(SureProblem& problem, const NewtonLimits& limits) {
  return Newton(problem, limits).run();
}

}  // namespace tornwalzen
