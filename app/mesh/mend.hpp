// Mends what a mesh commonly has wrong, and proposes what only the user can decide. Nothing is done silently:
// every step leaves a remark with counts and first places.
#pragma once

#include <cstddef>
#include <vector>

#include "mesh/mesh.hpp"
#include "mesh/read_options.hpp"

namespace host {

// Leaves out triangles that name the same three nodes as one before. Where options.weld is above 0, border
// nodes that lie closer together than that become the first of them, and triangles that collapse by it are
// left out. mesh: inout, sound (submesh.hpp). Throws Failure: nothing within the tolerance.
void mendMesh(const ReadOptions& options, Mesh& mesh);

// Adds remarks: --weld with its value, where border nodes of seams lie closer than 1e-3 of the edges around
// them; --remesh with the edge of a mean triangle, where triangles have a corner below 5 degrees. mesh: inout, sound.
void proposeMending(const ReadOptions& options, Mesh& mesh);

// The smallest corner of a triangle (from 0), in degrees; 0 where it has no area. mesh: sound.
double smallestAngle(const Mesh& mesh, std::size_t element);

// The triangles (from 0, ascending) with a corner below 5 degrees, those without area apart. mesh: sound.
std::vector<std::size_t> needlesOf(const Mesh& mesh);

}  // namespace host
