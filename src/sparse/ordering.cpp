// Phase 1: checks the pattern, forms the adjacency of the equations, lets equations with the same closed
// neighbourhood (the two of a mesh node) be one node of the graph, runs the minimum degree search and the
// supernode step.
#include "sparse/ordering.hpp"

#include <initializer_list>
#include <limits>

#include "ground/subscript_message.hpp"
#include "sparse/minimum_degree.hpp"
#include "sparse/phase_error.hpp"
#include "sparse/supernodes.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

namespace {

constexpr Int64 largestInt = std::numeric_limits<Int>::max();

// The search's part of WORK, as it lies behind the adjacency.
struct SearchArrays {
  Vector<Int> XADJ, ADJNCY, PERM, INVP;
  EliminationGraph g;
};

SearchArrays carveSearch(Vector<Int> WORK, Int64 NEQ, Int64 NADJ) {
  WorkCarver carve(WORK);
  SearchArrays a;
  a.XADJ = carve.take("XADJ", NEQ + 1);
  a.ADJNCY = carve.take("ADJNCY", NADJ);
  a.PERM = carve.take("PERM", NEQ);
  a.INVP = carve.take("INVP", NEQ);
  a.g.WXADJ = carve.take("WXADJ", NEQ + 1);
  a.g.WADJ = carve.take("WADJ", NADJ);
  for (Vector<Int>* array : {&a.g.DHEAD, &a.g.DFORW, &a.g.DBAKW, &a.g.QSIZE, &a.g.LLIST, &a.g.MARKER})
    *array = carve.take("search", NEQ);
  a.g.COUNT = carve.take("COUNT", NEQ + 1);
  a.g.ABSORB = a.PERM;  // PERM is written only after the search
  return a;
}

// The format of the lower triangle: no empty column, diagonal first, rows in range, no row twice in succession.
Int checkPattern(Vector<const Int> COLS, Vector<const Int> ROWI, Int64 NEQ) {
  if (COLS(NEQ + 1) <= NEQ) return ierr::badPattern;
  for (Int64 j = 1; j <= NEQ; ++j) {
    const Int64 first = COLS(j), last = Int64{COLS(j + 1)} - 1;
    if (first < 1 || last > ROWI.length()) {
      reportSubscript(ROWI.name(), 1, first < 1 ? first : last, ROWI.length());
      return ierr::damaged;
    }
    if (last < first || last - first > NEQ - j || ROWI(first) != j) return ierr::badPattern;
    for (Int64 k = first + 1; k <= last; ++k)
      if (ROWI(k) > NEQ || ROWI(k) <= ROWI(k - 1)) return ierr::badPattern;
  }
  return COLS(1) == 1 ? ierr::ok : ierr::badPattern;
}

// Both directions of every entry below the diagonal.
void buildAdjacency(Vector<const Int> COLS, Vector<const Int> ROWI, Int64 NEQ, Vector<Int> XADJ,
                    Vector<Int> ADJNCY, Vector<Int> NEXT) {
  for (Int64 i = 1; i <= NEQ; ++i) NEXT(i) = 0;
  for (Int64 j = 1; j <= NEQ; ++j)
    for (Int64 k = COLS(j) + 1; k < COLS(j + 1); ++k) {
      ++NEXT(j);
      ++NEXT(ROWI(k));
    }
  XADJ(1) = 1;
  for (Int64 i = 1; i <= NEQ; ++i) {
    XADJ(i + 1) = XADJ(i) + NEXT(i);
    NEXT(i) = XADJ(i);
  }
  for (Int64 j = 1; j <= NEQ; ++j)
    for (Int64 k = COLS(j) + 1; k < COLS(j + 1); ++k) {
      ADJNCY(NEXT(j)++) = ROWI(k);
      ADJNCY(NEXT(ROWI(k))++) = static_cast<Int>(j);
    }
}

// A hash of an equation's closed neighbourhood: a sum, so that the order does not count.
std::uint32_t mixed(Int i) {
  std::uint32_t h = static_cast<std::uint32_t>(i) * 0x9E3779B1u;
  h ^= h >> 15;
  return h * 0x85EBCA77u;
}

// Groups equations with the same closed neighbourhood. Out: NODEOF, the group of each equation, numbered by first
// appearance; QSIZE and FIRSTOF, size and first equation of each group. Returns the number of groups.
Int groupEquations(const SearchArrays& a, Int64 NEQ, Vector<Int> NODEOF, Vector<Int> QSIZE,
                   Vector<Int> FIRSTOF) {
  const Vector<Int>&BUCKET = a.g.DHEAD, &NEXT = a.g.DFORW, &HASH = a.g.LLIST, &MARKER = a.g.MARKER;
  for (Int64 i = 1; i <= NEQ; ++i) BUCKET(i) = MARKER(i) = 0;
  const auto degree = [&](Int64 i) { return a.XADJ(i + 1) - a.XADJ(i); };
  const auto sameNeighbourhood = [&](Int i, Int j) {  // MARKER holds i at i and its neighbours
    if (degree(i) != degree(j) || MARKER(j) != i) return false;
    for (Int64 k = a.XADJ(j); k < a.XADJ(j + 1); ++k)
      if (MARKER(a.ADJNCY(k)) != i) return false;
    return true;
  };
  Int groups = 0;
  for (Int i = 1; i <= NEQ; ++i) {
    std::uint32_t hash = mixed(i);
    for (Int64 k = a.XADJ(i); k < a.XADJ(i + 1); ++k) hash += mixed(a.ADJNCY(k));
    HASH(i) = static_cast<Int>(hash);
    Int& bucket = BUCKET(1 + static_cast<Int64>(hash % static_cast<std::uint32_t>(NEQ)));
    Int same = 0;
    for (Int v = bucket; v > 0 && same == 0; v = NEXT(v)) {
      const Int j = FIRSTOF(v);
      if (HASH(j) != HASH(i)) continue;
      if (MARKER(i) != i) {
        MARKER(i) = i;
        for (Int64 k = a.XADJ(i); k < a.XADJ(i + 1); ++k) MARKER(a.ADJNCY(k)) = i;
      }
      if (sameNeighbourhood(i, j)) same = v;
    }
    if (same == 0) {
      same = ++groups;
      FIRSTOF(same) = i;
      QSIZE(same) = 0;
      NEXT(same) = bucket;
      bucket = same;
    }
    NODEOF(i) = same;
    ++QSIZE(same);
  }
  return groups;
}

// The adjacency of the groups, for the search to destroy.
void groupAdjacency(const SearchArrays& a, Int nodes, Vector<const Int> NODEOF, Vector<const Int> FIRSTOF) {
  const EliminationGraph& g = a.g;
  for (Int v = 1; v <= nodes; ++v) g.MARKER(v) = 0;
  Int next = 1;
  for (Int v = 1; v <= nodes; ++v) {
    g.WXADJ(v) = next;
    g.MARKER(v) = v;
    const Int i = FIRSTOF(v);
    for (Int64 k = a.XADJ(i); k < a.XADJ(i + 1); ++k) {
      const Int u = NODEOF(a.ADJNCY(k));
      if (g.MARKER(u) == v) continue;
      g.MARKER(u) = v;
      g.WADJ(next++) = u;
    }
  }
  g.WXADJ(nodes + 1) = next;
}

}  // namespace

