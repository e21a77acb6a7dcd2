// Reads the shells of an Abaqus input file: *NODE and *ELEMENT with three- and four-node shell, membrane,
// surface and rigid types, as the keyword reference describes them.
#pragma once

#include <string>
#include <vector>

#include "mesh/mesh.hpp"

namespace host {

// Whether the first keyword that tells this format from LS-DYNA's is one of Abaqus.
bool looksLikeAbaqus(const std::string& content);

// content: the file's bytes; file: its name for messages; parts: what to take, empty: all. A part is what
// one *PART has in one ELSET; parts are numbered from 1 by appearance and bear the name of the set, or of
// the *PART. Keywords that make no shell are passed over and told. Throws Failure by line: a keyword that is
// not known or would make, move or read nodes and elements (*NGEN, *ELGEN, *SYSTEM, *INCLUDE, a moved or
// repeated *INSTANCE, ...), a solid or a shell with nodes amid its edges, a word where a number is expected;
// and what meshOfShells refuses.
Mesh readAbaqus(const std::string& content, const std::string& file, const std::vector<std::string>& parts);

}  // namespace host
