// Forwards the ranges go side by side; what they add to rows behind them waits and is added when its turn comes among
// the fronts of the top, so that every row takes its terms in the order of one thread. The top goes front by front, long
// ones divided by rows. Backwards every supernode only reads what its ancestors have found: the top and the ranges are
// tasks that wait for their parents.
#include "sparse/team_solve.hpp"

#include <algorithm>

#include "ground/thread_pool.hpp"
#include "sparse/kernels/dense_kernels.hpp"

namespace tornwalzen {

namespace {

using Worker = ThreadPool::Worker;

constexpr Int64 leastRows = 128;  // of a share
constexpr Int64 permuted = 4096;  // entries of a share of the permutation

class TeamSolve {
 public:
  TeamSolve(const DenseKernels& kernels, const FactorStructure& f, FactorTeam& team,
            Vector<const double> RWORK, Vector<double> WRHS, Vector<double> SOLUTION)
      : kernels_(kernels),
        f_(f),
        RANGES_(team.solve.RANGES.vector()),
        ORDER_(team.solve.ORDER.vector()),
        DOWNWARDS_(team.solve.DOWNWARDS.vector()),
        TOP_(team.solve.TOP.vector()),
        ENDED_(team.ENDED.vector()),
        CROSSROWS_(team.solve.CROSSROWS.vector()),
        crossing_(team.CROSSING.data()),
        rows_(team.ROWS.data()),
        rowsOfWorker_(team.rowsOfWorker()),
        D_(RWORK.data()),
        L_(RWORK.data() + WRHS.length()),
        WRHS_(WRHS),
        SOLUTION_(SOLUTION) {}

  void work(Worker& me) {
    const Int64 NEQ = WRHS_.length();
    if (me.number() == 0)
      for (Int64 i = 1; i <= ENDED_.length(); ++i) ENDED_(i).store(0, std::memory_order_relaxed);
    me.share((NEQ + permuted - 1) / permuted, [&](Int64 i) {
      for (Int64 j = i * permuted + 1; j <= std::min(NEQ, (i + 1) * permuted); ++j)
        WRHS_(f_.INVP(j)) = SOLUTION_(j);
    });
    me.share(RANGES_.length(), [&](Int64 i) { forwardRange(rowsOf(me), RANGES_(ORDER_(i + 1))); });
    forwardTop(me);
    me.meet();
    me.share(TOP_.length() + RANGES_.length(), [&](Int64 i) {
      if (i < TOP_.length()) return backwardFront(rowsOf(me), DOWNWARDS_(i + 1));
      const SolveRange& r = RANGES_(ORDER_(i - TOP_.length() + 1));
      await(r.parent);
      for (Int k = r.last; k >= r.first; --k) backward(rowsOf(me), k);
    });
  }

 private:
  /// A supernode's rows, in order: its list, its first column, its sizes.
  struct Rows {
    const Int* list;
    Int first;
    Int64 w, c;
  };
  Rows rows(Int k) const {
    return {f_.LINDX.data() + (f_.XLINDX(k) - 1), f_.XSUP(k), f_.XSUP(k + 1) - f_.XSUP(k),
            f_.XLINDX(k + 1) - f_.XLINDX(k)};
  }
  const double* block(Int k) const { return L_ + (f_.ASTART(k) - 1); }
  double* rowsOf(const Worker& me) const { return rows_ + me.number() * rowsOfWorker_; }
  void keep(const Rows& r, const double* y) {
    for (Int64 i = 0; i < r.w; ++i) WRHS_(r.first + i) = y[i];
  }

  void forwardRange(double* y, const SolveRange& range) {
    double* waiting = crossing_ + range.crossing;
    const Int behind = f_.XSUP(range.last + 1);
    for (Int k = range.first; k <= range.last; ++k) {
      const Rows r = rows(k);
      forward(y, k, r);
      for (Int64 i = r.w; i < r.c; ++i)
        if (r.list[i] < behind)
          WRHS_(r.list[i]) += y[i];
        else
          *waiting++ = y[i];
    }
  }

