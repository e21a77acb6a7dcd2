// Selection of the elements that an evaluation of the unfolding has to visit.
#include "develop/visited_elements.hpp"

#include <new>

namespace tornwalzen {

VisitedElements::VisitedElements(Int nele, bool selectable)
    : list_(selectable ? new (std::nothrow) Int[nele > 0 ? nele : 1] : nullptr), all_(nele), count_(nele) {}

void VisitedElements::select(const DriverArrays& a) {
  if (!list_) return;
  const auto moves = [&a](Int n) { return a.RB(2 * n - 1) != 0.0 || a.RB(2 * n) != 0.0; };
  Int count = 0;
  for (Int e = 1; e <= all_; ++e)
    if (a.ELG(e, 4) != 0.0 || moves(a.INTA(e, 1)) || moves(a.INTA(e, 2)) || moves(a.INTA(e, 3)))
      list_[count++] = e;
  count_ = count;
  selected_ = true;
}

}  // namespace tornwalzen
