// Sides sorted by their smaller node; in each of these short lists those with the same larger node are neighbours.
#include "develop/neighbours.hpp"

#include <algorithm>

namespace tornwalzen {

void findNeighbours(Int nodes, Table<const Int> INTA, Vector<Int> SCRATCH, Table<Int> NEIGHBOUR,
                    Table<Int> SIDE) {
  const Int elements = static_cast<Int>(NEIGHBOUR.columns());
  const Vector<Int> START("START", SCRATCH.data(), Int64{nodes} + 1);
  const Vector<Int> SIDES("SIDES", SCRATCH.data() + nodes + 1, 3 * Int64{elements});
  const auto smaller = [&](Int e, Int k) { return std::min(INTA(e, k), INTA(e, k % 3 + 1)); };
  const auto larger = [&](Int side) {
    const Int e = (side - 1) / 3 + 1, k = (side - 1) % 3 + 1;
    return std::max(INTA(e, k), INTA(e, k % 3 + 1));
  };

  for (Int n = 1; n <= nodes + 1; ++n) START(n) = 0;
  for (Int e = 1; e <= elements; ++e)
    for (Int k = 1; k <= 3; ++k) {
      NEIGHBOUR(k, e) = SIDE(k, e) = 0;
      ++START(smaller(e, k));
    }
  Int end = 1;
  for (Int n = 1; n <= nodes; ++n) START(n) = end += START(n);
  START(nodes + 1) = end;
  for (Int e = elements; e >= 1; --e)
    for (Int k = 3; k >= 1; --k) SIDES(--START(smaller(e, k))) = 3 * (e - 1) + k;

  for (Int n = 1; n <= nodes; ++n) {
    Int* const first = SIDES.data() + (START(n) - 1);
    Int* const last = SIDES.data() + (START(n + 1) - 1);
    std::sort(first, last, [&](Int a, Int b) {
      const Int la = larger(a), lb = larger(b);
      return la != lb ? la < lb : a < b;
    });
    for (Int* side = first; side + 1 < last; ++side) {
      if (larger(side[0]) != larger(side[1])) continue;
      const Int e = (side[0] - 1) / 3 + 1, k = (side[0] - 1) % 3 + 1;
      const Int f = (side[1] - 1) / 3 + 1, m = (side[1] - 1) % 3 + 1;
      NEIGHBOUR(k, e) = f;
      SIDE(k, e) = m;
      NEIGHBOUR(m, f) = e;
      SIDE(m, f) = k;
    }
  }
}

}  // namespace tornwalzen
