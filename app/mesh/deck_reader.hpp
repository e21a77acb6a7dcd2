// Mesh decks: the keyword text format that holds a mesh and its held unknowns.
#pragma once

#include <string>

#include "mesh/mesh.hpp"

namespace host {

// Whether the content begins as a mesh deck does.
bool looksLikeDeck(const std::string& content);

// The mesh and the flags of a deck; `file` is its name for messages. Throws Failure: what the deck's layout
// does not have, with line and column, or a deck without triangles. More unknowns than 32 bits hold are
// answered with the reader's own text on standard output too.
Mesh readDeck(const std::string& content, const std::string& file);

}  // namespace host
