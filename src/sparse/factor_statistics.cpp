// Pivots, entries and operations of the last factor. A column of L with r entries below its diagonal costs r
// divisions and, in the symmetric rank-one update that it makes, r(r + 1)/2 multiplications and additions
// each.
#include "sparse/factor_statistics.hpp"

#include <cmath>

#include "sparse/phase_guard.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

void recordFactor(RunRecord& record, const SolverProtocol& protocol, Vector<Int> WORK,
                  Vector<const double> RWORK) {
  if (!factorStands(protocol, WORK)) return;
  const Int NEQ = WORK(header::equations), m = WORK(header::supernodes);
  const Int64 factorEntries = WORK(header::factorEntries);
  record.factorEntries = factorEntries + NEQ;
  record.factorFlops = 0.0;
  const FactorStructure f = factorStructure(WORK);
  for (Int k = 1; k <= m; ++k) {
    const Int64 c = f.XLINDX(k + 1) - f.XLINDX(k), w = f.XSUP(k + 1) - f.XSUP(k);
    for (Int64 j = 1; j <= w; ++j) {
      const double r = static_cast<double>(c - j);
      record.factorFlops += r * (r + 2.0);
    }
  }
  record.negativePivots = 0;
  record.smallestPivot = NEQ > 0 ? std::fabs(RWORK(1)) : 0.0;
  for (Int64 i = 1; i <= NEQ; ++i) {
    const double pivot = RWORK(i);
    if (pivot < 0.0) record.negativePivots += 1;
    if (std::fabs(pivot) < record.smallestPivot) record.smallestPivot = std::fabs(pivot);
  }
}

}  // namespace tornwalzen
