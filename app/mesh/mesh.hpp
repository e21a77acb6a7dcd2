// The triangle mesh as a file gives it: nodes and elements in the file's order, numbered from 1.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "system/file_identity.hpp"

namespace host {

// The numbers that a finite-element file gives its nodes, elements and parts; all empty where the format has
// none.
struct Identities {
  std::vector<std::int64_t> node;     // of node 1, of node 2, ...
  std::vector<std::int64_t> element;  // of element 1, of element 2, ...; the halves of a split quad share one
  std::vector<std::int64_t> part;     // likewise: the part that the element belongs to
};

struct SortedSides;  // mesh/edges.hpp

struct Mesh {
  std::string file;                   // name for messages
  FileIdentity identity;              // of that file
  std::string unit = "mm";            // name of the unit of its lengths, for messages
  std::vector<double> points;         // in that unit: x, y, z of node 1, of node 2, ...
  std::vector<std::int64_t> corners;  // the three node numbers of element 1, of element 2, ...; unchecked
  std::vector<std::int32_t> flags;    // of a mesh deck: per unknown 1 free, 0 held; else empty
  Identities ids;                     // what the file calls its nodes, elements and parts
  double thickness = 0.0;             // file's unit: measured on a thin solid; 0: the file holds none
  std::vector<std::string> remarks;   // what the user is to be told about the reading, sentence by sentence

  // for sidesOf alone: those of the corners when it was last asked
  mutable std::shared_ptr<const SortedSides> sides;

  std::size_t nodes() const { return points.size() / 3; }
  std::size_t elements() const { return corners.size() / 3; }
};

}  // namespace host
