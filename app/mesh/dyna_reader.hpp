// Reads the shells of an LS-DYNA keyword file: *NODE, *ELEMENT_SHELL and the titles of *PART, in fields of
// the standard, the I10 and the long layout or separated by commas, as the keyword manual describes them.
#pragma once

#include <string>
#include <vector>

#include "mesh/mesh.hpp"

namespace host {

// Whether the first keyword that tells this format from Abaqus's is one of LS-DYNA.
bool looksLikeDyna(const std::string& content);

// content: the file's bytes; file: its name for messages; parts: numbers or titles of parts to take, empty:
// all. What stands behind *END is not looked at. Keywords that make no shell are passed over and told. Throws
// Failure by line: a keyword that is not known or would make, move or read nodes and elements (*INCLUDE,
// *NODE_TRANSFORM, ...), solids, shells with nodes amid their edges, a word where a number is expected; and
// what meshOfShells refuses.
Mesh readDyna(const std::string& content, const std::string& file, const std::vector<std::string>& parts);

}  // namespace host
