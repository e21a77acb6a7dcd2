// From the name of a file to the part that is run: reading, one skin of a solid, mending, checking.
#pragma once

#include <functional>
#include <string>

#include "mesh/mesh_check.hpp"
#include "mesh/read_options.hpp"

namespace host {

// Takes one sentence for the user.
using Tell = std::function<void(const std::string&)>;

// The part in the file `path`. largest: see checkMesh. tell: gets what was done to the mesh and what is
// proposed, also where the mesh is refused afterwards. Throws Failure, as the readers, the mending and
// checkMesh do.
Part readPart(const std::string& path, const ReadOptions& options, bool largest, const Tell& tell);

// The middle of it: mends a sound mesh (inout), takes the skin of a solid, meshes anew, as the options want it. Throws
// Failure likewise; the mesh is then what it was before the step that failed.
void prepareMesh(const ReadOptions& options, Mesh& mesh, const Tell& tell);

}  // namespace host
