// Plastic-work density φ = ½·W(ε̄)² of the total (deformation) theory: W is the work under the flow curve up
// to the equivalent strain ε̄ of the logarithmic principal strains in the sheet's plane (dimensionless).
#pragma once

#include "element/density.hpp"
#include "material/flow_curve.hpp"

namespace tornwalzen {

/// φ and its derivatives up to `order` at the metric C11, C22, C12 (positive definite, dimensionless).
/// F: out, the members that `order` names. No test of the metric: a singular one gives an infinite or
/// undefined φ.
///
/// For |C12| ≤ 1e-8 the density leaves C12 out: values and gradient are those of the metric (C11, C22, 0), so
/// the principal strains are ½·ln C11 and ½·ln C22; the second derivatives are the isotropic function's
/// there.
template <Order order>
void plasticDensity(double C11, double C22, double C12, const FlowCurve& CURVE, Density& F);

extern template void plasticDensity<Order::value>(double, double, double, const FlowCurve&, Density&);
extern template void plasticDensity<Order::gradient>(double, double, double, const FlowCurve&, Density&);
extern template void plasticDensity<Order::hessian>(double, double, double, const FlowCurve&, Density&);

}  // namespace tornwalzen
