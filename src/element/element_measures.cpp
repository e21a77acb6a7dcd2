// The measure of all elements: by eights where lanes serve, else one by one.
#include "element/element.hpp"
#include "element/element_shares.hpp"
#include "element/lanes/lane_pass.hpp"

namespace tornwalzen {

void measureElements(Analysis& run, Table<const Int> INTA, Vector<const double> RX, Table<const double> KNZ,
                     const FlowCurve& CURVE, double& SUM, Table<double> ELG) {
  SUM = 0.0;
  const Int degenerate = overElements<LaneBatch>(
      run.pool.get(), run.nele, 1,
      [&](Int e, Int n, LaneBatch& batch) {
        return evaluateUpToEight(run, Order::value, e, n, INTA, RX, KNZ, CURVE, batch);
      },
      [&](auto, Int e, Int l, const LaneBatch& batch) {
        ELG(e, 1) = batch.STRAIN[l];
        ELG(e, 2) = batch.PHI[l];
        SUM += batch.POTENTIAL[l];
      });
  if (degenerate > 0) tellDegenerate(run, true);
}

}  // namespace tornwalzen
