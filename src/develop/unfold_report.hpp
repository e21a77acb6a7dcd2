// What the unfolding tells: lines on the message channel, fractions and information lines on the progress
// channel.
#pragma once

#include "ground/analysis.hpp"

namespace tornwalzen {

constexpr double targetMeasure = 0.8;  // qmax that counts as developed; end of the progress scale

/// State of the descent after an iteration, as the lines show it.
struct DescentState {
  Int iteration;       // k
  Int degenerate;      // elements with planar area ≤ 0
  double EN, EN1;      // objective of this iteration and of the one before (dimensionless)
  double step;         // accepted step length (mm at the node that moves farthest)
  double qmax;         // worst measure (dimensionless)
  double qmin;         // smallest qmax so far
  double qmaxAtStart;  // qmax of the projection
};

/// Message: the number of triangles with an angle below 10 degrees.
void reportSharpElements(Analysis& run, Int sharp);

/// Message: one line of the descent.
void reportIteration(Analysis& run, const DescentState& state);

/// Information line with the percentage done, and the processor time.
void reportAdvance(Analysis& run, const DescentState& state);

/// Information line: the descent was given up at `iteration` with so many degenerate elements.
void reportNoConvergence(Analysis& run, Int degenerate, Int iteration);

}  // namespace tornwalzen
