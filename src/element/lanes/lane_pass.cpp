// Edges of eight triangles, lane by lane.
#include "element/lanes/lane_pass.hpp"

#include "element/element.hpp"
#include "element/kinematics.hpp"
#include "ground/kernel_tables.hpp"

namespace tornwalzen {

const ElementLanes& lanesOf(const Analysis& run) {
  return run.lanes != nullptr ? *run.lanes : elementLanesTables().best();
}

bool takeEight(const Analysis& run, Int e, Table<const Int> INTA, Vector<const double> RX,
               Table<const double> KNZ, LaneBatch& batch) {
  bool proper = true;
  batch.weighed = run.options.partReference;
  for (int l = 0; l < laneCount; ++l) {
    const Int n1 = INTA(e + l, 1), n2 = INTA(e + l, 2), n3 = INTA(e + l, 3);
    for (int i = 0; i < 2; ++i) {
      const double x1 = RX(2 * n1 - 1 + i);
      batch.p[i][l] = RX(2 * n2 - 1 + i) - x1;
      batch.q[i][l] = RX(2 * n3 - 1 + i) - x1;
    }
    for (int i = 0; i < 3; ++i) {
      const double x1 = KNZ(n1, i + 1);
      batch.P[i][l] = KNZ(n2, i + 1) - x1;
      batch.Q[i][l] = KNZ(n3, i + 1) - x1;
    }
    if (batch.weighed) batch.WEIGHT[l] = twicePartArea(n1, n2, n3, KNZ);
    const double D = batch.p[0][l] * batch.q[1][l] - batch.p[1][l] * batch.q[0][l];
    proper = proper && !(0.0 >= D);  // a D that is not a number travels on
  }
  return proper;
}

Int evaluateUpToEight(const Analysis& run, Order order, Int e, Int n, Table<const Int> INTA,
                      Vector<const double> RX, Table<const double> KNZ, const FlowCurve& CURVE,
                      LaneBatch& batch) {
  if (n == laneCount && lanesServe(run) && takeEight(run, e, INTA, RX, KNZ, batch)) {
    lanesOf(run).evaluate(order, LaneCurve(CURVE), batch);
    return n;
  }
  for (Int l = 0; l < n; ++l) {
    ElementOf<double> E;
    if (!evaluateElement(run, order, e + l, INTA, RX, KNZ, CURVE, E)) return l;
    batch.POTENTIAL[l] = E.potential;
    if (order == Order::value) {
      batch.PHI[l] = E.phi;
      batch.STRAIN[l] = E.strain;
      continue;
    }
    for (int k = 0; k < 6; ++k) batch.GRADIENT[k][l] = E.gradient[k];
    if (order == Order::hessian)
      for (int k = 0; k < 36; ++k) batch.HESSIAN[k][l] = E.hessian[k];
  }
  return n;
}

}  // namespace tornwalzen
