// Meshes through the helper program `tornwalzen-import`: CAD files (gmsh), foreign mesh formats (meshio), and
// meshing anew. It runs as a process of its own with a time limit, and hands over an OBJ and a JSON file in a
// folder that is removed afterwards; this program links nothing of it.
#pragma once

#include <string>

#include "mesh/mesh.hpp"
#include "mesh/read_options.hpp"

namespace host {

// content: the file's bytes; file: its name for messages; extension: of the format, without the dot. All
// throw Failure: no helper or not the packages that it needs (named), its own refusal, its end by a signal or
// by the time limit.

// A CAD file, meshed. Of a thin solid one skin, moved to the neutral fibre; its thickness is measured.
Mesh importCad(const std::string& content, const std::string& file, const std::string& extension,
               const ReadOptions& options);

// A mesh file: nodes in the file's order, quads split over the shorter diagonal.
Mesh importMesh(const std::string& content, const std::string& file, const std::string& extension,
                const ReadOptions& options);

// The mesh made anew with edges of options.remesh on the same surface; its edges beyond 40 degrees are kept.
// Identities and flags are lost.
Mesh importAnew(const Mesh& mesh, const ReadOptions& options);

}  // namespace host
