// The division follows what is predicted: the ranges by the list rule (R. L. Graham, Bounds on multiprocessing timing
// anomalies, SIAM J. Appl. Math. 17, 1969), largest first, and the top with all threads on each front.
#include "sparse/factor_schedule.hpp"

#include <algorithm>
#include <functional>

#include "ground/thread_pool.hpp"

namespace tornwalzen {

namespace {

// Measured on one core of a Xeon with AVX-512: a front's operations run at 65 GFLOP/s, an entry of it is cleared,
// added and moved in 2 ns, threads meet in 1 µs. Others differ, and the ratios hold well enough.
constexpr double workOfEntry = 130.0;
constexpr double workOfFront = 1.3e4;
constexpr double workOfMeeting = 6.5e4;
constexpr double workOfJob = 3.0e6;  // waking the threads
constexpr Int fineness = 8;          // divisions that are tried, each with half the work in a range

struct Tree {
  const FactorStructure& f;
  Int m;
  Vector<double> OWN;    // work of each supernode,
  Vector<double> TOTAL;  // and with its descendants

  Int64 rows(Int k) const { return f.XLINDX(k + 1) - f.XLINDX(k); }
  Int64 pivots(Int k) const { return f.XSUP(k + 1) - f.XSUP(k); }
  Int64 updateRows(Int k) const { return rows(k) - pivots(k); }
};

/// Calls onRange(first, last, work) and onTop(k) in ascending order: the supernodes with more than `limit` work below
/// them are the top, what lies between them goes into ranges of half that work.
template <class OnRange, class OnTop>
void divide(const Tree& t, double limit, OnRange onRange, OnTop onTop) {
  Int first = 1;
  double work = 0.0;
  const auto isTop = [&](Int k) { return t.TOTAL(k) > limit; };
  const auto close = [&](Int last) {
    if (last >= first) onRange(first, last, work);
    first = last + 1;
    work = 0.0;
  };
  for (Int k = 1; k <= t.m; ++k) {
    if (isTop(k)) {
      close(k - 1);
      onTop(k);
      first = k + 1;
      continue;
    }
    work += t.OWN(k);
    const Int parent = t.f.PARENT(k);
    if ((parent == 0 || isTop(parent)) && work > 0.5 * limit) close(k);
  }
  close(t.m);
}

struct Counts {
  Int64 ranges = 0, top = 0, children = 0;
};

Counts count(const Tree& t, double limit) {
  Counts n;
  divide(
      t, limit, [&](Int, Int, double) { ++n.ranges; },
      [&](Int k) {
        ++n.top;
        n.children += t.f.NCHILD(k);
      });
  return n;
}

/// What a front takes of the time of all threads together when they share it; they meet thrice in a panel.
double sharedWork(const Tree& t, Int k, Int threads) {
  const double panels = static_cast<double>((t.pivots(k) + panelWidth - 1) / panelWidth);
  return t.OWN(k) / threads + (3.0 * panels + 4.0) * workOfMeeting;
}

/// When the last thread ends its ranges. LOADS: in, falling works of the ranges.
double lastEnd(Vector<const double> LOADS, Int threads) {
  double end[mostThreads] = {};
  for (Int64 i = 1; i <= LOADS.length(); ++i) *std::min_element(end, end + threads) += LOADS(i);
  return *std::max_element(end, end + threads);
}

/// Predicted time of the division. LOADS: scratch, m.
double predict(const Tree& t, double limit, Int threads, Vector<double> LOADS) {
  Int64 ranges = 0;
  double top = workOfJob;
  divide(
      t, limit, [&](Int, Int, double work) { LOADS(++ranges) = work; },
      [&](Int k) { top += std::min(t.OWN(k), sharedWork(t, k, threads)); });
  std::sort(LOADS.data(), LOADS.data() + ranges, std::greater<>());
  return top + lastEnd({"LOADS", LOADS.data(), ranges}, threads);
}

/// Doubles for the fronts and the stack of a range. left: out, those of its roots' update matrices, which lie elsewhere.
/// ONSTACK: scratch, zero on entry and on return.
Int64 spaceOf(const Tree& t, const SubtreeRange& r, Vector<Int64> ONSTACK, Int64& left) {
  Int64 stack = 0, peak = 0;
  left = 0;
  for (Int k = r.first; k <= r.last; ++k) {
    const Int64 c = t.rows(k), own = updateDoubles(t.updateRows(k)), others = stack - ONSTACK(k);
    ONSTACK(k) = 0;
    peak = std::max(peak, frontDoubles(c, t.pivots(k)) + std::max(stack, others + packingDoubles(c)));
    const Int parent = t.f.PARENT(k);
    const bool leaves = parent == 0 || parent > r.last;
    stack = others + (leaves ? 0 : own);
    (leaves ? left : ONSTACK(parent)) += own;
  }
  return peak;
}

/// Rows behind the range in the lists of its supernodes.
Int64 crossingRows(const Tree& t, const SubtreeRange& r) {
  const Int behind = t.f.XSUP(r.last + 1);
  Int64 rows = 0;
  for (Int k = r.first; k <= r.last; ++k)
    for (Int64 i = t.f.XLINDX(k + 1) - 1; i >= t.f.XLINDX(k) && t.f.LINDX(i) >= behind; --i) ++rows;
  return rows;
}

/// Fills RANGES and ORDER, and what they need.
bool layRanges(const Tree& t, FactorSchedule& s) {
  OwnArray<Int64> ONSTACK("ONSTACK");
  if (!ONSTACK.allocate(t.m)) return false;
  ONSTACK.fill(0);
  const Vector<SubtreeRange> RANGES = s.RANGES.vector();
  const Vector<Int> ORDER = s.ORDER.vector();
  for (Int i = 1; i <= RANGES.length(); ++i) {
    SubtreeRange& r = RANGES(i);
    Int64 left;
    s.rangeSpace = std::max(s.rangeSpace, spaceOf(t, r, ONSTACK.vector(), left) + 2 * frontAlignment);
    r.updatesEnd = s.updates += left;
    r.crossing = s.crossing;
    s.crossing += crossingRows(t, r);
    ORDER(i) = i;
  }
  s.rangeSpace = linesOf(s.rangeSpace);
  std::sort(ORDER.data(), ORDER.data() + ORDER.length(), [&](Int a, Int b) {
    return RANGES(a).work != RANGES(b).work ? RANGES(a).work > RANGES(b).work : a < b;
  });
  return true;
}

/// The update matrices on the stack as one thread would have them, while the top is walked through.
class WaitingUpdates {
 public:
  bool allocate(Int64 most) { return SUPERNODE_.allocate(most) && PLACE_.allocate(most); }
  void push(Int k, Int64 place) {
    SUPERNODE_.vector()(++count_) = k;
    PLACE_.vector()(count_) = place;
  }
  TopChild pop() {
    --count_;
    return {SUPERNODE_.vector()(count_ + 1), PLACE_.vector()(count_ + 1)};
  }

