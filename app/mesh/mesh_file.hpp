// Recognises the format of a mesh file by its content and reads it.
#ifndef TORNWALZEN_APP_MESH_FILE_HPP
#define TORNWALZEN_APP_MESH_FILE_HPP

#include <string>

#include "mesh/mesh.hpp"

namespace host {

// The mesh in the file `path`: Wavefront OBJ, STL text, STL binary or a mesh deck. Throws Failure: not
// readable, none of these formats, or what its reader refuses.
Mesh readMeshFile(const std::string& path);

}  // namespace host

#endif
