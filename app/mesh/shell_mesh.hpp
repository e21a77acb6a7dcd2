// Shells as finite-element files give them (nodes, elements and parts under numbers of their own) and the
// triangle mesh made of them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "mesh/mesh.hpp"

namespace host {

struct ShellNode {
  std::int64_t scope;  // node numbers are unique within one; 0 unless the format nests models
  std::int64_t id;
  std::array<double, 3> xyz;  // file's unit
  std::size_t line;           // where it stands, from 1
};

struct Shell {
  std::int64_t scope;  // that of its nodes
  std::int64_t id;
  std::int64_t part;
  std::array<std::int64_t, 4> nodes;  // ids; the fourth is unused if count is 3
  int count;                          // 3 or 4
  std::size_t line;                   // where it stands, from 1
};

struct ShellFile {
  std::string file;  // name for messages
  std::vector<ShellNode> nodes;
  std::vector<Shell> shells;
  std::map<std::int64_t, std::string> partNames;  // of the parts that have a name
  std::map<std::string, std::int64_t>
      passedOver;  // entries of the file that make no shell, with their number
};

// The end of a reading: "FILE, line N: WHAT".
[[noreturn]] void refuseLine(const std::string& file, std::size_t line, const std::string& what);

// The triangles of the shells of the parts named (all if none is), in the file's order: a quad is split over
// its shorter diagonal (that from its first corner if both are as long); one with two neighbouring corners in
// one node is the triangle that is left. Nodes that no taken shell uses are left out. parts: numbers of parts
// or their names, in any case of letters. Remarks tell the parts, the quads, what was left out and what was
// passed over. Throws Failure by line: a node or element number given twice, a shell that names a missing
// node or one node twice; and: no shell at all, a part that is not there, with those that are.
Mesh meshOfShells(const ShellFile& shells, const std::vector<std::string>& parts);

// Whether the quad 1-2-3-4 with these corners is split along 1-3 rather than 2-4.
bool splitFromFirst(const std::array<std::array<double, 3>, 4>& corners);

// The text in capitals, as keywords are compared.
std::string capitals(std::string_view text);

// Without blanks, tabs and carriage returns at both ends.
std::string_view trimmed(std::string_view text);

}  // namespace host
