// What a host may choose beside the fixed interface, for all runs until it chooses otherwise. The initial
// values leave every bit of the fixed interface's results as it is.
#pragma once

#include "ground/array_view.hpp"

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
};

extern RunOptions options;

constexpr double strainRegulariser = 1e-10;  // keeps ε̄ and its derivatives finite without strain

/// Weights of the equivalent strain of a sheet with normal anisotropy r under plane stress,
///   ε̄² = (1+r)²/(1+2r)·(e1² + e2² + 2r/(1+r)·e1·e2)
/// (R. Hill, Proc. R. Soc. A 193, 1948), in s = e1 + e2 and t = e1 - e2:
///   S = sumWeight·s² + differenceWeight·t² + 1e-10,   ε̄ = strainFactor·√S.
struct StrainWeights {
  double sumWeight, differenceWeight;  // ¾ and ¼ for r = 1
  double strainFactor;                 // 2/√3 for r = 1
  double rateFactor;                   // strainFactor/2, of dε̄/dS = rateFactor/√S

  /// r: in, > 0. With r = 1 all four are exact or, as the factors, the single-precision values widened.
  explicit StrainWeights(double r);
};

}  // namespace tornwalzen
