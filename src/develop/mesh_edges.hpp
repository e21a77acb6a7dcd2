// Who shares an edge with whom. Half edge h = 3·(e − 1) + c, c = 1..3, runs in triangle e from corner c to the
// next corner; an edge is all half edges between the same two nodes, whatever their sense.
#pragma once

#include "ground/array_view.hpp"
#include "ground/own_array.hpp"

namespace tornwalzen {

/// A part: the views and how much of them is in use.
struct PartMesh {
  Table<const double> KNG;  // nodes (mm), at least nkno × 3
  Table<const Int> INTA;    // incidences, 1..nkno, at least nele × 3
  Int nkno = 0, nele = 0;   // nodes and triangles, >= 0; 3·nele fits an Int
};

inline Int halfEdgeTriangle(Int h) {
  return (h - 1) / 3 + 1;
}
inline Int halfEdgeStart(const PartMesh& M, Int h) {
  return M.INTA((h - 1) / 3 + 1, (h - 1) % 3 + 1);
}
inline Int halfEdgeEnd(const PartMesh& M, Int h) {
  return M.INTA((h - 1) / 3 + 1, h % 3 + 1);
}
/// The half edge behind h, and the one before it, in the same triangle.
inline Int halfEdgeNext(Int h) {
  return h % 3 == 0 ? h - 2 : h + 1;
}
inline Int halfEdgeBefore(Int h) {
  return h % 3 == 1 ? h + 2 : h - 1;
}

/// The half edges in the order of their edges: by the lower node, by the upper node, by h. Two counting sorts, so
/// the cost is linear.
/// M: in. ORDER: out, 3·nele half edges; owned by the caller's array. False where there is no memory.
bool sortHalfEdges(const PartMesh& M, OwnArray<Int>& ORDER);

/// The partner of every half edge.
/// M: in. TWIN: out, 3·nele: the other half edge of the edge, whatever its sense; 0 where the edge belongs to one
/// triangle alone or to more than two. False where there is no memory.
bool pairHalfEdges(const PartMesh& M, OwnArray<Int>& TWIN);

}  // namespace tornwalzen
