// Recognises the format of a mesh file by its content and reads it.
#pragma once

#include <string>

#include "mesh/mesh.hpp"
#include "mesh/read_options.hpp"

namespace host {

// The mesh in the file `path`, of any format of the table (format_table.hpp). Where the name means another
// format than the content is, a remark tells. Throws Failure: not readable, no format that is known, parts
// wanted of a format that has none, or what its reader refuses.
Mesh readMeshFile(const std::string& path, const ReadOptions& options = {});

}  // namespace host
