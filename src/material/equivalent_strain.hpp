// Weights of the equivalent strain of a sheet with normal anisotropy r under plane stress,
//   ε̄² = (1+r)²/(1+2r)·(e1² + e2² + 2r/(1+r)·e1·e2)
// (R. Hill, Proc. R. Soc. A 193, 1948), in s = e1 + e2 and t = e1 - e2:
//   S = sumWeight·s² + differenceWeight·t² + 1e-10,   ε̄ = strainFactor·√S.
#pragma once

namespace tornwalzen {

constexpr double strainRegulariser = 1e-10;  // keeps ε̄ and its derivatives finite without strain

struct StrainWeights {
  double sumWeight, differenceWeight;  // ¾ and ¼ for r = 1
  double strainFactor;                 // 2/√3 for r = 1
  double rateFactor;                   // strainFactor/2, of dε̄/dS = rateFactor/√S

  /// r: in, > 0. With r = 1 all four are exact or, as the factors, the single-precision values widened.
  explicit StrainWeights(double r);
};

}  // namespace tornwalzen
