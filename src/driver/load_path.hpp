// The path of load increments from the flat blank (lambda = 0) to the part (lambda = 1): how long each step
// is, and when the path is given up. Dimensionless throughout.
#pragma once

#include "ground/analysis.hpp"

namespace tornwalzen {

constexpr double lambdaEnd = 1.0;
constexpr Int newtonLimit = 8;  // Newton iterations of an increment
constexpr Int newtonLeast = 2;  // Newton iterations before convergence may be declared

/// Step after an increment that needed m Newton iterations: easy ones lengthen it by half, up to 0.1; hard
/// ones shorten it by a third, down to 0.005. dlam: in, step so far, > 0; m: in, ≥ 0.
double nextStep(double dlam, Int m);

/// Largest residual component that an increment may keep: `tol` at the end of the path, ten times that
/// before.
double gradientLimit(double tol, double lambda);

/// What the host multiplies that limit with: one factor at the end of the path, another before; both 1 if it
/// chose none.
double toleranceFactor(Analysis& run, double lambda);

/// `tol` of a run: 0.1 where istat = 1, 0.01 where istat = 0.
double gradientTolerance(Int istat);

struct LoadPath {
  double lambda = 0.0;    // progress
  double dlam;            // current step
  double dlamPrev;        // step before this increment's adjustment
  double dlamRule;        // current step before it was cut to what is left of the path
  Int k = 0;              // increment
  Int m = 0;              // Newton iterations of the current increment, of the last one until it begins
  bool restored = false;  // does the increment start from the state that the last attempt started from?

  LoadPath();

  /// Adjusts the step by the last increment's m. exhausted: out, true if the step has become too small, or if
  /// a repeated increment would be the very same attempt again.
  void adjustStep(bool& exhausted);

  /// Takes the step; at the end of the path only what is left.
  void advance();

  /// Takes the step back after a failed attempt and halves the one before it.
  void stepBack();

  bool atEnd() const { return lambda >= lambdaEnd; }
};

}  // namespace tornwalzen
