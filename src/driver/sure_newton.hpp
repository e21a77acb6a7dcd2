// Newton's method at the full part, on tangents whose negative eigenvalues are softened as long as they must be.
#pragma once

#include "driver/sure_problem.hpp"

namespace tornwalzen {

enum class SureEnd {
  minimum,     // gradient met, exact tangent positive definite
  stationary,  // gradient met, but the exact tangent is not positive definite
  tooLong,     // out of factorizations
  noDescent,   // no step lowers the energy
  noFactor,    // a softened tangent without a factor
  tooThin,     // the energy over the blank lets a triangle vanish
  stopped,     // the host asked for the end
  notFinite    // energy or gradient is not a number
};

struct NewtonLimits {
  double gradient;      // largest free component that may be left (mm)
  bool certify;         // go on until an exact positive definite tangent proves a minimum?
  double leastStretch;  // singular value below which the blank is given up; 0: never
  Int factorizations;   // of the tangent at most, those already counted included
};

struct NewtonOutcome {
  SureEnd end;
  SureValue value;  // at the blank found
  double smallest;  // singular value
  Int inverted;     // triangles turned over
};

/// Minimises the potential from problem.RX on. problem.s0: inout, lowered until it lies below every singular value, so
/// that the potential is the true one at the end. Reports every iteration.
NewtonOutcome minimise(SureProblem& problem, const NewtonLimits& limits);

}  // namespace tornwalzen
