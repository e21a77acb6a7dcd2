// Multiple minimum degree on the quotient graph (J. W. H. Liu, Modification of the minimum-degree algorithm by
// multiple elimination, ACM TOMS 11, 1985; A. George, J. W. H. Liu, The evolution of the minimum degree ordering
// algorithm, SIAM Review 31, 1989).
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

constexpr Int MAXINT = 8388607;  // the largest tag; marks absorbed nodes for good

/// The arrays of the search, all one-based, carved out of WORK by the caller. "Node" is a node of the quotient
/// graph: it stands for QSIZE equations with the same neighbours.
struct EliminationGraph {
  Vector<Int> WXADJ;  // in: pointers of the neighbour lists, nodes + 1
  Vector<Int> WADJ;   // in: neighbour lists without the node itself, both directions; destroyed
  Vector<Int> DHEAD;  // scratch: first node of each degree (degree = neighbouring equations + 1), equations
  Vector<Int> DFORW;  // scratch, nodes: next node of the same degree; length of the list of a node that waits
  Vector<Int>
      DBAKW;  // scratch, nodes: previous node, minus the degree at a list's head; 0: waits for its update
  Vector<Int>
      QSIZE;  // in: equations of each node, > 0; out: minus the equations of each element, 0 if absorbed
  Vector<Int> LLIST;   // scratch, nodes: chains
  Vector<Int> MARKER;  // scratch, nodes: last tag
  Vector<Int>
      ABSORB;         // out, nodes: of an element, the element that absorbed it (0: a root of the elimination
                      // tree); of an absorbed node, minus its representative
  Vector<Int> COUNT;  // out, nodes: of an element, its equations and those in the rows below them
};

/// Runs the search until all equations are eliminated.
/// g: as above. nodes: 1.. of the graph; equations: sum of QSIZE, bounds the degrees. Cannot fail.
void minimumDegree(const EliminationGraph& g, Int nodes, Int equations);

}  // namespace tornwalzen
