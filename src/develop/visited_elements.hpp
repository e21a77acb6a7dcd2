// The elements that an evaluation of the unfolding has to visit.
//
// Far from the walls nothing moves: an element that no node of which moves keeps its area ratio, and one
// without a penalty adds exactly nothing to objective, forces, worst measure and count of degenerate
// elements. Leaving out the elements that do not move and carry no penalty changes no bit of these sums, and
// the cost of an evaluation follows what the descent still has to open.
#pragma once

#include <memory>

#include "ground/driver_arrays.hpp"

namespace tornwalzen {

class VisitedElements {
 public:
  /// All elements 1..nele until the first `select`. Owns a list of nele integers; where it cannot be had, or is not
  /// wanted, the object stays with all elements for good: `select` then changes nothing.
  explicit VisitedElements(Int nele, bool selectable = true);

  /// Restricts the visit to the elements that move along a.RB or carry a penalty. a.INTA: in, incidences;
  /// a.RB: in, direction (mm); a.ELG: in, column 4 the penalties at the current a.RX.
  void select(const DriverArrays& a);

  Int count() const { return count_; }
  /// The s-th visited element, s = 1..count(); rising with s, so that sums keep the order of the elements.
  Int operator()(Int s) const { return selected_ ? list_[s - 1] : s; }

 private:
  std::unique_ptr<Int[]> list_;
  Int all_, count_;
  bool selected_ = false;
};

}  // namespace tornwalzen