 private:
  OwnArray<Int> SUPERNODE_{"SUPERNODE"};
  OwnArray<Int64> PLACE_{"PLACE"};
  Int64 count_ = 0;
};

/// The roots of a range, the first one deepest in its update matrices.
void pushRoots(const Tree& t, const SubtreeRange& r, WaitingUpdates& waiting) {
  Int64 end = r.updatesEnd;
  for (Int k = r.first; k <= r.last; ++k) {
    if (t.f.PARENT(k) == 0 || t.f.PARENT(k) <= r.last) continue;
    end -= updateDoubles(t.updateRows(k));
    waiting.push(k, end);
  }
}

/// Fills TOP and CHILDREN: places of the update matrices, the space of the top. limit: in, as for divide.
bool layTop(const Tree& t, Int threads, FactorSchedule& s) {
  WaitingUpdates waiting;
  if (!waiting.allocate(t.m)) return false;
  const Vector<TopFront> TOP = s.TOP.vector();
  const Vector<SubtreeRange> RANGES = s.RANGES.vector();
  Int64 front = 0, scaled = 0;
  for (Int64 i = 1; i <= TOP.length(); ++i) {
    const Int64 c = t.rows(TOP(i).supernode);
    front = std::max(front, linesOf(frontDoubles(c, t.pivots(TOP(i).supernode))));
    scaled = std::max(scaled, linesOf(scaledDoubles(c)));
  }
  s.topPacking = front;
  s.topScaled = scaled;
  const Int64 stack = s.topPacking + scaled + threads * packedRowsDoubles(rowsOfBlock);
  Int64 used = 0, most = 0, child = 0, range = 1;
  for (Int64 i = 1; i <= TOP.length(); ++i) {
    TopFront& top = TOP(i);
    for (; range <= RANGES.length() && RANGES(range).last < top.supernode; ++range)
      pushRoots(t, RANGES(range), waiting);
    top.firstChild = child + 1;
    for (Int n = 0; n < t.f.NCHILD(top.supernode); ++n) {
      const TopChild popped = waiting.pop();
      s.CHILDREN.vector()(++child) = popped;
      if (popped.update >= s.space()) used -= updateDoubles(t.updateRows(popped.supernode));
    }
    top.update = s.space() + stack + used;
    used += updateDoubles(t.updateRows(top.supernode));
    most = std::max(most, used);
    if (t.f.PARENT(top.supernode) > 0) waiting.push(top.supernode, top.update);
    top.shared = sharedWork(t, top.supernode, threads) < t.OWN(top.supernode);
  }
  s.topSpace = stack + most;
  return true;
}

/// Parents in the top, and DOWNWARDS.
bool findParents(const Tree& t, FactorSchedule& s) {
  OwnArray<Int> PLACE("PLACE");  // in TOP, of a supernode
  if (!PLACE.allocate(t.m)) return false;
  const Vector<TopFront> TOP = s.TOP.vector();
  const Vector<Int> DOWNWARDS = s.DOWNWARDS.vector();
  const auto place = [&](Int parent) { return parent > 0 ? PLACE.vector()(parent) : 0; };
  for (Int i = 1; i <= TOP.length(); ++i) PLACE.vector()(TOP(i).supernode) = DOWNWARDS(i) = i;
  for (Int i = 1; i <= TOP.length(); ++i) TOP(i).parent = place(t.f.PARENT(TOP(i).supernode));
  for (Int64 i = 1; i <= s.RANGES.length(); ++i) {
    SubtreeRange& r = s.RANGES.vector()(i);
    r.parent = place(t.f.PARENT(r.last));
  }
  std::sort(DOWNWARDS.data(), DOWNWARDS.data() + DOWNWARDS.length(), [&](Int a, Int b) {
    const double workA = t.TOTAL(TOP(a).supernode), workB = t.TOTAL(TOP(b).supernode);
    return workA != workB ? workA > workB : a > b;
  });
  return true;
}

}  // namespace

double frontWork(Int64 c, Int64 w) {
  // Σ r(r + 2) over the rows r below each pivot, c - w .. c - 1
  const auto upTo = [](double r) { return r * (r + 1.0) * (2.0 * r + 1.0) / 6.0 + r * (r + 1.0); };
  const double rows = static_cast<double>(c);
  return upTo(rows - 1.0) - upTo(rows - 1.0 - static_cast<double>(w)) + workOfEntry * 0.5 * rows * rows +
         workOfFront;
}

Int64 FactorSchedule::bytes() const {
  return static_cast<Int64>(sizeof(SubtreeRange)) * RANGES.length() +
         static_cast<Int64>(sizeof(Int)) * (ORDER.length() + DOWNWARDS.length()) +
         static_cast<Int64>(sizeof(TopFront)) * TOP.length() +
         static_cast<Int64>(sizeof(TopChild)) * CHILDREN.length();
}

bool makeSchedule(const FactorStructure& f, Int m, Int threads, FactorSchedule& s) {
  s = FactorSchedule{};
  OwnArray<double> OWN("OWN"), TOTAL("TOTAL"), LOADS("LOADS");
  if (!OWN.allocate(m) || !TOTAL.allocate(m, 0.0) || !LOADS.allocate(m)) return false;
  const Tree t{f, m, OWN.vector(), TOTAL.vector()};
  double all = 0.0;
  for (Int k = 1; k <= m; ++k) {
    t.OWN(k) = frontWork(t.rows(k), t.pivots(k));
    all += t.OWN(k);
    t.TOTAL(k) += t.OWN(k);
    if (f.PARENT(k) > 0) t.TOTAL(f.PARENT(k)) += t.TOTAL(k);
    s.largestFront = std::max(s.largestFront, t.rows(k));
  }

  double best = all, limit = 0.0, tried = all / threads;
  for (Int step = 0; step < fineness; ++step, tried *= 0.5) {
    const double time = predict(t, tried, threads, LOADS.vector());
    if (time < best) {
      best = time;
      limit = tried;
    }
  }
  if (limit == 0.0) return true;

  const Counts n = count(t, limit);
  if (!s.RANGES.allocate(n.ranges) || !s.ORDER.allocate(n.ranges) || !s.TOP.allocate(n.top) ||
      !s.DOWNWARDS.allocate(n.top) || !s.CHILDREN.allocate(n.children))
    return false;
  Int64 range = 0, top = 0;
  divide(
      t, limit,
      [&](Int first, Int last, double work) { s.RANGES.vector()(++range) = {first, last, 0, work, 0, 0}; },
      [&](Int k) {
        s.TOP.vector()(++top) = {k, false, 0, 0, 0};
      });
  if (!layRanges(t, s) || !layTop(t, threads, s) || !findParents(t, s)) return false;
  s.divides = true;
  return true;
}

}  // namespace tornwalzen
