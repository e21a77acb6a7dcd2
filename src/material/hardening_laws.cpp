// The hardening laws.
#include "material/hardening_laws.hpp"

#include <cmath>

#include "tornwalzen_ext.h"

namespace tornwalzen {

namespace {

constexpr double hollomonStrain = 0.002;  // below it the stress, which starts at 0, is held: the proof strain

/// Stress (MPa) of a law at the plastic strain e. p: in, its parameters.
double stressOf(HardeningLaw law, const double* p, double e) {
  switch (law) {
    case HardeningLaw::hollomon:
      return p[0] * std::pow(e < hollomonStrain ? hollomonStrain : e, p[1]);
    case HardeningLaw::swift:
      return p[0] * std::pow(p[1] + e, p[2]);
    case HardeningLaw::ludwik:
      return p[0] + p[1] * std::pow(e, p[2]);
    case HardeningLaw::voce:
      return p[1] - (p[1] - p[0]) * std::exp(-p[2] * e);
    case HardeningLaw::hockettSherby:
      return p[1] - (p[1] - p[0]) * std::exp(-p[2] * std::pow(e, p[3]));
  }
  return 0.0;
}

bool positive(double value) {
  return std::isfinite(value) && value > 0.0;
}

}  // namespace

Int lawParameters(Int law) {
  constexpr Int count[] = {0, 2, 3, 3, 3, 4};
  return law >= 1 && law <= 5 ? count[law] : 0;
}

Int lawPoints(Refusal& refusal, HardeningLaw law, const double* parameters, double strainTo, Int n,
              double* strain, double* stress) {
  const Int count = lawParameters(static_cast<Int>(law));
  for (Int i = 0; i < count; ++i)
    if (!positive(parameters[i])) return refuse(refusal, TORNWALZEN_BAD_LAW, i + 1, parameters[i]);
  if (!positive(strainTo) || strainTo >= farCurveStrain)
    return refuse(refusal, TORNWALZEN_BAD_LAW, count + 1, strainTo);
  if (n < leastCurvePoints || n > mostCurvePoints) return refuse(refusal, TORNWALZEN_BAD_POINT_COUNT, 0, n);
  if (strain == nullptr) return refuse(refusal, TORNWALZEN_NULL_POINTER, count + 3, 0.0);
  if (stress == nullptr) return refuse(refusal, TORNWALZEN_NULL_POINTER, count + 4, 0.0);
  for (Int i = 0; i < n; ++i) {
    const double part = static_cast<double>(i) / (n - 1);
    strain[i] = strainTo * (part * part);
    stress[i] = stressOf(law, parameters, strain[i]);
  }
  return TORNWALZEN_OK;
}

}  // namespace tornwalzen
