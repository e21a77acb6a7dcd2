// Points of the common hardening laws (plastic strain, dimensionless; stress, MPa): J. H. Hollomon 1945,
// H. W. Swift 1952, P. Ludwik 1909, E. Voce 1948, J. E. Hockett and O. D. Sherby 1975. They lie closer
// together near zero, where the curves are steep.
#include <cmath>
#include <iterator>

#include "interface/default_analysis.hpp"
#include "tornwalzen_ext.h"

namespace tornwalzen {

namespace {

constexpr double hollomonStrain = 0.002;  // below it the stress, which starts at 0, is held: the proof strain

/// parameters: in, those of the law in the order of its arguments, all positive, the last one strain_to.
/// law(e): the stress at the strain e. Refuses what is out of range by its place among the arguments.
template <std::size_t count, class Law>
int32_t points(const double (&parameters)[count], int32_t n, double* strain, double* stress, Law law) {
  for (std::size_t i = 0; i < count; ++i) {
    const double value = parameters[i];
    const bool inRange = std::isfinite(value) && value > 0.0 && (i + 1 < count || value < farCurveStrain);
    if (!inRange)
      return refuse(defaultAnalysis().refusal, TORNWALZEN_BAD_LAW, static_cast<Int>(i) + 1, value);
  }
  if (n < leastCurvePoints || n > mostCurvePoints)
    return refuse(defaultAnalysis().refusal, TORNWALZEN_BAD_POINT_COUNT, 0, n);
  const Int argument = static_cast<Int>(count) + 2;  // of strain; stress follows
  if (strain == nullptr) return refuse(defaultAnalysis().refusal, TORNWALZEN_NULL_POINTER, argument, 0.0);
  if (stress == nullptr) return refuse(defaultAnalysis().refusal, TORNWALZEN_NULL_POINTER, argument + 1, 0.0);
  const double strainTo = parameters[count - 1];
  for (int32_t i = 0; i < n; ++i) {
    const double part = static_cast<double>(i) / (n - 1);
    strain[i] = strainTo * (part * part);
    stress[i] = law(strain[i]);
  }
  return TORNWALZEN_OK;
}

}  // namespace

}  // namespace tornwalzen

using namespace tornwalzen;

extern "C" {

int32_t tornwalzen_points_hollomon(double K, double m, double strain_to, int32_t n, double* strain,
                                   double* stress_mpa) {
  return points({K, m, strain_to}, n, strain, stress_mpa,
                [=](double e) { return K * std::pow(e < hollomonStrain ? hollomonStrain : e, m); });
}

int32_t tornwalzen_points_swift(double K, double e0, double m, double strain_to, int32_t n, double* strain,
                                double* stress_mpa) {
  return points({K, e0, m, strain_to}, n, strain, stress_mpa,
                [=](double e) { return K * std::pow(e0 + e, m); });
}

int32_t tornwalzen_points_ludwik(double s0, double K, double m, double strain_to, int32_t n, double* strain,
                                 double* stress_mpa) {
  return points({s0, K, m, strain_to}, n, strain, stress_mpa,
                [=](double e) { return s0 + K * std::pow(e, m); });
}

int32_t tornwalzen_points_voce(double s0, double ss, double rate, double strain_to, int32_t n, double* strain,
                               double* stress_mpa) {
  return points({s0, ss, rate, strain_to}, n, strain, stress_mpa,
                [=](double e) { return ss - (ss - s0) * std::exp(-rate * e); });
}

int32_t tornwalzen_points_hockett_sherby(double s0, double ss, double rate, double m, double strain_to,
                                         int32_t n, double* strain, double* stress_mpa) {
  return points({s0, ss, rate, m, strain_to}, n, strain, stress_mpa,
                [=](double e) { return ss - (ss - s0) * std::exp(-rate * std::pow(e, m)); });
}

}  // extern "C"
