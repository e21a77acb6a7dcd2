// Moves the mesh on one skin of a thin solid to its neutral fibre, the surface whose lengths stay when the
// sheet is bent. It lies the factor k of the thickness t from the inside of a bend (the K-factor of bend
// allowance: blank length = flats + bend angle * (inner radius + k * t)).
#pragma once

#include <vector>

#include "mesh/mesh.hpp"

namespace host {

// The unit normals of the nodes: those of the triangles around each, weighed with the angle at the node
// (Thurmer and Wuthrich 1998). x, y, z of node 1, of node 2, ...; zero for a node in no triangle.
std::vector<double> nodeNormals(const Mesh& mesh);

// normals: unit normals of the nodes that point out of the material. fibre: k, 0 to 1. onSurface: the nodes
// lie on a curved surface that the triangles cut as chords; they are moved on, by a fraction of the height of
// the arc, until the edges have the length of the arcs. mesh: inout, on the skin, with its thickness t.
//
// A node where the skin is the outside of a bend moves into the material by (1 - k) t, one on the inside by
// k t; in between, where the sheet is flat, the distance passes smoothly from one to the other.
void moveToFibre(const std::vector<double>& normals, double fibre, bool onSurface, Mesh& mesh);

}  // namespace host
