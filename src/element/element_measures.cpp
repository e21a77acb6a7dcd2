// The measure of all elements: by eights where lanes serve, else one by one.
#include "element/element.hpp"
#include "element/lanes/lane_pass.hpp"

namespace tornwalzen {

void measureElements(Analysis& run, Table<const Int> INTA, Vector<const double> RX, Table<const double> KNZ,
                     const FlowCurve& CURVE, double& SUM, Table<double> ELG) {
  const LaneCurve laneCurve(CURVE);
  LaneBatch batch;
  SUM = 0.0;
  for (Int e = 1; e <= run.nele;) {
    if (e + laneCount - 1 <= run.nele && lanesServe(run) && takeEight(run, e, INTA, RX, KNZ, batch)) {
      lanesOf(run).evaluate(Order::value, laneCurve, batch);
      for (int l = 0; l < laneCount; ++l, ++e) {
        ELG(e, 1) = batch.STRAIN[l];
        ELG(e, 2) = batch.PHI[l];
        SUM += batch.POTENTIAL[l];
      }
      continue;
    }
    const Int last = e + laneCount - 1 < run.nele ? e + laneCount - 1 : run.nele;
    for (; e <= last; ++e) {
      double potential;
      elementMeasure(run, e, INTA, RX, KNZ, CURVE, potential, ELG);
      if (failed(run.ierrel)) return;
      SUM += potential;
    }
  }
}

}  // namespace tornwalzen
