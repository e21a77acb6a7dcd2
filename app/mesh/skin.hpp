// One skin of a thin solid: a sheet that is modelled with its thickness has two large skins and a rim, of
// which the analysis wants one.
#pragma once

#include <string>

#include "mesh/mesh.hpp"
#include "mesh/read_options.hpp"

namespace host {

// Whether every edge belongs to two triangles that run along it in opposite directions: the surface of a
// solid. mesh: sound (submesh.hpp).
bool isSolid(const Mesh& mesh);

// Takes one skin of a solid (inout) and moves it to the neutral fibre. Triangles grow into a skin over edges
// that bend by less than 50 degrees; the two largest skins are the sheet's, and its thickness is
// t = 2 V / (A1 + A2) with the volume V of the solid, exact for constant thickness. skin: outer, the larger;
// inner; auto, the outer, whose bends are the flatter. Remarks tell skin, areas and thickness. Throws Failure
// where the solid is no thin sheet.
void takeSkin(const ReadOptions& options, Mesh& mesh);

}  // namespace host
