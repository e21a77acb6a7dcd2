// Can this surface be a sheet? A sheet is one piece of triangles, all turned the same way round, with a boundary,
// holes allowed, handles not: a disc with holes. What is not that has no blank.
//
//   χ = V − E + T = 2 − b − 2·g     V nodes in use, E edges, T triangles, b boundary loops, g handles
//
// The formula holds for one orientable piece (Euler, Poincaré); the checks before it make sure of that.
#pragma once

#include "develop/mesh_edges.hpp"

namespace tornwalzen {

class ThreadPool;

/// What a part is made of. The arrays belong to this object.
struct PartTopology {
  // The first of the checks below, in this order, that the part fails, as for refuse(): code, index and value.
  //   TORNWALZEN_BAD_COUNT          no triangle at all; value 0
  //   TORNWALZEN_REPEATED_NODE      triangle index names the node value twice
  //   TORNWALZEN_EDGE_OF_THREE      edge from node index to node value belongs to more than two triangles
  //   TORNWALZEN_MIXED_ORIENTATION  edge from node index to node value runs in the same sense in both its triangles
  //   TORNWALZEN_SEVERAL_PIECES     value pieces; triangle index is the first outside the largest one
  //   TORNWALZEN_PINCHED_NODE       at node index, the first of value such nodes, parts of the sheet touch only there
  //   TORNWALZEN_CLOSED_SURFACE     no boundary; value triangles
  //   TORNWALZEN_HANDLE             value handles
  Int code = 0;  // TORNWALZEN_OK: a disc with holes
  Int index = 0;
  double value = 0.0;

  Int usedNodes = 0;   // V: nodes that belong to a triangle
  Int looseNodes = 0;  // nodes that belong to none: no fault of the surface, but their unknowns must be held
  Int firstLooseNode = 0;
  Int edges = 0;
  Int pieces = 0;                                           // what hangs together over nodes
  Int euler = 0;                                            // V − E + T
  Int repeatedNodes = 0, edgesOfThree = 0, mixedEdges = 0;  // triangles, edges, edges
  bool edgesClean = false;                                  // there is a triangle, and these three are 0

  // The rest only where edgesClean; otherwise 0, and the loops are empty.
  Int pinchedNodes = 0;
  Int handles = 0;  // g, where there is one piece, a boundary and no pinched node
  Int loops = 0;    // b: boundary loops
  // Nodes of all loops, one loop behind the other, the sheet on the left hand: seen from the side its normals point
  // to, the outer loop is counter-clockwise.
  OwnArray<Int> LOOPNODE{"LOOPNODE"};
  // Where each loop begins in LOOPNODE, and one past the end: loops + 1. The first loop is the longest on the part
  // (mm), the others follow by their lowest half edge.
  OwnArray<Int> LOOPSTART{"LOOPSTART"};
  OwnArray<Int> TWIN{"TWIN"};  // 3·nele: partner of each half edge (mesh_edges.hpp); filled in any case
};

/// M: in; its coordinates serve the order of the loops alone. T: out, whatever it held before. Cost linear in nodes
/// and triangles. pool: in, null for one thread. False where there is no memory; T is then not to be used.
bool findPartTopology(const PartMesh& M, PartTopology& T, ThreadPool* pool = nullptr);

}  // namespace tornwalzen
