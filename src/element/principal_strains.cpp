// Principal stretches λ² of the metric C = FᵀF and their axes. The larger one comes from m + r; the smaller
// one as det C/λ1², which keeps its digits; det C is the squared ratio of the areas.
#include "element/principal_strains.hpp"

#include <cmath>

#include "ground/triangle.hpp"

namespace tornwalzen {

PrincipalStrains principalStrains(const double (&P)[3], const double (&Q)[3], const double (&p)[2],
                                  const double (&q)[2], const StrainWeights& weights) {
  const double D = p[0] * q[1] - p[1] * q[0], scale = 1.0 / D;
  double a[3], b[3];
  for (int i = 0; i < 3; ++i) {
    a[i] = (q[1] * P[i] - p[1] * Q[i]) * scale;
    b[i] = (p[0] * Q[i] - q[0] * P[i]) * scale;
  }
  const double C11 = a[0] * a[0] + a[1] * a[1] + a[2] * a[2];
  const double C22 = b[0] * b[0] + b[1] * b[1] + b[2] * b[2];
  const double C12 = a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
  const double det = squaredTwiceArea(P, Q) * (scale * scale);

  const double m = 0.5 * (C11 + C22), d = 0.5 * (C11 - C22), r = std::sqrt(d * d + C12 * C12);
  const double major = m + r, minor = det / major;
  PrincipalStrains S;
  S.e1 = 0.5 * std::log(major);
  S.e2 = 0.5 * std::log(minor);
  if (S.e2 > S.e1) S.e2 = S.e1;  // rounding, where both are equal

  // The axis of the larger value lies at half the angle of (d, C12); of the two formulas the one that adds.
  const double along = r + std::fabs(d);
  double axis[2] = {1.0, 0.0};
  if (r > 0.0) {
    axis[0] = d >= 0.0 ? along : C12;
    axis[1] = d >= 0.0 ? C12 : along;
  }
  const double length = std::hypot(axis[0], axis[1]);
  double onPart[3];
  for (int i = 0; i < 2; ++i) S.blankAxis[i] = axis[i] / length;
  for (int i = 0; i < 3; ++i) onPart[i] = a[i] * S.blankAxis[0] + b[i] * S.blankAxis[1];
  const double stretch = std::sqrt(onPart[0] * onPart[0] + onPart[1] * onPart[1] + onPart[2] * onPart[2]);
  for (int i = 0; i < 3; ++i) S.partAxis[i] = onPart[i] / stretch;

  const double s = S.e1 + S.e2, t = S.e1 - S.e2;
  S.thickness = -s;
  S.equivalent = weights.strainFactor * std::sqrt(weights.sumWeight * (s * s) +
                                                  weights.differenceWeight * (t * t) + strainRegulariser);
  return S;
}

}  // namespace tornwalzen
