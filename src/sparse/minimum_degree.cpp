// Multiple minimum degree with mass elimination, indistinguishable nodes and outmatched nodes.
//
// The quotient graph lives in the storage of the adjacency it starts from. The sign of QSIZE tells what a number
// in a list is: > 0 a variable, < 0 an element (an eliminated node that stands for the clique of its members), 0 a
// node that another one has absorbed.
//   list of a variable: its segment WXADJ(i) .. WXADJ(i+1)-1, variables and elements, closed by 0 or full.
//   list of an element: its own segment and those of the elements it absorbed, chained by a negative number in a
//   segment's last place, closed by 0 or full. A new element always fits: every variable it writes was read
//   before from a place further on, and every absorbed element frees the place for its link.
#include "sparse/minimum_degree.hpp"

#include <algorithm>

namespace tornwalzen {

namespace {

constexpr Int waiting = 0;           // DBAKW: in no degree list, its degree is to be recomputed
constexpr Int outOfLists = -MAXINT;  // DBAKW: in no degree list until an elimination reaches it again

// Calls visit(x) for every entry of the chained list of element e; returns the last segment read.
template <class Visit>
inline Int forEachMember(const EliminationGraph& g, Int e, Visit visit) {
  Int segment = e;
  for (;;) {
    Int next = 0;
    for (Int64 k = g.WXADJ(segment), end = g.WXADJ(segment + 1); k < end; ++k) {
      const Int x = g.WADJ(k);
      if (x == 0) return segment;
      if (x < 0) {
        next = -x;
        break;
      }
      visit(x);
    }
    if (next == 0) return segment;
    segment = next;
  }
}

void insertByDegree(const EliminationGraph& g, Int i, Int degree) {
  const Int head = g.DHEAD(degree);
  g.DFORW(i) = head;
  g.DBAKW(i) = -degree;
  if (head > 0) g.DBAKW(head) = i;
  g.DHEAD(degree) = i;
}

void removeFromDegreeList(const EliminationGraph& g, Int i) {
  const Int before = g.DBAKW(i), after = g.DFORW(i);
  if (before == waiting || before == outOfLists) return;
  if (after > 0) g.DBAKW(after) = before;
  if (before < 0)
    g.DHEAD(-before) = after;
  else
    g.DFORW(before) = after;
}

void absorb(const EliminationGraph& g, Int node, Int representative) {
  g.QSIZE(node) = 0;
  g.MARKER(node) = MAXINT;
  g.ABSORB(node) = -representative;
  g.DBAKW(node) = outOfLists;
}

// Tags grow by one for each elimination and each full degree count; before they reach MAXINT they start anew.
Int tagWithRoom(const EliminationGraph& g, Int nodes, Int tag, Int64 room) {
  if (tag + room < MAXINT) return tag;
  for (Int i = 1; i <= nodes; ++i)
    if (g.MARKER(i) < MAXINT) g.MARKER(i) = 0;
  return 1;
}

// Where a new element writes its members: through its chain of segments, behind the reading.
class ChainWriter {
 public:
  ChainWriter(const EliminationGraph& g, Int element)
      : g_(g), place_(g.WXADJ(element)), end_(g.WXADJ(element + 1)) {}
  void put(Int member) {
    while (place_ == end_ - 1 && g_.WADJ(place_) < 0) {
      const Int segment = -g_.WADJ(place_);
      place_ = g_.WXADJ(segment);
      end_ = g_.WXADJ(segment + 1);
    }
    g_.WADJ(place_++) = member;
  }
  void close() {
    if (place_ < end_) g_.WADJ(place_) = 0;
  }

