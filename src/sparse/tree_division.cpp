// The division follows what is predicted: the ranges by the list rule (R. L. Graham, Bounds on multiprocessing timing
// anomalies, SIAM J. Appl. Math. 17, 1969), largest first, and behind them the top.
#include "sparse/tree_division.hpp"

#include <functional>

#include "ground/thread_pool.hpp"

namespace tornwalzen {

namespace {

constexpr Int fineness = 8;  // divisions that are tried, each with half the work in a range

/// When the last thread ends its ranges. LOADS: in, falling works of the ranges.
double lastEnd(Vector<const double> LOADS, Int threads) {
  double end[mostThreads] = {};
  for (Int64 i = 1; i <= LOADS.length(); ++i) *std::min_element(end, end + threads) += LOADS(i);
  return *std::max_element(end, end + threads);
}

}  // namespace

bool TreeDivision::allocate(const FactorStructure& f, Int m) {
  PARENT_ = f.PARENT;
  m_ = m;
  limit_ = 0.0;
  return OWN_.allocate(m) && TOGETHER_.allocate(m) && TOTAL_.allocate(m, 0.0) && LOADS_.allocate(m);
}

/// Predicted time of the division.
double TreeDivision::predict(double limit, Int threads, double start) {
  const Vector<double> LOADS = LOADS_.vector();
  Int64 ranges = 0;
  double top = start;
  divide(
      limit, [&](Int, Int, double work) { LOADS(++ranges) = work; },
      [&](Int k) { top += TOGETHER_.data()[k - 1]; });
  std::sort(LOADS.data(), LOADS.data() + ranges, std::greater<>());
  return top + lastEnd({"LOADS", LOADS.data(), ranges}, threads);
}

void TreeDivision::choose(Int threads, double start) {
  const Vector<double> TOTAL = TOTAL_.vector();
  double all = 0.0;
  for (Int k = 1; k <= m_; ++k) {
    all += OWN_.data()[k - 1];
    TOTAL(k) += OWN_.data()[k - 1];
    if (PARENT_(k) > 0) TOTAL(PARENT_(k)) += TOTAL(k);
  }
  double best = all, tried = all / threads;
  for (Int step = 0; step < fineness; ++step, tried *= 0.5) {
    const double time = predict(tried, threads, start);
    if (!(time < best)) continue;
    best = time;
    limit_ = tried;
  }
  ranges_ = top_ = 0;
  walk([&](Int, Int, double) { ++ranges_; }, [&](Int) { ++top_; });
}

}  // namespace tornwalzen
