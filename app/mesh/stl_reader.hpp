// Reads STL files, text and binary, and merges equal points.
//
// STL stores every triangle with its own three points. Points are one node if their coordinates are equal as
// numbers (-0 equals 0); nothing is merged within a tolerance, so that no needle triangle collapses unseen.
// Nodes are numbered by their first appearance. The stored normals are not read: they follow from the points.
//
// The reader is written here because the general import libraries read text coordinates in single precision
// and regroup the points by normals.
#pragma once

#include <cstdint>
#include <string>

#include "mesh/mesh.hpp"

namespace host {

// content: the file's bytes; file: its name for messages. Throws Failure naming line or triangle: a text that
// leaves the grammar, a facet with more or fewer than three points, a length that does not fit the number of
// triangles announced, no triangle at all.
Mesh readStlText(const std::string& content, const std::string& file);
Mesh readStlBinary(const std::string& content, const std::string& file);

// Whether the bytes are a text STL (they begin with "solid" and the first word that is no name is "facet" or
// "endsolid") or have exactly the length of a binary one.
bool looksLikeStlText(const std::string& content);
bool looksLikeStlBinary(const std::string& content);

// Whether a file of `length` bytes that begins with `head` has exactly the length of a binary STL; the second
// throws Failure if not. The head holds 84 bytes or the whole file.
bool hasStlLength(const std::string& head, std::uint64_t length);
void checkStlLength(const std::string& head, std::uint64_t length, const std::string& file);

}  // namespace host