  void forward(double* y, Int k, const Rows& r) {
    for (Int64 i = 0; i < r.w; ++i) y[i] = WRHS_(r.first + i);
    kernels_.forward(block(k), r.w, r.c, y);
    keep(r, y);
  }

  /// first, end: places in CROSSING.
  void addWaiting(Int64 first, Int64 end) {
    for (Int64 t = first; t < end; ++t) WRHS_(CROSSROWS_(t + 1)) += crossing_[t];
  }

  /// One thread walks the top; the others join it at the fronts that are divided.
  void forwardTop(Worker& me) {
    double* const y = rows_;
    Int64 range = 1, added = 0;
    for (Int64 i = 1; i <= TOP_.length(); ++i) {
      const Int k = TOP_(i).supernode;
      const Rows r = rows(k);
      const bool shared = TOP_(i).shared;
      while (range <= RANGES_.length() && RANGES_(range).last < k) ++range;
      const Int64 end = range <= RANGES_.length() ? RANGES_(range).crossing : CROSSROWS_.length();
      if (me.number() == 0) addWaiting(added, end);
      added = end;
      if (shared)
        forwardShared(me, y, k, r);
      else if (me.number() == 0)
        forward(y, k, r);
      if (me.number() == 0)
        for (Int64 j = r.w; j < r.c; ++j) WRHS_(r.list[j]) += y[j];
    }
  }

  void forwardShared(Worker& me, double* y, Int k, const Rows& r) {
    if (me.number() == 0)
      for (Int64 i = 0; i < r.w; ++i) y[i] = WRHS_(r.first + i);
    for (Int64 first = 0; first < r.w; first += panelWidth) {
      const Int64 last = std::min(first + panelWidth, r.w);
      if (me.number() == 0) kernels_.forwardTop(block(k), r.c, first, last, y);
      me.meet();
      const Int64 height = std::max(leastRows, linesOf((r.c - last) / (2 * me.count())));
      me.share((r.c - last + height - 1) / height, [&](Int64 i) {
        const Int64 from = last + i * height;
        kernels_.forwardRows(block(k), r.w, r.c, first, last, from, std::min(from + height, r.c), y);
      });
    }
    if (me.number() == 0) keep(r, y);
  }

  void backward(double* y, Int k) {
    const Rows r = rows(k);
    for (Int64 i = 0; i < r.w; ++i) y[i] = WRHS_(r.first + i) / D_[r.first + i - 1];
    for (Int64 i = r.w; i < r.c; ++i) y[i] = WRHS_(r.list[i]);
    kernels_.backward(block(k), r.w, r.c, y);
    keep(r, y);
    for (Int64 i = 0; i < r.w; ++i) SOLUTION_(f_.PERM(r.first + i)) = y[i];
  }

  void backwardFront(double* y, Int i) {
    await(TOP_(i).parent);
    backward(y, TOP_(i).supernode);
    ENDED_(i).store(1, std::memory_order_release);
  }
  /// Another worker has taken the parent before. i: in TOP, 0: none.
  void await(Int i) const {
    while (i > 0 && ENDED_(i).load(std::memory_order_acquire) == 0) std::this_thread::yield();
  }

  const DenseKernels& kernels_;
  const FactorStructure& f_;
  const Vector<const SolveRange> RANGES_;
  const Vector<const Int> ORDER_, DOWNWARDS_;
  const Vector<const SolveFront> TOP_;
  const Vector<std::atomic<Int>> ENDED_;
  const Vector<const Int> CROSSROWS_;
  double *const crossing_, *const rows_;
  const Int64 rowsOfWorker_;
  const double *const D_, *const L_;
  const Vector<double> WRHS_, SOLUTION_;
};

}  // namespace

void solveInTeam(const DenseKernels& kernels, const FactorStructure& f, FactorTeam& team,
                 Vector<const double> RWORK, Vector<double> WRHS, Vector<double> SOLUTION) {
  TeamSolve solve(kernels, f, team, RWORK, WRHS, SOLUTION);
  team.pool->run([&](Worker& me) { solve.work(me); });
}

}  // namespace tornwalzen
