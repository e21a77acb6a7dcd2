// The density of one element.
#include "element/density_plastic.hpp"

#include <cmath>

#include "element/density_plastic_body.hpp"

namespace tornwalzen {

SquaredDifference<double> closedDifference(double x, double y, bool withHessian) {
  const double rho = std::sqrt(x);
  const double g = 0.5 * std::log((1.0 + rho) * (1.0 + rho) / y) / rho;
  return {g, withHessian ? (1.0 / y - g) / x : 0.0};
}

template <>
struct LaneMath<double> {
  static double root(double x) { return std::sqrt(x); }
  static double logarithm(double x) { return std::log(x); }
  static double offDiagonal(double C12) { return std::fabs(C12) <= diagonalLimit ? 0.0 : C12; }
  template <Order order>
  static SquaredDifference<double> squaredDifference(double x, double y) {
    return x < seriesLimit ? seriesDifference(x, y) : closedDifference(x, y, order == Order::hessian);
  }
};

template <Order order>
void plasticDensity(double C11, double C22, double C12, const FlowCurve& CURVE, Density& F) {
  densityOfMetric<order>(
      C11, C22, C12, CURVE.weights, [&](double strain) { return flowStress(CURVE, strain); }, F);
}

template void plasticDensity<Order::value>(double, double, double, const FlowCurve&, Density&);
template void plasticDensity<Order::gradient>(double, double, double, const FlowCurve&, Density&);
template void plasticDensity<Order::hessian>(double, double, double, const FlowCurve&, Density&);

}  // namespace tornwalzen
