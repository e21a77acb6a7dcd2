// Edges of a triangle mesh, by counting sorts.
#include "develop/mesh_edges.hpp"

#include <algorithm>

namespace tornwalzen {

namespace {

Int lowerNode(const PartMesh& M, Int h) {
  return std::min(halfEdgeStart(M, h), halfEdgeEnd(M, h));
}
Int upperNode(const PartMesh& M, Int h) {
  return std::max(halfEdgeStart(M, h), halfEdgeEnd(M, h));
}

/// Turns the counts of keys 1..n in PLACE(2..n+1) into the first position of each key in PLACE(1..n).
void firstPositions(Vector<Int> PLACE) {
  PLACE(1) = 1;
  for (Int64 i = 2; i <= PLACE.length(); ++i) PLACE(i) += PLACE(i - 1);
}

}  // namespace

bool sortHalfEdges(const PartMesh& M, OwnArray<Int>& ORDER) {
  const Int nh = 3 * M.nele;
  OwnArray<Int> places("PLACE"), byUpper("BYUPPER");
  if (!ORDER.allocate(nh) || !byUpper.allocate(nh) || !places.allocate(Int64{M.nkno} + 1, 0)) return false;
  const Vector<Int> PLACE = places.vector(), FIRST = byUpper.vector(), SORTED = ORDER.vector();
  for (Int h = 1; h <= nh; ++h) ++PLACE(upperNode(M, h) + 1);
  firstPositions(PLACE);
  for (Int h = 1; h <= nh; ++h) FIRST(PLACE(upperNode(M, h))++) = h;
  for (Int n = 1; n <= M.nkno + 1; ++n) PLACE(n) = 0;
  for (Int h = 1; h <= nh; ++h) ++PLACE(lowerNode(M, h) + 1);
  firstPositions(PLACE);
  for (Int i = 1; i <= nh; ++i) SORTED(PLACE(lowerNode(M, FIRST(i)))++) = FIRST(i);
  return true;
}

bool pairHalfEdges(const PartMesh& M, OwnArray<Int>& TWIN) {
  OwnArray<Int> order("ORDER");
  if (!TWIN.allocate(3 * Int64{M.nele}, 0) || !sortHalfEdges(M, order)) return false;
  const Vector<Int> ORDER = order.vector(), PARTNER = TWIN.vector();
  const Int nh = 3 * M.nele;
  for (Int first = 1, last; first <= nh; first = last + 1) {
    const Int h = ORDER(first), lower = lowerNode(M, h), upper = upperNode(M, h);
    for (last = first; last < nh; ++last)
      if (lowerNode(M, ORDER(last + 1)) != lower || upperNode(M, ORDER(last + 1)) != upper) break;
    if (last != first + 1) continue;
    PARTNER(h) = ORDER(last);
    PARTNER(ORDER(last)) = h;
  }
  return true;
}

}  // namespace tornwalzen
