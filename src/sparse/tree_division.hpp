// The elimination tree divided among threads: below, ranges of whole subtrees, which know nothing of each other; above,
// the top, front by front. Found from what is predicted of each supernode; no sum depends on it.
#pragma once

#include <algorithm>

#include "ground/own_array.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

class TreeDivision {
 public:
  /// f: in, the structure of m supernodes; WORK outlives this object. threads: in, 2..mostThreads. start: in, what it
  /// takes to call the threads. own(k): what supernode k takes on one thread; together(k): what it takes of the time of
  /// all where it is in the top; all > 0 and in one unit. False without memory.
  template <class Own, class Together>
  [[nodiscard]] bool find(const FactorStructure& f, Int m, Int threads, double start, Own own,
                          Together together) {
    if (!allocate(f, m)) return false;
    for (Int k = 1; k <= m; ++k) {
      OWN_.data()[k - 1] = own(k);
      TOGETHER_.data()[k - 1] = together(k);
    }
    choose(threads, start);
    return true;
  }

  /// Is it faster than one thread alone? Else nothing below is of use.
  bool divides() const { return limit_ > 0.0; }
  Int64 ranges() const { return ranges_; }
  Int64 top() const { return top_; }
  /// What supernode k takes with its descendants.
  double total(Int k) const { return TOTAL_.data()[k - 1]; }

  /// Calls onRange(first, last, work) and onTop(k) in ascending order, for consecutive supernodes and with each all its
  /// descendants, and for each front of the top.
  template <class OnRange, class OnTop>
  void walk(OnRange onRange, OnTop onTop) const {
    divide(limit_, onRange, onTop);
  }

 private:
  bool allocate(const FactorStructure& f, Int m);
  void choose(Int threads, double start);
  double predict(double limit, Int threads, double start);

  /// The supernodes with more than `limit` work below them are the top, what lies between them goes into ranges of half
  /// that work.
  template <class OnRange, class OnTop>
  void divide(double limit, OnRange onRange, OnTop onTop) const {
    Int first = 1;
    double work = 0.0;
    const auto isTop = [&](Int k) { return total(k) > limit; };
    const auto close = [&](Int last) {
      if (last >= first) onRange(first, last, work);
      first = last + 1;
      work = 0.0;
    };
    for (Int k = 1; k <= m_; ++k) {
      if (isTop(k)) {
        close(k - 1);
        onTop(k);
        first = k + 1;
        continue;
      }
      work += OWN_.data()[k - 1];
      const Int parent = PARENT_(k);
      if ((parent == 0 || isTop(parent)) && work > 0.5 * limit) close(k);
    }
    close(m_);
  }

  Vector<const Int> PARENT_;
  Int m_ = 0;
  OwnArray<double> OWN_{"OWN"}, TOGETHER_{"TOGETHER"}, TOTAL_{"TOTAL"};
  OwnArray<double> LOADS_{"LOADS"};  // works of ranges
  double limit_ = 0.0;
  Int64 ranges_ = 0, top_ = 0;
};

/// ORDER: out, the numbers of RANGES by falling work, the order in which they are begun.
template <class Range>
void orderByWork(Vector<Range> RANGES, Vector<Int> ORDER) {
  for (Int i = 1; i <= RANGES.length(); ++i) ORDER(i) = i;
  std::sort(ORDER.data(), ORDER.data() + ORDER.length(), [&](Int a, Int b) {
    return RANGES(a).work != RANGES(b).work ? RANGES(a).work > RANGES(b).work : a < b;
  });
}

}  // namespace tornwalzen
