// The weights that follow from the anisotropy.
#include "material/equivalent_strain.hpp"

#include <cmath>

namespace tornwalzen {

namespace {

// 2/√3 and 1/√3 are held in single precision and widened; results depend on the digits that this adds.
constexpr double twoOverRootThree = 1.154700517654419;
constexpr double oneOverRootThree = 0.5773502588272095;

/// (1+r)/√(1+2r) over its value at r = 1: exactly 1 there, so that the isotropic results keep every bit.
double relativeFactor(double r) {
  return ((1.0 + r) / std::sqrt(1.0 + 2.0 * r)) / (2.0 / std::sqrt(3.0));
}

}  // namespace

StrainWeights::StrainWeights(double r)
    : sumWeight((1.0 + 2.0 * r) / (2.0 * (1.0 + r))),
      differenceWeight(1.0 / (2.0 * (1.0 + r))),
      strainFactor(twoOverRootThree * relativeFactor(r)),
      rateFactor(oneOverRootThree * relativeFactor(r)) {}

}  // namespace tornwalzen
