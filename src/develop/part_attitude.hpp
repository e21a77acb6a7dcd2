// The attitude in which the part is seen: along its mean normal, so that the start of the blank does not depend on
// how the part lies in the host's axes.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// Columns of NORMALS: area vector of each triangle (mm²), half the cross product of its edges.
/// INTA: in, NE × 3; KNG: in, NN × 3 (mm); NORMALS: out, 3 × NE.
void triangleNormals(Table<const Int> INTA, Table<const double> KNG, Table<double> NORMALS);

struct Direction {
  double x, y, z;  // unit vector
  bool flatPatch;  // was it taken from a patch, the mean being too small to mean anything?
  Int seed;        // first triangle of that patch, 0 without one
};

/// The unit vector of Σ of the area vectors; where that is shorter than 0.05 of the area (a tube), the normal of the
/// largest nearly flat patch: triangles joined over shared edges whose normals lie within 11.5 degrees of the first
/// one's. NORMALS: in; NEIGHBOUR: in, 3 × NE of neighbours.hpp; PATCH: scratch, 2·NE.
Direction viewDirection(Table<const double> NORMALS, Table<const Int> NEIGHBOUR, Vector<Int> PATCH);

/// The largest nearly flat patch alone, as above.
Direction largestPatch(Table<const double> NORMALS, Table<const Int> NEIGHBOUR, Vector<Int> PATCH);

/// AXES: out, rows x, y, z: the smallest turn that makes `view` the third axis. view.z ≥ 0: a level triangle then
/// keeps its direction in the plane.
void axesOf(const Direction& view, double (&AXES)[3][3]);

}  // namespace tornwalzen
