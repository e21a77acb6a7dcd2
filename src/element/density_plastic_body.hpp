// The equivalent strain without its eigenvalues, and the density of it: the formulas, for one element or for
// one element per lane of a vector.
//
// With the principal logarithmic strains e1, e2 of the metric C let s = e1 + e2 and t = e1 - e2. Then
//   e1² + e1·e2 + e2² = ¾·s² + ¼·t²,   s = ½·ln det C,   t = artanh(ρ),   ρ² = x = (d² + C12²)/m²
// (with normal anisotropy other weights of s² and t²),
// m = (C11 + C22)/2 and d = (C11 - C22)/2. The eigenvalues m ± mρ are not differentiable where they meet; but
// t² = artanh(√x)² is analytic in x at 0, so S is a smooth function of C and is differentiated as such.
//
// Whoever includes this file gives for his Real the operations of LaneMath<Real>: root(x), logarithm(x),
// offDiagonal(C12) (0 where |C12| ≤ diagonalLimit) and squaredDifference<order>(x, y).
#pragma once

#include "element/density.hpp"
#include "material/flow_curve.hpp"

namespace tornwalzen {

// Below this |C12| the metric counts as diagonal. Absolute, not relative to C11 and C22.
constexpr double diagonalLimit = 1e-8;
// Below this x (principal stretches less than 11 % apart) artanh(√x) comes from its power series.
constexpr double seriesLimit = 0.01;

/// f(x) = artanh(√x)² by way of g = artanh(√x)/√x = Σ xᵏ/(2k+1) and h = (1/(1-x) - g)/x = Σ (2k+2)/(2k+3)·xᵏ:
/// f = x·g², f' = g/(1-x), f'' = h/(2(1-x)) + g/(1-x)². The closed forms of g and h are 0/0 at x = 0; there
/// the series of h serves (nine terms: the tenth is below 1e-18) and g = 1/(1-x) - x·h, which loses no digit.
/// y = 1 - x comes separately, since x rounds to 1 for extreme stretches.
template <class Real>
struct SquaredDifference {
  Real g, h;
};

/// For x < seriesLimit.
template <class Real>
SquaredDifference<Real> seriesDifference(Real x, Real y) {
  Real h = Real{} + 18.0 / 19.0;
  for (int k = 7; k >= 0; --k) h = h * x + (2.0 * k + 2.0) / (2.0 * k + 3.0);
  return {1.0 / y - x * h, h};
}

/// For one element whose x is not below seriesLimit; h is 0 where no Hessian is wanted.
SquaredDifference<double> closedDifference(double x, double y, bool withHessian);

template <class Real>
struct LaneMath;

/// S = sumWeight·s² + differenceWeight·t² + 1e-10 as a function of the metric, derivatives into the members
/// of `S`.
template <Order order, class Real>
void squaredStrain(Real C11, Real C22, Real C12, const StrainWeights& weights, DensityOf<Real>& S) {
  const double sumWeight = weights.sumWeight, differenceWeight = weights.differenceWeight;
  const Real m = (C11 + C22) * 0.5, d = (C11 - C22) * 0.5, rr = d * d + C12 * C12;
  const Real det = C11 * C22 - C12 * C12;
  const Real mm = m * m, x = rr / mm, y = det / mm;
  const Real s = 0.5 * LaneMath<Real>::logarithm(det);
  const SquaredDifference<Real> t = LaneMath<Real>::template squaredDifference<order>(x, y);
  S.phi = sumWeight * (s * s) + differenceWeight * (x * (t.g * t.g)) + strainRegulariser;
  if constexpr (order == Order::value) return;

  const Real s1 = 0.5 * C22 / det, s2 = 0.5 * C11 / det, s3 = -C12 / det;
  const Real m3 = mm * m;
  const Real x1 = (d * m - rr) / m3, x2 = -(d * m + rr) / m3, x3 = 2.0 * C12 / mm;
  const Real fs = 2.0 * sumWeight * s, fx = differenceWeight * t.g / y;
  S.g1 = fs * s1 + fx * x1;
  S.g2 = fs * s2 + fx * x2;
  S.g3 = fs * s3 + fx * x3;
  if constexpr (order != Order::hessian) return;

  const double fss = 2.0 * sumWeight;
  const Real fxx = differenceWeight * (0.5 * t.h + t.g / y) / y;
  const Real bend = 1.5 * x, tilt = 2.0 * d / m, shear = -2.0 * C12 / m3;
  const Real s12 = 0.5 / det - 2.0 * s1 * s2, s33 = -1.0 / det - 2.0 * s3 * s3;
  const auto second = [&](Real sa, Real sb, Real sab, Real xa, Real xb, Real xab) {
    return fss * (sa * sb) + fs * sab + fxx * (xa * xb) + fx * xab;
  };
  S.h11 = second(s1, s1, -2.0 * s1 * s1, x1, x1, (0.5 - tilt + bend) / mm);
  S.h22 = second(s2, s2, -2.0 * s2 * s2, x2, x2, (0.5 + tilt + bend) / mm);
  S.h33 = second(s3, s3, s33, x3, x3, 2.0 / mm);
  S.h12 = second(s1, s2, s12, x1, x2, (bend - 0.5) / mm);
  S.h13 = second(s1, s3, -2.0 * s1 * s3, x1, x3, shear);
  S.h23 = second(s2, s3, -2.0 * s2 * s3, x2, x3, shear);
}

/// stress: maps strains to StressOf<Real>.
template <Order order, class Real, class StressAt>
void densityOfMetric(Real C11, Real C22, Real C12, const StrainWeights& weights, StressAt stress,
                     DensityOf<Real>& F) {
  DensityOf<Real> S;
  squaredStrain<order>(C11, C22, LaneMath<Real>::offDiagonal(C12), weights, S);
  const Real root = LaneMath<Real>::root(S.phi);
  const StressOf<Real> at = stress(weights.strainFactor * root);
  F.phi = 0.5 * (at.work * at.work);
  if constexpr (order == Order::value) return;

  const Real strainRate = weights.rateFactor / root;  // dε̄/dS
  const Real rate = at.work * at.sigma * strainRate;  // dφ/dS
  F.g1 = rate * S.g1;
  F.g2 = rate * S.g2;
  F.g3 = rate * S.g3;
  if constexpr (order != Order::hessian) return;

  // d²φ/dS², with d²ε̄/dS² = -½·(dε̄/dS)/S
  const Real curvature =
      (at.sigma * at.sigma + at.work * at.slope) * (strainRate * strainRate) - 0.5 * rate / S.phi;
  F.h11 = curvature * (S.g1 * S.g1) + rate * S.h11;
  F.h22 = curvature * (S.g2 * S.g2) + rate * S.h22;
  F.h33 = curvature * (S.g3 * S.g3) + rate * S.h33;
  F.h12 = curvature * (S.g1 * S.g2) + rate * S.h12;
  F.h13 = curvature * (S.g1 * S.g3) + rate * S.h13;
  F.h23 = curvature * (S.g2 * S.g3) + rate * S.h23;
}

}  // namespace tornwalzen
