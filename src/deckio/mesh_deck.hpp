// The mesh deck, from its characters to the mesh.
#pragma once

#include <cstddef>

#include "ground/array_view.hpp"
#include "tornwalzen_deck.h"

namespace tornwalzen {

/// Where the mesh goes. Views without memory are not written: a deck can be read for its counts alone.
struct DeckArrays {
  Table<Int> INTA;    // out, maxele × 3: node numbers of each triangle
  Vector<Int> ARFA;   // out, maxsys: 1 free, 0 held
  Table<double> KNG;  // out, maxkno × 3: coordinates (mm)
};

/// Reads a deck of `length` characters. sizes: the capacities in, the counts out. error: names the file
/// already; filled on failure. Returns the error's kind.
Int readMeshDeck(const char* text, std::size_t length, const DeckArrays& arrays, TornwalzenDeckSizes& sizes,
                 TornwalzenDeckError& error);

/// True if a text that begins with these characters is taken for a deck.
bool looksLikeDeck(const char* text, std::size_t length);

}  // namespace tornwalzen
