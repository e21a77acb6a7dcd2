// Reads the shells of a Nastran bulk data file: GRID, CTRIA3, CTRIAR, CQUAD4 and CQUADR in free, small-field
// and large-field layout with continuations, as the Nastran quick reference guides describe them.
#pragma once

#include <string>
#include <vector>

#include "mesh/mesh.hpp"

namespace host {

// Whether a line begins with BEGIN BULK or with one of the entries that are read.
bool looksLikeNastran(const std::string& content);

// content: the file's bytes; file: its name for messages; parts: property numbers to take, empty: all. What
// stands before BEGIN BULK and behind ENDDATA is not looked at. Entries that make no shell (properties,
// materials, loads, bars, ...) are passed over and told. Throws Failure by line: an entry that is not known, a
// solid or a shell with nodes amid its edges, a grid point in a coordinate system of its own, a number that is
// none, a continuation that does not belong to the entry before, INCLUDE, replication; and what meshOfShells
// refuses.
Mesh readNastran(const std::string& content, const std::string& file, const std::vector<std::string>& parts);

}  // namespace host