 private:
  const EliminationGraph& g_;
  Int64 place_, end_;
};

// Turns variable v into an element: its members are the variables reachable directly or through the elements in
// its list, which it absorbs. All of them carry the tag afterwards.
void formElement(const EliminationGraph& g, Int v, Int tag) {
  g.MARKER(v) = tag;
  ChainWriter members(g, v);
  Int absorbed = 0;  // chain of the elements in v's list
  for (Int64 k = g.WXADJ(v), end = g.WXADJ(v + 1); k < end && g.WADJ(k) != 0; ++k) {
    const Int x = g.WADJ(k);
    if (g.MARKER(x) >= tag) continue;
    g.MARKER(x) = tag;
    if (g.QSIZE(x) > 0) {
      members.put(x);
    } else if (g.QSIZE(x) < 0) {
      g.LLIST(x) = absorbed;
      absorbed = x;
    }
  }
  Int tail = v;
  for (Int e = absorbed; e > 0; e = g.LLIST(e)) {
    g.ABSORB(e) = v;
    g.WADJ(Int64{g.WXADJ(tail + 1)} - 1) = -e;
    tail = forEachMember(g, e, [&](Int x) {
      if (g.QSIZE(x) <= 0 || g.MARKER(x) >= tag) return;
      g.MARKER(x) = tag;
      members.put(x);
    });
  }
  members.close();
}

// Replaces in the list of variable i all that element v covers by v itself. Returns the length of the new list: 1
// if i has no other neighbours.
Int coverByElement(const EliminationGraph& g, Int i, Int v, Int tag) {
  const Int64 first = g.WXADJ(i), end = g.WXADJ(i + 1);
  Int64 kept = first;
  for (Int64 k = first; k < end && g.WADJ(k) != 0; ++k) {
    const Int x = g.WADJ(k);
    if (g.MARKER(x) < tag) g.WADJ(kept++) = x;
  }
  g.WADJ(kept++) = v;
  if (kept < end) g.WADJ(kept) = 0;
  return static_cast<Int>(kept - first);
}

// Eliminates v. Members without neighbours outside the new element go with it (mass elimination); the others wait
// for their update. Returns the equations eliminated.
Int eliminate(const EliminationGraph& g, Int v, Int tag) {
  formElement(g, v, tag);
  Int own = g.QSIZE(v), below = 0;
  forEachMember(g, v, [&](Int i) {
    removeFromDegreeList(g, i);
    const Int length = coverByElement(g, i, v, tag);
    if (length == 1) {
      own += g.QSIZE(i);
      absorb(g, i, v);
    } else {
      below += g.QSIZE(i);
      g.DFORW(i) = length;
      g.DBAKW(i) = waiting;
    }
  });
  g.QSIZE(v) = -own;
  g.COUNT(v) = own + below;
  g.ABSORB(v) = 0;
  return own;
}

// Equations of `other` (a variable, or the members of an element) outside element e, whose members carry a mark of
// at least `inside`, for a waiting node i whose list is just {e, other}. Nodes with the same list are
// indistinguishable from i and join it; waiting nodes with a longer one are outmatched: i goes before them, so
// their degree is not needed until then.
Int outsideOfPair(const EliminationGraph& g, Int i, Int other, Int inside) {
  if (g.QSIZE(other) >= 0) return g.QSIZE(other);
  Int outside = 0;
  forEachMember(g, other, [&](Int x) {
    if (x == i || g.QSIZE(x) <= 0) return;
    if (g.MARKER(x) < inside) {
      outside += g.QSIZE(x);
    } else if (g.DBAKW(x) == waiting) {
      if (g.DFORW(x) == 2) {
        g.QSIZE(i) += g.QSIZE(x);
        absorb(g, x, i);
      } else {
        g.DBAKW(x) = outOfLists;
      }
    }
  });
  return outside;
}

// Equations outside element e that node i reaches through the rest of its list, each counted once by the tag.
Int outsideOfList(const EliminationGraph& g, Int i, Int e, Int tag) {
  Int outside = 0;
  const auto count = [&](Int x) {
    if (g.QSIZE(x) <= 0 || g.MARKER(x) >= tag) return;
    g.MARKER(x) = tag;
    outside += g.QSIZE(x);
  };
  for (Int64 k = g.WXADJ(i), end = g.WXADJ(i + 1); k < end && g.WADJ(k) != 0; ++k) {
    const Int x = g.WADJ(k);
    if (x == e) continue;
    if (g.QSIZE(x) < 0)
      forEachMember(g, x, count);
    else
      count(x);
  }
  return outside;
}

// Recomputes the degree of every waiting member of element e; lowers mdeg where a smaller one appears. Returns the
// last tag used.
Int updateMembers(const EliminationGraph& g, Int e, Int nodes, Int tag, Int& mdeg) {
  const Int reach = g.COUNT(e) + g.QSIZE(e);  // equations of all members: bounds the tags used here
  tag = tagWithRoom(g, nodes, tag, Int64{reach} + 2);
  const Int inside = tag + reach + 1;
  Int pairs = 0, others = 0;  // chains of the waiting members with lists of two and of more entries
  forEachMember(g, e, [&](Int i) {
    if (g.QSIZE(i) <= 0) return;
    g.MARKER(i) = inside;
    if (g.DBAKW(i) != waiting) return;
    Int& chain = g.DFORW(i) == 2 ? pairs : others;
    g.LLIST(i) = chain;
    chain = i;
  });
  const auto update = [&](Int i, Int outside) {
    const Int degree = reach - g.QSIZE(i) + outside + 1;
    insertByDegree(g, i, degree);
    mdeg = std::min(mdeg, degree);
  };
  for (Int i = pairs; i > 0; i = g.LLIST(i)) {
    if (g.QSIZE(i) == 0 || g.DBAKW(i) != waiting) continue;
    const Int64 first = g.WXADJ(i);
    const Int other = g.WADJ(first) == e ? g.WADJ(first + 1) : g.WADJ(first);
    const Int outside = outsideOfPair(g, i, other, inside);
    update(i, outside);
  }
  for (Int i = others; i > 0; i = g.LLIST(i)) {
    if (g.QSIZE(i) == 0 || g.DBAKW(i) != waiting) continue;
    update(i, outsideOfList(g, i, e, ++tag));
  }
  return inside;
}

void initialise(const EliminationGraph& g, Int nodes, Int equations) {
  for (Int d = 1; d <= equations; ++d) g.DHEAD(d) = 0;
  for (Int i = 1; i <= nodes; ++i) {
    g.MARKER(i) = 0;
    g.LLIST(i) = 0;
    g.ABSORB(i) = 0;
  }
  for (Int i = 1; i <= nodes; ++i) {
    Int degree = 1;
    for (Int64 k = g.WXADJ(i); k < g.WXADJ(i + 1); ++k) degree += g.QSIZE(g.WADJ(k));
    insertByDegree(g, i, degree);
  }
}

}  // namespace

void minimumDegree(const EliminationGraph& g, Int nodes, Int equations) {
  if (equations == 0) return;
  initialise(g, nodes, equations);

  Int eliminated = 0;
  for (Int i = g.DHEAD(1); i > 0; i = g.DFORW(i)) {  // isolated nodes first
    eliminated += g.QSIZE(i);
    g.COUNT(i) = g.QSIZE(i);
    g.QSIZE(i) = -g.QSIZE(i);
  }
  g.DHEAD(1) = 0;

  Int tag = 1, mdeg = 2;
  while (eliminated < equations) {
    while (g.DHEAD(mdeg) == 0) ++mdeg;
    Int formed = 0;  // chain of the elements of this pass
    for (Int v = g.DHEAD(mdeg); v > 0 && eliminated < equations; v = g.DHEAD(mdeg)) {
      removeFromDegreeList(g, v);
      tag = tagWithRoom(g, nodes, tag, 1) + 1;
      eliminated += eliminate(g, v, tag);
      g.LLIST(v) = formed;
      formed = v;
    }
    if (eliminated == equations) return;
    for (Int e = formed; e > 0; e = g.LLIST(e)) tag = updateMembers(g, e, nodes, tag, mdeg);
  }
}

}  // namespace tornwalzen