void orderingPhase(Vector<const Int> COLS, Vector<const Int> ROWI, Vector<Int> WORK, Int& s, Int& m,
                   Int& IERR) {
  const Int64 NEQ = COLS.length() - 1, NNZ = ROWI.length();
  s = m = 0;
  IERR = ierr::ok;
  if (NEQ > 0) IERR = checkPattern(COLS, ROWI, NEQ);
  if (IERR != ierr::ok) return;
  const Int64 required = orderingLength(NEQ, NNZ);
  if (required > largestInt) {
    IERR = ierr::tooLarge;
    return;
  }
  if (WORK.length() < required) {
    if (WORK.length() >= header::shortage) WORK(header::shortage) = static_cast<Int>(required);
    IERR = ierr::shortWork1;
    return;
  }

  for (Int i = 1; i <= header::length; ++i)  // the checksum takes all of it
    if (i != header::phase) WORK(i) = 0;
  const Int64 entries = NEQ > 0 ? Int64{COLS(NEQ + 1)} - 1 : 0;
  const Int64 NADJ = 2 * (entries - NEQ);
  const SearchArrays a = carveSearch(WORK, NEQ, NADJ);
  buildAdjacency(COLS, ROWI, NEQ, a.XADJ, a.ADJNCY, a.g.MARKER);
  const Int nodes = groupEquations(a, NEQ, a.INVP, a.g.QSIZE, a.PERM);
  groupAdjacency(a, nodes, a.INVP, a.PERM);
  minimumDegree(a.g, nodes, static_cast<Int>(NEQ));
  const SupernodeSizes sizes = supernodeStep(a.g, nodes, WORK, static_cast<Int>(NEQ), static_cast<Int>(NADJ));
  if (sizes.s > largestInt || sizes.factorEntries > largestInt) {
    IERR = ierr::tooLarge;
    return;
  }

  s = static_cast<Int>(sizes.s);
  m = sizes.m;
  WORK(header::equations) = static_cast<Int>(NEQ);
  WORK(header::adjacency) = static_cast<Int>(NADJ);
  WORK(header::supernodes) = m;
  WORK(header::subscripts) = s;
  WORK(header::factorEntries) = static_cast<Int>(sizes.factorEntries);
  WORK(header::leanEntries) = static_cast<Int>(sizes.leanEntries);
  WORK(header::realRequirement) = static_cast<Int>(sizes.factorEntries - NEQ);
  WORK(header::freePhase2) =
      static_cast<Int>(orderedStructure(WORK, static_cast<Int>(NEQ), static_cast<Int>(NADJ), m).end);
}

}  // namespace tornwalzen
