// Does the outline of a blank cross itself, and do its loops lie in one another as those of a sheet must?
//
// The boundary edges stand in the order of their loops in a binary tree of boxes; only edges whose boxes meet are
// tested, with exact signs. For the outline of a sheet the cost is that of a sort.
#pragma once

#include "develop/part_topology.hpp"
#include "develop/plane_predicates.hpp"

namespace tornwalzen {

// Pairs of boxes looked at before the search is given up, about a fifth of a second: an outline that is a blank needs
// some twenty per edge, and one that lies crumpled upon itself has long been told by then.
constexpr Int64 outlinePairBudget = 20'000'000;

struct OutlineCheck {
  Int64 crossings = 0;  // pairs of boundary edges, or of corners of the outline, that pass through each other
  bool complete = true;      // false: the budget ended the search, there may be more crossings
  double PLACE[2] = {0, 0};  // u, v of the first crossing in the order of the loops (mm)
  Int NODE[2] = {0, 0};      // where the two boundary edges of the first crossing start
  Int64 touches = 0;       // pairs that meet without passing through, or lie upon each other; neighbours only
                           // where one turns back upon the other
  Int misplacedLoops = 0;  // loops that lie wrongly: see below
  Int firstMisplacedNode = 0;  // first node of the first of them
};

/// T: in, with edgesClean. RX: in, blank positions (mm), u of node n at 2n−1, v at 2n; those of the loops' nodes finite
/// and up to largestCoordinate. C: out. False where there is no memory.
///
/// Edges that share a node do not cross there, unless the outline passes through itself in a node it visits twice. A
/// corner that lies on another edge, or on another corner, crosses it where the outline leaves on the other side. Where
/// two stretches lie upon each other it counts as touching, wherever they part again.
///
/// A counter-clockwise loop must lie outside all others, a clockwise one, a hole, exactly once inside; one piece has one
/// counter-clockwise loop, the one of the largest area. Told at the first corner of each loop that lies on no other
/// one, of its first 16; a loop without any counts as lying right, and where loops cross it may be told or not.
bool checkOutline(const PartTopology& T, Vector<const double> RX, OutlineCheck& C);

}  // namespace tornwalzen
