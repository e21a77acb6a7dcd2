// What a density hands to the element: a scalar function φ of the metric (C11, C22, C12) with its
// derivatives, C12 counted as one variable. All dimensionless.
#pragma once

namespace tornwalzen {

/// How far a density is differentiated: what is not asked for is neither computed nor written.
enum class Order { value, gradient, hessian };

/// Real: double, or a vector of doubles that holds one element per lane.
template <class Real>
struct DensityOf {
  Real phi;                           // value
  Real g1, g2, g3;                    // ∂φ/∂C11, ∂φ/∂C22, ∂φ/∂C12
  Real h11, h22, h33, h12, h13, h23;  // second derivatives, indices as above
};
using Density = DensityOf<double>;

}  // namespace tornwalzen
