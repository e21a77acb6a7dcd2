// Checks of a host's flow curve, point by point and between the points: the cubic through positive stresses
// may dip below zero where they fall steeply.
#include "material/curve_check.hpp"

#include <algorithm>
#include <cmath>

#include "material/material_setup.hpp"
#include "tornwalzen_ext.h"

namespace tornwalzen {

namespace {

constexpr double largestStress = 20000.0;  // MPa: no metal bears as much; who passes it gave Pa

/// Smallest stress of the cubic of row k between its point and the next: at an end, or where the derivative
/// 3Aε² + 2Bε + C vanishes. Each pair of roots without the difference of nearly equal numbers.
double smallestStress(Table<const double> FC, Int k) {
  const double A = FC(k, 4), B = FC(k, 5), C = FC(k, 6), D = FC(k, 7), from = FC(k, 1), to = FC(k + 1, 1);
  const auto stress = [&](double e) { return ((A * e + B) * e + C) * e + D; };
  double smallest = std::min(FC(k, 2), FC(k + 1, 2));
  const double square = B * B - 3.0 * A * C;
  if (square < 0.0) return smallest;
  const double sum = -(B + std::copysign(std::sqrt(square), B));
  for (const double root : {sum / (3.0 * A), C / sum})  // not finite where there is none
    if (root > from && root < to) smallest = std::min(smallest, stress(root));
  return smallest;
}

}  // namespace

HostCurve hostCurve(Int n, const double* strain, const double* stress) {
  HostCurve curve;
  curve.points = n;
  std::copy(strain, strain + n, curve.strain);
  std::copy(stress, stress + n, curve.stress);
  return curve;
}

Int checkHostCurve(Refusal& refusal, Int n, const double* strain, const double* stress) {
  for (Int i = 0; i < n; ++i)
    for (const double value : {strain[i], stress[i]})
      if (!std::isfinite(value)) return refuse(refusal, TORNWALZEN_POINT_NOT_FINITE, i + 1, value);
  if (strain[0] != 0.0) return refuse(refusal, TORNWALZEN_FIRST_STRAIN_NOT_ZERO, 1, strain[0]);
  for (Int i = 1; i < n; ++i)
    if (!(strain[i] > strain[i - 1]))
      return refuse(refusal, TORNWALZEN_STRAIN_NOT_INCREASING, i + 1, strain[i]);
  if (!(strain[n - 1] < farCurveStrain)) {
    const Int first = static_cast<Int>(std::lower_bound(strain, strain + n, farCurveStrain) - strain);
    return refuse(refusal, TORNWALZEN_STRAIN_TOO_LARGE, first + 1, strain[first]);
  }
  for (Int i = 0; i < n; ++i)
    if (!(stress[i] > 0.0)) return refuse(refusal, TORNWALZEN_STRESS_NOT_POSITIVE, i + 1, stress[i]);
  for (Int i = 0; i < n; ++i)
    if (stress[i] > largestStress) return refuse(refusal, TORNWALZEN_STRESS_TOO_LARGE, i + 1, stress[i]);

  double table[curveRows * curveColumns];
  const Table<double> FC("FC", table, curveRows, curveColumns);
  Int npkt;
  copyHostCurve(hostCurve(n, strain, stress), FC, npkt);
  prepareFlowCurve(FC, npkt);
  for (Int k = 1; k < npkt; ++k) {
    const double smallest = smallestStress(FC, k);
    if (!(smallest > 0.0)) return refuse(refusal, TORNWALZEN_CURVE_NOT_POSITIVE, k, smallest);
  }
  return TORNWALZEN_OK;
}

}  // namespace tornwalzen
