// The area of the plane that a blank covers more than once.
//
// A point is covered as often as its winding number says in the chain of all triangles' borders, each triangle taken
// counter-clockwise. Between neighbours of the same sense the borders cancel; what remains is the outline and, twice,
// the edges at which the blank is folded. So folds in the middle count as what they are, at the cost of the edges that
// are fold or outline.
//
// The plane is cut into slabs at the corners of that chain and at the crossings within them. Inside a slab the length
// that is covered twice or more is linear in v, so its value at half height times the height is the area.
#pragma once

#include "develop/mesh_edges.hpp"

namespace tornwalzen {

// Sides met in all slabs, about a tenth of a second. Up to here the area is exact to rounding, about 1e-12 of the
// blank's box. Beyond, slabs join neighbouring corners and crossings inside a slab stay uncut: a crumpled blank, whose
// area is then good to a hundredth.
constexpr Int64 overlapSideBudget = 2'000'000;

/// M: in, with at most two triangles on an edge; its part is not read. TWIN: in, partners of the half edges. SENSE:
/// in, nele: 1 counter-clockwise, −1 clockwise, 0 no area. RX: in, blank positions (mm), finite and up to 1e100.
/// area: out, covered more than once (mm²). False where there is no memory.
bool measureOverlap(const PartMesh& M, Vector<const Int> TWIN, Vector<const signed char> SENSE,
                    Vector<const double> RX, double& area);

}  // namespace tornwalzen
