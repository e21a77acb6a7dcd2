// Points of the common hardening laws (plastic strain, dimensionless; stress, MPa): J. H. Hollomon 1945,
// H. W. Swift 1952, P. Ludwik 1909, E. Voce 1948, J. E. Hockett and O. D. Sherby 1975.
#pragma once

#include "ground/analysis.hpp"

namespace tornwalzen {

/// The values are those of tornwalzen_analysis.h.
enum class HardeningLaw : Int { hollomon = 1, swift = 2, ludwik = 3, voce = 4, hockettSherby = 5 };

constexpr int mostLawParameters = 4;

/// Parameters that a law takes, beside the strain that it is tabulated to; 0 for a number that is no law.
Int lawParameters(Int law);

/// n points up to strainTo, closer together near zero, where the curves are steep.
/// refusal: out, on failure. law: in. parameters: in, lawParameters(law) of them, positive. strainTo: in, above 0 and
/// below 5. n: in, 3..49. strain, stress: out, n each.
/// Returns 0, or TORNWALZEN_BAD_LAW with the place of the parameter (strainTo last), TORNWALZEN_BAD_POINT_COUNT, or
/// TORNWALZEN_NULL_POINTER with the place behind parameters, strainTo and n.
Int lawPoints(Refusal& refusal, HardeningLaw law, const double* parameters, double strainTo, Int n,
              double* strain, double* stress);

}  // namespace tornwalzen
