// What a host may choose beside the fixed interface, for all runs until it chooses otherwise. The initial
// values leave every bit of the fixed interface's results as it is.
#pragma once

#include "ground/press_options.hpp"

namespace tornwalzen {

constexpr Int curveSelectors = 3;  // flow curves 0, 1, 2 can be replaced
constexpr Int leastCurvePoints = 3;
constexpr Int mostCurvePoints = 49;     // one row of the table is the far point's
constexpr double farCurveStrain = 5.0;  // extrapolation point that keeps very large strains inside the table

/// Points that stand in for a built-in flow curve; none: the built-in one.
struct HostCurve {
  Int points = 0;
  double strain[mostCurvePoints] =
      {};  // plastic strain, dimensionless, from 0, increasing, below the far strain
  double stress[mostCurvePoints] = {};  // flow stress, MPa, positive
};

struct RunOptions {
  HostCurve curves[curveSelectors];
  double anisotropy = 1.0;      // mean normal anisotropy r (dimensionless); 1: isotropic
  bool partReference = false;   // weigh the density with the target triangle's area instead of the blank's
  double finalTolerance = 1.0;  // factor of the gradient tolerance of the final increment
  double pathTolerance = 1.0;   // factor of the gradient tolerance of the increments before it
  PressOptions press;           // the press model, and what it knows of sheet and tools
  bool surePath = false;        // straight to the equilibrium instead of load increments
  bool goesSurePath() const { return surePath || press.chosen; }
  bool patchStart = false;  // the sure path starts from the largest flat patch alone
};

}  // namespace tornwalzen
