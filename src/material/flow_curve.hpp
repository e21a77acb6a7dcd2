// The material during one pass over the elements: the flow curve's table, the work of its full segments, and
// the weights of the equivalent strain.
#pragma once

#include "ground/analysis.hpp"
#include "material/equivalent_strain.hpp"

namespace tornwalzen {

/// Specific plastic work (dimensionless, stresses being scaled) between strains a and b with the cubic of row
/// k: A(b⁴-a⁴)/4 + B(b³-a³)/3 + C(b²-a²)/2 + D(b-a), with the factor b - a taken out.
/// Real: double, or a vector of doubles, one strain per lane.
template <class Real>
Real cubicWork(Real A, Real B, Real C, Real D, Real a, Real b) {
  const Real sum = a + b, squares = a * a + b * b;
  const Real mean = A * (sum * squares) / 4.0 + B * (squares + a * b) / 3.0 + C * sum / 2.0 + D;
  return mean * (b - a);
}
inline double segmentWork(Table<const double> FC, Int k, double a, double b) {
  return cubicWork(FC(k, 4), FC(k, 5), FC(k, 6), FC(k, 7), a, b);
}

/// Made once per pass, so that an element adds one segment to a stored sum; the sum runs in the order of the
/// segments wherever it is made, so all passes see the same work to the bit.
struct FlowCurve {
  /// table: in, 50 × 7, columns 3 to 7 prepared. points: in, its rows in use, 0..50. r: in, normal anisotropy, > 0.
  FlowCurve(Table<const double> table, Int points, double r) : FC(table), npkt(points), weights(r) {
    WFULL[0] = 0.0;
    for (Int k = 1; k < npkt; ++k) WFULL[k] = WFULL[k - 1] + segmentWork(FC, k, FC(k, 1), FC(k + 1, 1));
  }
  /// The curve that the analysis has loaded, with the anisotropy that its host chose.
  explicit FlowCurve(Analysis& state) : FlowCurve(flowCurve(state), state.npkt, state.options.anisotropy) {}

  Table<const double> FC;
  Int npkt;
  StrainWeights weights;
  double WFULL[curveRows];  // [k]: work from the first strain to the end of segment k
};

template <class Real>
struct StressOf {
  Real work, sigma, slope;  // W, σ = dW/dε̄, dσ/dε̄
};
using Stress = StressOf<double>;

/// Work and stress at the equivalent strain: the cubic of the segment that reaches up to it, extended beyond
/// the last point. A curve of fewer than three points has only its first segment.
inline Stress flowStress(const FlowCurve& CURVE, double strain) {
  const Table<const double> FC = CURVE.FC;
  Int j = 2;
  while (j < CURVE.npkt && FC(j, 1) < strain) ++j;
  const Int k = j - 1;
  const double A = FC(k, 4), B = FC(k, 5), C = FC(k, 6), D = FC(k, 7);
  return {CURVE.WFULL[k - 1] + segmentWork(FC, k, FC(k, 1), strain),
          ((A * strain + B) * strain + C) * strain + D, (3.0 * A * strain + 2.0 * B) * strain + C};
}

}  // namespace tornwalzen
