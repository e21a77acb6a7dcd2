// Selection of the elements that an evaluation of the unfolding has to visit.
#include "develop/visited_elements.hpp"

#include <new>

#include "ground/run_state.hpp"

namespace tornwalzen {

VisitedElements::VisitedElements() : count_(run.nele) {}

VisitedElements::VisitedElements(Int nele)
    : list_(new (std::nothrow) Int[nele > 0 ? nele : 1]), count_(nele) {}

void VisitedElements::select(const DriverArrays& a) {
  if (!list_) return;
  const auto moves = [&a](Int n) { return a.RB(2 * n - 1) != 0.0 || a.RB(2 * n) != 0.0; };
  Int count = 0;
  for (Int e = 1; e <= run.nele; ++e)
    if (a.ELG(e, 4) != 0.0 || moves(a.INTA(e, 1)) || moves(a.INTA(e, 2)) || moves(a.INTA(e, 3)))
      list_[count++] = e;
  count_ = count;
  selected_ = true;
}

}  // namespace tornwalzen
