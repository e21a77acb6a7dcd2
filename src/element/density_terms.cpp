// The built-in terms, seen from the principal axes of the strain in the blank.
#include "element/density_terms.hpp"

#include <cmath>

namespace tornwalzen {

namespace {

/// φ = ½·W² of the strain H = diag(e1, e2). With s = H11 + H22 and t² = (H11 - H22)² + 4·H12² the equivalent
/// strain squared is S = sumWeight·s² + differenceWeight·t² + regulariser, a quadratic in H.
void plasticWork(Order order, double e1, double e2, const FlowCurve& CURVE, Density& F) {
  const StrainWeights& weights = CURVE.weights;
  const double sw = weights.sumWeight, dw = weights.differenceWeight, s = e1 + e2, t = e1 - e2;
  const double S = sw * (s * s) + dw * (t * t) + strainRegulariser, root = std::sqrt(S);
  const Stress stress = flowStress(CURVE, weights.strainFactor * root);
  F = Density{};
  F.phi = 0.5 * (stress.work * stress.work);
  if (order == Order::value) return;

  const double S1 = 2.0 * (sw * s + dw * t), S2 = 2.0 * (sw * s - dw * t);
  const double strainRate = weights.rateFactor / root;          // dε̄/dS
  const double rate = stress.work * stress.sigma * strainRate;  // dφ/dS
  F.g1 = rate * S1;
  F.g2 = rate * S2;
  if (order != Order::hessian) return;

  const double curvature =
      (stress.sigma * stress.sigma + stress.work * stress.slope) * (strainRate * strainRate) - 0.5 * rate / S;
  F.h11 = curvature * (S1 * S1) + 2.0 * rate * (sw + dw);
  F.h22 = curvature * (S2 * S2) + 2.0 * rate * (sw + dw);
  F.h12 = curvature * (S1 * S2) + 2.0 * rate * (sw - dw);
  F.h33 = 8.0 * rate * dw;
}

/// Area of the blank over that of the part, exp(-(H11 + H22)).
Density areaOfStrain(double e1, double e2) {
  const double area = std::exp(-(e1 + e2));
  return {area, -area, -area, 0.0, area, area, 0.0, area, 0.0, 0.0};
}

/// The same, (C11·C22 - C12²)^(-1/2), of the metric diag(c1, c2).
Density areaOfMetric(double c1, double c2) {
  const double r1 = 1.0 / c1, r2 = 1.0 / c2, area = std::sqrt(r1 * r2);
  return {area,
          -0.5 * area * r1,
          -0.5 * area * r2,
          0.0,
          0.75 * area * r1 * r1,
          0.75 * area * r2 * r2,
          area * r1 * r2,
          0.25 * area * r1 * r2,
          0.0,
          0.0};
}

/// φ = E11² + E22² + E12² = E1² + E2² + 2·E' ² - L² seen from axes turned by α, where E' is the shear there and
/// L = ½·sin 2α·(E1 - E2) + cos 2α·E' the shear in the blank's axes.
void geometric(Order order, double c1, double c2, double cosine, double sine, Density& F) {
  const double E1 = 0.5 * (c1 - 1.0), E2 = 0.5 * (c2 - 1.0);
  const double k = cosine * sine, q = cosine * cosine - sine * sine, L = k * (E1 - E2);
  F = Density{};
  F.phi = E1 * E1 + E2 * E2 - L * L;
  if (order == Order::value) return;
  F.g1 = E1 - L * k;
  F.g2 = E2 + L * k;
  F.g3 = -L * q;
  if (order != Order::hessian) return;
  F.h11 = F.h22 = 0.5 * (1.0 - k * k);
  F.h12 = 0.5 * (k * k);
  F.h33 = 1.0 - 0.5 * (q * q);
  F.h13 = -0.5 * (k * q);
  F.h23 = 0.5 * (k * q);
}

}  // namespace

void multiply(Order order, Density& F, const Density& G) {
  if (order == Order::hessian) {
    F.h11 = F.h11 * G.phi + 2.0 * F.g1 * G.g1 + F.phi * G.h11;
    F.h22 = F.h22 * G.phi + 2.0 * F.g2 * G.g2 + F.phi * G.h22;
    F.h33 = F.h33 * G.phi + 2.0 * F.g3 * G.g3 + F.phi * G.h33;
    F.h12 = F.h12 * G.phi + F.g1 * G.g2 + F.g2 * G.g1 + F.phi * G.h12;
    F.h13 = F.h13 * G.phi + F.g1 * G.g3 + F.g3 * G.g1 + F.phi * G.h13;
    F.h23 = F.h23 * G.phi + F.g2 * G.g3 + F.g3 * G.g2 + F.phi * G.h23;
  }
  if (order != Order::value) {
    F.g1 = F.g1 * G.phi + F.phi * G.g1;
    F.g2 = F.g2 * G.phi + F.phi * G.g2;
    F.g3 = F.g3 * G.phi + F.phi * G.g3;
  }
  F.phi *= G.phi;
}

void PlasticWorkTerm::add(Order order, const TrianglePoint& at, MapSum& sum) const {
  const Spectrum X = extendedSpectrum<Measure::logarithmic>(order, at.map.s1, at.map.s2, at.s0);
  Density F;
  plasticWork(order, X.f1, X.f2, CURVE_, F);
  if (!partReference_) multiply(order, F, areaOfStrain(X.f1, X.f2));
  addDensity(order, at.map, X, F, at.weight, sum);
}

void GeometricTerm::add(Order order, const TrianglePoint& at, MapSum& sum) const {
  const Spectrum X = extendedSpectrum<Measure::metric>(order, at.map.s1, at.map.s2, at.s0);
  Density F;
  geometric(order, X.f1, X.f2, at.map.cu, at.map.su, F);
  if (!partReference_) multiply(order, F, areaOfMetric(X.f1, X.f2));
  addDensity(order, at.map, X, F, at.weight, sum);
}

}  // namespace tornwalzen
