// The rotation of every triangle into the blank: taken as it is seen where the sheet is not too steep, and from there
// carried over the edges, as if each were a hinge that is opened flat.
#pragma once

#include "develop/mesh_edges.hpp"

namespace tornwalzen {

/// Completes the rotations ANGLE (radians, NE) of the triangles.
///
/// KNOWN: inout, NE: 1 where ANGLE is given, 0 where it is to be carried over; all 1 on return as far as a chain of
/// shared edges reaches. A triangle gets its angle from the neighbour nearer to a given one, on the shortest path of
/// hinges: an edge costs the angle between the two normals (radians) + 1e-3, so that flat ways are preferred (E. W.
/// Dijkstra, A note on two problems in connexion with graphs, 1959); of two equal ways the one whose triangle has
/// the lower number.
///
/// M: in; TWIN: in, 3·NE, the partners of the half edges (mesh_edges.hpp); NORMALS: in, 3 × NE, area normals (mm²).
/// ANGLE(e) turns the triangle's own axes, the first along its edge from corner 1 to 2, into the blank's. False: no
/// memory for the queue; nothing was changed.
bool carryRotations(const PartMesh& M, Vector<const Int> TWIN, Table<const double> NORMALS, Vector<Int> KNOWN,
                    Vector<double> ANGLE);

}  // namespace tornwalzen
