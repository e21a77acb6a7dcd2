// The division of the solves.
#include "sparse/solve_schedule.hpp"

#include <algorithm>

#include "sparse/kernels/front_layout.hpp"
#include "sparse/tree_division.hpp"

namespace tornwalzen {

namespace {

// Measured on one core of a Xeon with AVX-512, in the time that one direction takes for an entry of the factor, 1.3 ns.
// Others differ, and the ratios hold well enough.
constexpr double workOfRow = 2.0;  // gathered, and added back
constexpr double workOfFront = 40.0;
constexpr double workOfMeeting = 750.0;
constexpr double workOfJob = 3.5e4;    // waking the threads
constexpr double sharedEntries = 3e4;  // from which on a front is divided

struct Tree {
  const FactorStructure& f;

  Int64 rows(Int k) const { return f.XLINDX(k + 1) - f.XLINDX(k); }
  Int64 pivots(Int k) const { return f.XSUP(k + 1) - f.XSUP(k); }
  double entries(Int k) const { return static_cast<double>(trapezoidEntries(pivots(k), rows(k))); }
  bool shared(Int k) const { return entries(k) >= sharedEntries; }

  /// In one direction.
  double work(Int k) const { return entries(k) + workOfRow * static_cast<double>(rows(k)) + workOfFront; }
  /// In both, the forward one by all threads where it is shared: they meet twice in a panel.
  double together(Int k, Int threads) const {
    if (!shared(k)) return 2.0 * work(k);
    const double panels = static_cast<double>((pivots(k) + panelWidth - 1) / panelWidth);
    return (1.0 + 1.0 / threads) * work(k) + 2.0 * panels * workOfMeeting;
  }
};

/// The first of supernode k's rows from row `behind` on; they rise.
Int64 firstBehind(const FactorStructure& f, Int k, Int behind) {
  Int64 t = f.XLINDX(k + 1);
  while (t > f.XLINDX(k) && f.LINDX(t - 1) >= behind) --t;
  return t;
}

/// CROSSROWS, and where those of each range begin.
bool listCrossingRows(const FactorStructure& f, SolveSchedule& s) {
  const Vector<SolveRange> RANGES = s.RANGES.vector();
  const auto forEach = [&](const SolveRange& r, auto use) {
    for (Int k = r.first; k <= r.last; ++k)
      use(firstBehind(f, k, f.XSUP(r.last + 1)), Int64{f.XLINDX(k + 1)});
  };
  Int64 count = 0;
  for (Int64 i = 1; i <= RANGES.length(); ++i) {
    RANGES(i).crossing = count;
    forEach(RANGES(i), [&](Int64 first, Int64 end) { count += end - first; });
  }
  if (!s.CROSSROWS.allocate(count)) return false;
  Int* next = s.CROSSROWS.data();
  for (Int64 i = 1; i <= RANGES.length(); ++i)
    forEach(RANGES(i), [&](Int64 first, Int64 end) {
      next = std::copy(f.LINDX.data() + (first - 1), f.LINDX.data() + (end - 1), next);
    });
  return true;
}

/// Parents in the top, and DOWNWARDS.
bool findParents(const FactorStructure& f, Int m, const TreeDivision& division, SolveSchedule& s) {
  OwnArray<Int> PLACE("PLACE");  // in TOP, of a supernode
  if (!PLACE.allocate(m)) return false;
  const Vector<SolveFront> TOP = s.TOP.vector();
  const Vector<Int> DOWNWARDS = s.DOWNWARDS.vector();
  const auto place = [&](Int parent) { return parent > 0 ? PLACE.vector()(parent) : 0; };
  for (Int i = 1; i <= TOP.length(); ++i) PLACE.vector()(TOP(i).supernode) = DOWNWARDS(i) = i;
  for (Int i = 1; i <= TOP.length(); ++i) TOP(i).parent = place(f.PARENT(TOP(i).supernode));
  for (Int64 i = 1; i <= s.RANGES.length(); ++i) {
    SolveRange& r = s.RANGES.vector()(i);
    r.parent = place(f.PARENT(r.last));
  }
  std::sort(DOWNWARDS.data(), DOWNWARDS.data() + DOWNWARDS.length(), [&](Int a, Int b) {
    const double workA = division.total(TOP(a).supernode), workB = division.total(TOP(b).supernode);
    return workA != workB ? workA > workB : a > b;
  });
  return true;
}

}  // namespace

Int64 SolveSchedule::bytes() const {
  return static_cast<Int64>(sizeof(SolveRange)) * RANGES.length() +
         static_cast<Int64>(sizeof(Int)) * (ORDER.length() + DOWNWARDS.length() + CROSSROWS.length()) +
         static_cast<Int64>(sizeof(SolveFront)) * TOP.length();
}

bool makeSolveSchedule(const FactorStructure& f, Int m, Int threads, SolveSchedule& s) {
  s = SolveSchedule{};
  const Tree t{f};
  TreeDivision division;
  if (!division.find(
          f, m, threads, workOfJob, [&](Int k) { return 2.0 * t.work(k); },
          [&](Int k) { return t.together(k, threads); }))
    return false;
  if (!division.divides()) return true;
  if (!s.RANGES.allocate(division.ranges()) || !s.ORDER.allocate(division.ranges()) ||
      !s.TOP.allocate(division.top()) || !s.DOWNWARDS.allocate(division.top()))
    return false;
  SolveRange* range = s.RANGES.data();
  SolveFront* front = s.TOP.data();
  division.walk(
      [&](Int first, Int last, double work) {
        *range++ = {first, last, 0, work, 0};
      },
      [&](Int k) {
        *front++ = {k, 0, t.shared(k)};
      });
  orderByWork(s.RANGES.vector(), s.ORDER.vector());
  if (!listCrossingRows(f, s) || !findParents(f, m, division, s)) return false;
  for (Int k = 1; k <= m; ++k) s.largestFront = std::max(s.largestFront, t.rows(k));
  s.divides = true;
  return true;
}

}  // namespace tornwalzen
