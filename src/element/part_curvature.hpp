// Curvature of the part's surface, triangle by triangle, from normals at its nodes.
//
// A node's normal is the sum of the normals of its triangles over the squared lengths of the two edges that meet there,
// exact where the neighbours lie on a sphere (N. Max, Weights for computing vertex normals from facet normals, 1999).
// Within a triangle the normal is linear, and κ = sym ∇n in the triangle's own axes: positive where the surface is convex
// seen from the side that the normals point to (1/mm).
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// A node in a plane of symmetry: its normal lies in the plane. PLANE(2n-1) and PLANE(2n) are 1 where node n lies in a
/// plane across x, across y; else 0.
/// NORMALS: out, 3 × NN, unit vectors (0 where no triangle is). INTA: in, NE × 3; KNG: in, NN × 3 (mm).
void nodeNormals(Table<const Int> INTA, Table<const double> KNG, Vector<const Int> PLANE,
                 Table<double> NORMALS);

/// CURVATURE: out, 3 × NE: κ11, κ22, κ12 in the axes of part_frames.hpp (1/mm). FRAMES: in, 4 × NE.
void triangleCurvatures(Table<const Int> INTA, Table<const double> KNG, Table<const double> FRAMES,
                        Table<const double> NORMALS, Table<double> CURVATURE);

}  // namespace tornwalzen
