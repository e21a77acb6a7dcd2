// The division of the elimination, and the places of its fronts and update matrices.
#include "sparse/factor_schedule.hpp"

#include <algorithm>

#include "sparse/tree_division.hpp"

namespace tornwalzen {

namespace {

// Measured on one core of a Xeon with AVX-512: a front's operations run at 65 GFLOP/s, an entry of it is cleared,
// added and moved in 2 ns, threads meet in 1 µs. Others differ, and the ratios hold well enough.
constexpr double workOfEntry = 130.0;
constexpr double workOfFront = 1.3e4;
constexpr double workOfMeeting = 6.5e4;
constexpr double workOfJob = 3.0e6;  // waking the threads

struct Tree {
  const FactorStructure& f;
  Int m;

  Int64 rows(Int k) const { return f.XLINDX(k + 1) - f.XLINDX(k); }
  Int64 pivots(Int k) const { return f.XSUP(k + 1) - f.XSUP(k); }
  Int64 updateRows(Int k) const { return rows(k) - pivots(k); }
  double own(Int k) const { return frontWork(rows(k), pivots(k)); }
  /// What a front takes of the time of all threads together when they share it; they meet thrice in a panel.
  double shared(Int k, Int threads) const {
    const double panels = static_cast<double>((pivots(k) + panelWidth - 1) / panelWidth);
    return own(k) / threads + (3.0 * panels + 4.0) * workOfMeeting;
  }
};

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

/// Fills ORDER, and of RANGES what they need.
bool layRanges(const Tree& t, FactorSchedule& s) {
  OwnArray<Int64> ONSTACK("ONSTACK");
  if (!ONSTACK.allocate(t.m)) return false;
  ONSTACK.fill(0);
  const Vector<SubtreeRange> RANGES = s.RANGES.vector();
  for (Int i = 1; i <= RANGES.length(); ++i) {
    SubtreeRange& r = RANGES(i);
    Int64 left;
    s.rangeSpace = std::max(s.rangeSpace, spaceOf(t, r, ONSTACK.vector(), left) + 2 * frontAlignment);
    r.updatesEnd = s.updates += left;
  }
  s.rangeSpace = linesOf(s.rangeSpace);
  orderByWork(RANGES, s.ORDER.vector());
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

/// Fills TOP and CHILDREN: places of the update matrices, the space of the top.
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
    top.shared = t.shared(top.supernode, threads) < t.own(top.supernode);
  }
  s.topSpace = stack + most;
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
         static_cast<Int64>(sizeof(Int)) * ORDER.length() +
         static_cast<Int64>(sizeof(TopFront)) * TOP.length() +
         static_cast<Int64>(sizeof(TopChild)) * CHILDREN.length();
}

bool makeSchedule(const FactorStructure& f, Int m, Int threads, FactorSchedule& s) {
  s = FactorSchedule{};
  const Tree t{f, m};
  TreeDivision division;
  if (!division.find(
          f, m, threads, workOfJob, [&](Int k) { return t.own(k); },
          [&](Int k) { return std::min(t.own(k), t.shared(k, threads)); }))
    return false;
  if (!division.divides()) return true;
  if (!s.RANGES.allocate(division.ranges()) || !s.ORDER.allocate(division.ranges()) ||
      !s.TOP.allocate(division.top()))
    return false;
  SubtreeRange* range = s.RANGES.data();
  TopFront* front = s.TOP.data();
  Int64 children = 0;
  division.walk(
      [&](Int first, Int last, double work) {
        *range++ = {first, last, work, 0};
      },
      [&](Int k) {
        *front++ = {k, false, 0, 0};
        children += f.NCHILD(k);
      });
  if (!s.CHILDREN.allocate(children) || !layRanges(t, s) || !layTop(t, threads, s)) return false;
  s.divides = true;
  return true;
}

}  // namespace tornwalzen
