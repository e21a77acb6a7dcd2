// The rotation of every triangle into the blank: taken as it is seen where the sheet is not too steep, and from there
// carried over the edges, as if each were a hinge that is opened flat.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// Completes the rotations ANGLE (radians, NE) of the triangles.
///
/// KNOWN: inout, NE: 1 where ANGLE is given, 0 where it is to be carried over; all 1 on return as far as a chain of
/// shared edges reaches. A triangle gets its angle from the neighbour nearer to a given one, on the shortest path of
/// hinges: an edge costs the angle between the two normals (radians) + 1e-3, so that flat ways are preferred (E. W.
/// Dijkstra, A note on two problems in connexion with graphs, 1959); of two equal ways the one whose triangle has
/// the lower number.
///
/// INTA: in, NE × 3; KNG: in, NN × 3 (mm); NORMALS: in, 3 × NE of part_attitude.hpp; NEIGHBOUR, SIDE: in, 3 × NE of
/// neighbours.hpp. ANGLE(e) turns the triangle's own axes, the first along its edge from corner 1 to 2, into the
/// blank's. False: no memory for the queue; nothing was changed.
bool carryRotations(Table<const Int> INTA, Table<const double> KNG, Table<const double> NORMALS,
                    Table<const Int> NEIGHBOUR, Table<const Int> SIDE, Vector<Int> KNOWN,
                    Vector<double> ANGLE);

}  // namespace tornwalzen
