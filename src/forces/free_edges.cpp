// Sides without a neighbour.
#include "forces/free_edges.hpp"

#include <initializer_list>

namespace tornwalzen {

void symmetryPlanes(Table<const Int> INTA, Table<const Int> TWIN, Vector<const Int> ARFA, Vector<Int> PLANE) {
  for (Int64 i = 1; i <= PLANE.length(); ++i) PLANE(i) = 0;
  for (Int e = 1; e <= INTA.rows(); ++e)
    for (Int k = 1; k <= 3; ++k) {
      if (TWIN(k, e) != 0) continue;
      const Int a = INTA(e, k), b = INTA(e, k % 3 + 1);
      for (Int axis = 1; axis >= 0; --axis)
        if (ARFA(2 * a - axis) == 0 && ARFA(2 * b - axis) == 0) PLANE(2 * a - axis) = PLANE(2 * b - axis) = 1;
    }
}

bool freeSide(Table<const Int> INTA, Table<const Int> TWIN, Vector<const Int> PLANE, Int e, Int k) {
  if (TWIN(k, e) != 0) return false;
  const Int a = INTA(e, k), b = INTA(e, k % 3 + 1);
  return (PLANE(2 * a - 1) & PLANE(2 * b - 1)) == 0 && (PLANE(2 * a) & PLANE(2 * b)) == 0;
}

void addEdgeLoads(Table<const Int> INTA, Table<const Int> TWIN, Vector<const Int> PLANE,
                  Vector<const double> WORK, Vector<const double> RX, Vector<double> LOAD) {
  for (Int e = 1; e <= INTA.rows(); ++e)
    for (Int k = 1; k <= 3; ++k) {
      if (!freeSide(INTA, TWIN, PLANE, e, k)) continue;
      const Int a = INTA(e, k), b = INTA(e, k % 3 + 1);
      const double u = WORK(e) * (RX(2 * b) - RX(2 * a)), v = -WORK(e) * (RX(2 * b - 1) - RX(2 * a - 1));
      for (const Int n : {a, b}) {
        LOAD(2 * n - 1) += u;
        LOAD(2 * n) += v;
      }
    }
}

}  // namespace tornwalzen
