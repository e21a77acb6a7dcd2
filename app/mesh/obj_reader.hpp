// Reads the triangles and quads of a Wavefront OBJ file: `v` and `f` lines; everything else in the file is skipped.
//
// Nodes keep the file's order, whether a face uses them or not, because users map the results back node by node. Words
// are read strictly: what is no number is refused, and coordinates are correctly rounded.
#pragma once

#include <string>

#include "mesh/mesh.hpp"

namespace host {

// content: the file's bytes, lines ended by line feed, carriage return or both; file: its name for messages. Negative
// (relative) node numbers are resolved. A quad is split over its shorter diagonal; the elements then bear the numbers of
// their faces, and a remark tells. threads: the lines of a large file in two at once, to the same mesh.
// Throws Failure, naming line, node or element: a word that is not a number, fewer than three coordinates, a face that
// is neither triangle nor quad, no face at all.
Mesh readObj(const std::string& content, const std::string& file, bool threads = false);

}  // namespace host
