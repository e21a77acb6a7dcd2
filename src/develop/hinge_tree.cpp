// Shortest paths of hinges.
#include "develop/hinge_tree.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "ground/own_array.hpp"

namespace tornwalzen {

namespace {

constexpr double edgeCost = 1e-3;  // radians: what an edge costs where the sheet is flat
constexpr double halfTurn = 3.14159265358979323846;

struct Waiting {
  double cost;
  Int e;
};

/// Of the heap: the cheapest first, then the lowest number.
bool later(const Waiting& a, const Waiting& b) {
  return a.cost != b.cost ? a.cost > b.cost : a.e > b.e;
}

double foldAngle(Table<const double> N, Int e, Int f) {
  const double x = N(2, e) * N(3, f) - N(3, e) * N(2, f), y = N(3, e) * N(1, f) - N(1, e) * N(3, f),
               z = N(1, e) * N(2, f) - N(2, e) * N(1, f);
  const double dot = N(1, e) * N(1, f) + N(2, e) * N(2, f) + N(3, e) * N(3, f);
  return std::atan2(std::sqrt(x * x + y * y + z * z), dot);
}

/// Direction (radians) of half edge h in its triangle's own axes.
double sideDirection(const PartMesh& M, Int h) {
  const Int e = halfEdgeTriangle(h), k = (h - 1) % 3 + 1;
  if (k == 1) return 0.0;
  double pp = 0.0, pq = 0.0, qq = 0.0;
  for (Int i = 1; i <= 3; ++i) {
    const double P = M.KNG(M.INTA(e, 2), i) - M.KNG(M.INTA(e, 1), i);
    const double Q = M.KNG(M.INTA(e, 3), i) - M.KNG(M.INTA(e, 1), i);
    pp += P * P;
    pq += P * Q;
    qq += Q * Q;
  }
  const double height = std::sqrt(std::fmax(pp * qq - pq * pq, 0.0));  // times |P|, as are the others
  return k == 2 ? std::atan2(height, pq - pp) : std::atan2(-height, -pq);
}

}  // namespace

bool carryRotations(const PartMesh& M, Vector<const Int> TWIN, Table<const double> NORMALS, Vector<Int> KNOWN,
                    Vector<double> ANGLE) {
  const Int elements = M.nele;
  OwnArray<Waiting> heap("HEAP");
  OwnArray<double> cost("COST");
  OwnArray<Int> from("FROM");  // the half edge that a triangle hangs on, where its angle is not given
  if (!heap.allocate(3 * Int64{elements}) || !cost.allocate(elements) || !from.allocate(elements))
    return false;
  Waiting* const first = heap.data();
  Waiting* last = first;
  const Vector<double> COST = cost.vector();
  const Vector<Int> FROM = from.vector();
  for (Int e = 1; e <= elements; ++e) COST(e) = KNOWN(e) != 0 ? 0.0 : std::numeric_limits<double>::infinity();
  const auto reachNeighbours = [&](Int e) {
    for (Int h = 3 * e - 2; h <= 3 * e; ++h) {
      if (TWIN(h) == 0) continue;
      const Int f = halfEdgeTriangle(TWIN(h));
      if (KNOWN(f) != 0) continue;
      const double reached = COST(e) + foldAngle(NORMALS, e, f) + edgeCost;
      if (!(reached < COST(f))) continue;
      COST(f) = reached;
      FROM(f) = TWIN(h);
      *last++ = {reached, f};
      std::push_heap(first, last, later);
    }
  };
  for (Int e = 1; e <= elements; ++e)
    if (KNOWN(e) != 0) reachNeighbours(e);
  while (last > first) {
    std::pop_heap(first, last, later);
    const Int e = (--last)->e;
    if (KNOWN(e) != 0) continue;
    KNOWN(e) = 1;
    const Int h = FROM(e);
    ANGLE(e) = ANGLE(halfEdgeTriangle(TWIN(h))) + sideDirection(M, TWIN(h)) + halfTurn - sideDirection(M, h);
    reachNeighbours(e);
  }
  return true;
}

}  // namespace tornwalzen
