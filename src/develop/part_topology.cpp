// Edges, pieces, fans and boundary loops of a triangle mesh.
#include "develop/part_topology.hpp"

#include <algorithm>
#include <cmath>

#include "ground/thread_pool.hpp"
#include "tornwalzen_ext.h"

namespace tornwalzen {

namespace {

/// Keeps the first fault; the checks run in the order of the header.
void fault(PartTopology& T, Int code, Int index, double value) {
  if (T.code != TORNWALZEN_OK) return;
  T.code = code;
  T.index = index;
  T.value = value;
}

void checkTriangles(const PartMesh& M, PartTopology& T) {
  if (M.nele <= 0) fault(T, TORNWALZEN_BAD_COUNT, 0, 0.0);
  for (Int e = 1; e <= M.nele; ++e) {
    const Int i = M.INTA(e, 1), j = M.INTA(e, 2), k = M.INTA(e, 3);
    if (i != j && j != k && k != i) continue;
    ++T.repeatedNodes;
    fault(T, TORNWALZEN_REPEATED_NODE, e, i == j ? i : k);
  }
}

/// Counts the edges and finds those of three triangles and those that run in the same sense twice.
/// ORDER: in, sorted half edges. TWIN: out.
void checkEdges(const PartMesh& M, Vector<const Int> ORDER, Vector<Int> TWIN, PartTopology& T) {
  const Int nh = 3 * M.nele;
  const auto ends = [&M](Int h) { return std::minmax({halfEdgeStart(M, h), halfEdgeEnd(M, h)}); };
  Int mixedAt = 0, threeAt = 0;
  for (Int first = 1, next; first <= nh; first = next) {
    const Int h = ORDER(first);
    const auto edge = ends(h);
    for (next = first + 1; next <= nh && ends(ORDER(next)) == edge; ++next)
      ;
    ++T.edges;
    const Int uses = next - first;
    if (uses == 2) {
      const Int other = ORDER(first + 1);
      TWIN(h) = other;
      TWIN(other) = h;
      if (halfEdgeStart(M, h) == halfEdgeStart(M, other) && T.mixedEdges++ == 0) mixedAt = h;
    }
    if (uses > 2 && T.edgesOfThree++ == 0) threeAt = h;
  }
  if (threeAt != 0) fault(T, TORNWALZEN_EDGE_OF_THREE, ends(threeAt).first, ends(threeAt).second);
  if (mixedAt != 0) fault(T, TORNWALZEN_MIXED_ORIENTATION, ends(mixedAt).first, ends(mixedAt).second);
}

Int rootOf(Vector<Int> PARENT, Int n) {
  while (PARENT(n) != n) n = PARENT(n) = PARENT(PARENT(n));
  return n;
}

/// A forest over the nodes, one tree for each piece. PARENT: inout, nkno, zero on entry; it stays so at loose nodes.
void joinPieces(const PartMesh& M, Vector<Int> PARENT) {
  for (Int e = 1; e <= M.nele; ++e)
    for (Int c = 1; c <= 3; ++c) PARENT(M.INTA(e, c)) = M.INTA(e, c);
  for (Int e = 1; e <= M.nele; ++e)
    for (Int c = 2; c <= 3; ++c) {
      const Int i = rootOf(PARENT, M.INTA(e, 1)), j = rootOf(PARENT, M.INTA(e, c));
      PARENT(std::max(i, j)) = std::min(i, j);
    }
}

/// Pieces and loose nodes. PARENT: inout, of joinPieces. SIZE: scratch, nkno, zero on entry.
void checkPieces(const PartMesh& M, Vector<Int> PARENT, Vector<Int> SIZE, PartTopology& T) {
  for (Int n = 1; n <= M.nkno; ++n) {
    if (PARENT(n) == n) ++T.pieces;
    if (PARENT(n) != 0)
      ++T.usedNodes;
    else if (T.looseNodes++ == 0)
      T.firstLooseNode = n;
  }
  T.euler = T.usedNodes - T.edges + M.nele;
  if (T.pieces <= 1) return;
  Int largest = 0;
  for (Int e = 1; e <= M.nele; ++e) ++SIZE(rootOf(PARENT, M.INTA(e, 1)));
  for (Int n = 1; n <= M.nkno; ++n)
    if (SIZE(n) > 0 && (largest == 0 || SIZE(n) > SIZE(largest))) largest = n;
  Int outside = 1;
  while (rootOf(PARENT, M.INTA(outside, 1)) == largest) ++outside;
  fault(T, TORNWALZEN_SEVERAL_PIECES, outside, T.pieces);
}

/// Nodes whose triangles make more than one fan. FANS: scratch, nkno; SEEN: scratch, 3·nele; both zero on entry.
/// The corner where half edge h starts is followed round its node, counter-clockwise, to the partner of the half
/// edge before h.
void checkFans(const PartMesh& M, Vector<const Int> TWIN, Vector<Int> FANS, Vector<Int> SEEN,
               PartTopology& T) {
  const auto walk = [&](Int h) {
    ++FANS(halfEdgeStart(M, h));
    for (; h != 0 && SEEN(h) == 0; h = TWIN(halfEdgeBefore(h))) SEEN(h) = 1;
  };
  const Int nh = 3 * M.nele;
  for (Int h = 1; h <= nh; ++h)
    if (TWIN(h) == 0) walk(h);  // open fans, from their first corner
  for (Int h = 1; h <= nh; ++h)
    if (SEEN(h) == 0) walk(h);
  Int first = 0;
  for (Int n = 1; n <= M.nkno; ++n)
    if (FANS(n) > 1 && T.pinchedNodes++ == 0) first = n;
  if (first != 0) fault(T, TORNWALZEN_PINCHED_NODE, first, T.pinchedNodes);
}

/// Follows the boundary half edges from h until h comes again; behind h comes the next one round its end node.
/// LOOPNODE: out, start nodes from position `end` on. SEEN: out, 1. Moves `end` past the loop; returns its length (mm).
double traceLoop(const PartMesh& M, Vector<const Int> TWIN, Int h, Vector<Int> LOOPNODE, Vector<Int> SEEN,
                 Int& end) {
  double length = 0.0;
  while (SEEN(h) == 0) {
    const Int n = halfEdgeStart(M, h), m = halfEdgeEnd(M, h);
    SEEN(h) = 1;
    LOOPNODE(end++) = n;
    length += std::hypot(M.KNG(m, 1) - M.KNG(n, 1), M.KNG(m, 2) - M.KNG(n, 2), M.KNG(m, 3) - M.KNG(n, 3));
    h = halfEdgeNext(h);
    while (TWIN(h) != 0) h = halfEdgeNext(TWIN(h));
  }
  return length;
}

/// The boundary loops, the longest first. False where there is no memory.
bool traceLoops(const PartMesh& M, PartTopology& T) {
  const Vector<const Int> TWIN = T.TWIN.vector();
  const Int nh = 3 * M.nele;
  Int count = 0;
  for (Int h = 1; h <= nh; ++h) count += TWIN(h) == 0;
  OwnArray<Int> seen("SEEN"), starts("START");
  if (!T.LOOPNODE.allocate(count) || !seen.allocate(nh, 0) || !starts.allocate(Int64{count} + 1))
    return false;
  const Vector<Int> LOOPNODE = T.LOOPNODE.vector(), SEEN = seen.vector(), START = starts.vector();
  Int end = 1, longest = 0;
  double most = -1.0;
  for (Int h = 1; h <= nh; ++h) {
    if (TWIN(h) != 0 || SEEN(h) != 0) continue;
    START(++T.loops) = end;
    const double length = traceLoop(M, TWIN, h, LOOPNODE, SEEN, end);
    if (!(length > most) && longest != 0) continue;
    most = length;
    longest = T.loops;
  }
  START(T.loops + 1) = end;
  if (!T.LOOPSTART.allocate(Int64{T.loops} + 1)) return false;
  const Vector<Int> LOOPSTART = T.LOOPSTART.vector();
  if (T.loops == 0) {
    LOOPSTART(1) = 1;
    return true;
  }
  // The longest loop moves to the front, those before it move back by its length.
  const Int from = START(longest), to = START(longest + 1), moved = to - from;
  std::rotate(LOOPNODE.data(), LOOPNODE.data() + (from - 1), LOOPNODE.data() + (to - 1));
  LOOPSTART(1) = 1;
  for (Int l = 1; l <= T.loops; ++l) LOOPSTART(l + 1) = l <= longest ? START(l) + moved : START(l + 1);
  return true;
}

void checkGenus(const PartMesh& M, PartTopology& T) {
  if (T.loops == 0) fault(T, TORNWALZEN_CLOSED_SURFACE, 0, M.nele);
  if (T.pieces != 1 || T.loops == 0 || T.pinchedNodes != 0) return;
  T.handles = (2 - T.loops - T.euler) / 2;
  if (T.handles != 0) fault(T, TORNWALZEN_HANDLE, 0, T.handles);
}

}  // namespace

bool findPartTopology(const PartMesh& M, PartTopology& T, ThreadPool* pool) {
  T = {};
  checkTriangles(M, T);
  OwnArray<Int> order("ORDER"), parent("PARENT"), size("SIZE"), fans("FANS"), seen("SEEN");
  const Int64 nh = 3 * Int64{M.nele};
  if (!T.TWIN.allocate(nh, 0) || !parent.allocate(M.nkno, 0)) return false;
  bool sorted = false, traced = false;
  bothSteps(
      pool, [&] { sorted = sortHalfEdges(M, order); }, [&] { joinPieces(M, parent.vector()); });
  if (!sorted || !size.allocate(M.nkno, 0)) return false;
  checkEdges(M, order.vector(), T.TWIN.vector(), T);
  checkPieces(M, parent.vector(), size.vector(), T);
  T.edgesClean = M.nele > 0 && T.repeatedNodes == 0 && T.edgesOfThree == 0 && T.mixedEdges == 0;
  if (!T.edgesClean) return true;
  if (!fans.allocate(M.nkno, 0) || !seen.allocate(nh, 0)) return false;
  bothSteps(
      pool, [&] { checkFans(M, T.TWIN.vector(), fans.vector(), seen.vector(), T); },
      [&] { traced = traceLoops(M, T); });
  if (!traced) return false;
  checkGenus(M, T);
  return true;
}

}  // namespace tornwalzen
