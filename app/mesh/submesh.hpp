// Taking some triangles of a mesh, with their nodes and identities.
#pragma once

#include <string>
#include <vector>

#include "mesh/mesh.hpp"

namespace host {

// Keeps the triangles for which keep (per element) holds, in their order; nodes stay.
void keepTriangles(const std::vector<bool>& keep, Mesh& mesh);

// Leaves out nodes in no triangle; those that stay keep their order. Node numbers must be in range.
void dropUnusedNodes(Mesh& mesh);

// Whether every corner is a node of the mesh and every coordinate finite: what all below may rely on.
bool isSound(const Mesh& mesh);

// "elements 3, 17, 20, ...": the first three of the triangles given (from 0), by the file's own numbers where
// it has such.
std::string firstElements(const Mesh& mesh, const std::vector<std::size_t>& triangles);

// The file's own number of a node (from 0), or its place from 1.
std::string nodeNumber(const Mesh& mesh, std::size_t node);

}  // namespace host
