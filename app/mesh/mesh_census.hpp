// What a mesh consists of, also one that is refused: pieces, borders, corners, edges of three triangles.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/mesh.hpp"

namespace host {

// Edges of one triangle that hang together by nodes.
struct BorderLoop {
  double length = 0.0;         // part's unit
  std::int64_t edges = 0;      // of it
  std::int64_t firstNode = 0;  // the lowest number on it, from 1
};

// Triangles are counted from 0 here, in the order of the mesh.
struct MeshCensus {
  std::vector<std::int32_t>
      piece;  // per triangle: 1 the piece with the most triangles (the first of equals), 2, ...
  std::int64_t pieces = 0;
  std::vector<BorderLoop> loops;      // the longest first; of equals the one with the lowest node
  std::vector<std::size_t> border;    // triangles at the border
  std::vector<std::size_t> crowded;   // triangles at an edge that three or more share
  std::int64_t crowdedEdges = 0;      // such edges
  std::vector<std::size_t> opposed;   // triangles at an edge that both run along the same way
  std::vector<std::size_t> arealess;  // triangles without area
  std::vector<std::size_t> needles;   // triangles with a corner below 5 degrees, as in mend.hpp
  double smallestAngle = 180.0;       // degrees
  std::size_t sharpest = 0;           // the triangle with it
  double low[3] = {0, 0, 0}, high[3] = {0, 0, 0};  // of the nodes in triangles, part's unit
};

// mesh: sound (submesh.hpp), with a triangle at least.
MeshCensus censusOf(const Mesh& mesh);

}  // namespace host
