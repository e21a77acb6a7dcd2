// Whether a host's points make a usable flow curve.
#pragma once

#include "ground/analysis.hpp"

namespace tornwalzen {

/// 0, or the code of tornwalzen_ext.h with index and value kept in `refusal`. n: in, points, already
/// in 3..49; strain, stress: in, n each.
Int checkHostCurve(Refusal& refusal, Int n, const double* strain, const double* stress);

/// The curve from the points. n: in, 3..49.
HostCurve hostCurve(Int n, const double* strain, const double* stress);

}  // namespace tornwalzen
