// The exported points of hardening laws; refusals go to the default analysis.
#include "interface/default_analysis.hpp"
#include "material/hardening_laws.hpp"
#include "tornwalzen_ext.h"

using namespace tornwalzen;

namespace {

template <std::size_t count>
int32_t points(HardeningLaw law, const double (&parameters)[count], double strain_to, int32_t n,
               double* strain, double* stress_mpa) {
  return lawPoints(defaultAnalysis().refusal, law, parameters, strain_to, n, strain, stress_mpa);
}

}  // namespace

extern "C" {

int32_t tornwalzen_points_hollomon(double K, double m, double strain_to, int32_t n, double* strain,
                                   double* stress_mpa) {
  return points(HardeningLaw::hollomon, {K, m}, strain_to, n, strain, stress_mpa);
}

int32_t tornwalzen_points_swift(double K, double e0, double m, double strain_to, int32_t n, double* strain,
                                double* stress_mpa) {
  return points(HardeningLaw::swift, {K, e0, m}, strain_to, n, strain, stress_mpa);
}

int32_t tornwalzen_points_ludwik(double s0, double K, double m, double strain_to, int32_t n, double* strain,
                                 double* stress_mpa) {
  return points(HardeningLaw::ludwik, {s0, K, m}, strain_to, n, strain, stress_mpa);
}

int32_t tornwalzen_points_voce(double s0, double ss, double rate, double strain_to, int32_t n, double* strain,
                               double* stress_mpa) {
  return points(HardeningLaw::voce, {s0, ss, rate}, strain_to, n, strain, stress_mpa);
}

int32_t tornwalzen_points_hockett_sherby(double s0, double ss, double rate, double m, double strain_to,
                                         int32_t n, double* strain, double* stress_mpa) {
  return points(HardeningLaw::hockettSherby, {s0, ss, rate, m}, strain_to, n, strain, stress_mpa);
}

}  // extern "C"
