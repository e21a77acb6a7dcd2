// Checks a mesh before the run and makes of it what the library expects: one piece of sheet, all triangles
// turned the same way.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "mesh/mesh.hpp"

namespace host {

// The part that is run. It keeps all nodes of the file, so node n is node n of the file; with the largest
// piece alone it has fewer elements than the file.
struct Part {
  std::string file;
  FileIdentity identity;              // of that file
  std::string unit;                   // name of the unit of its lengths, for messages
  std::vector<double> points;         // in that unit: x, y, z of node 1, of node 2, ...
  std::vector<std::int32_t> corners;  // the three node numbers of element 1, of element 2, ...; 1..nodes()
  std::vector<std::int32_t> fileElement;  // number in the file of each element, from 1
  std::vector<std::int32_t> deckFlags;    // of a mesh deck: per unknown 1 free, 0 held; else empty
  Identities ids;                         // the file's own numbers of the nodes and elements; may be empty
  double thickness = 0.0;                 // file's unit: measured on a thin solid, else 0
  std::vector<bool> inTriangle;           // per node: belongs to a triangle of the part
  std::int64_t filePieces = 0;            // pieces in the file
  std::int64_t fileElements = 0;          // triangles in the file
  std::int64_t turned = 0;                // triangles that were turned to the orientation of the others
  double size = 0.0;  // likewise: the longest side of the box around the nodes in triangles

  std::int64_t nodes() const { return static_cast<std::int64_t>(points.size() / 3); }
  std::int64_t elements() const { return static_cast<std::int64_t>(corners.size() / 3); }
  double x(std::int64_t node) const { return points[static_cast<std::size_t>(3 * node - 3)]; }
  double y(std::int64_t node) const { return points[static_cast<std::size_t>(3 * node - 2)]; }
  double z(std::int64_t node) const { return points[static_cast<std::size_t>(3 * node - 1)]; }
  std::int64_t corner(std::int64_t element, int k) const {  // k = 0, 1, 2
    return corners[static_cast<std::size_t>(3 * element - 3 + k)];
  }
};

// The library counts in 32 bits: two unknowns and three coordinates per node, three corners per triangle, and
// up to 3 entries of the matrix per node and 4 for each of the 3 node pairs of a triangle. Throws Failure if
// that does not fit.
void checkCounts(const std::string& file, std::uint64_t nodes, std::uint64_t elements);

// mesh: as read. largest: take the piece with the most triangles (the first of equals) instead of refusing a
// mesh of several pieces. Pieces hang together by edges; a single shared node does not join them.
// Throws Failure, naming element, node or edge by the file's numbers: too many nodes or elements for 32 bits,
// a node number out of range, a coordinate that is not finite, several pieces, a triangle without area, an
// edge with three triangles, a surface that cannot be turned to one orientation, a closed surface.
Part checkMesh(const Mesh& mesh, bool largest);

}  // namespace host
