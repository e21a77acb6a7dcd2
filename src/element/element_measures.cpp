// The measure of all elements: by eights where lanes serve, else one by one.
#include "element/element.hpp"
#include "element/element_shares.hpp"
#include "element/lanes/lane_pass.hpp"

namespace tornwalzen {

void measureElements(Analysis& run, Table<const Int> INTA, Vector<const double> RX, Table<const double> KNZ,
                     const FlowCurve& CURVE, double& SUM, Table<double> ELG) {
  SUM = 0.0;
  const auto compute = [&](Int e, Int n, LaneBatch& batch) {
    return evaluateUpToEight(run, Order::value, e, n, INTA, RX, KNZ, CURVE, batch);
  };
  double* const MEASURES =
      run.pool && run.nele >= leastShared ? run.pool->scratch(3 * Int64{run.nele}) : nullptr;
  Int degenerate;
  if (MEASURES == nullptr) {
    degenerate =
        everyElement<LaneBatch>(nullptr, run.nele, compute, [&](Int e, Int l, const LaneBatch& batch) {
          ELG(e, 1) = batch.STRAIN[l];
          ELG(e, 2) = batch.PHI[l];
          SUM += batch.POTENTIAL[l];
        });
  } else {
    degenerate =
        everyElement<LaneBatch>(run.pool.get(), run.nele, compute, [&](Int e, Int l, const LaneBatch& batch) {
          double* const MEASURE = MEASURES + 3 * (Int64{e} - 1);
          MEASURE[0] = batch.STRAIN[l];
          MEASURE[1] = batch.PHI[l];
          MEASURE[2] = batch.POTENTIAL[l];
        });
    // the table changes up to the degenerate element alone
    const Int last = degenerate > 0 ? degenerate - 1 : run.nele;
    inRanges(run.pool.get(), last, leastShared, [&](Int64 first, Int64 end) {
      for (Int64 e = first; e <= end; ++e)
        for (Int column = 1; column <= 2; ++column) ELG(e, column) = MEASURES[3 * (e - 1) + column - 1];
    });
    for (Int e = 1; e <= last; ++e) SUM += MEASURES[3 * (Int64{e} - 1) + 2];
  }
  if (degenerate > 0) tellDegenerate(run, true);
}

}  // namespace tornwalzen
