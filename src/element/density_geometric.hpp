// Green-Lagrange density φ = E11² + E22² + E12² of the strains E11 = (C11 - 1)/2, E22 = (C22 - 1)/2,
// E12 = C12/2 (dimensionless). It counts E12² once, not twice, and is therefore not isotropic.
#pragma once

#include "element/density.hpp"

namespace tornwalzen {

template <Order order>
void geometricDensity(double C11, double C22, double C12, Density& F) {
  const double E11 = (C11 - 1.0) * 0.5, E22 = (C22 - 1.0) * 0.5, E12 = C12 * 0.5;
  F.phi = E11 * E11 + E22 * E22 + E12 * E12;
  if constexpr (order != Order::value) {
    F.g1 = E11;
    F.g2 = E22;
    F.g3 = E12;
  }
  if constexpr (order == Order::hessian) {
    F.h11 = F.h22 = F.h33 = 0.5;
    F.h12 = F.h13 = F.h23 = 0.0;
  }
}

}  // namespace tornwalzen
