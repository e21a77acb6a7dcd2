// Filling the error record of the deck library.
#pragma once

#include <cstddef>

#include "deckio/list_directed.hpp"
#include "tornwalzen_deck.h"

namespace tornwalzen {

/// An empty record that names the file. file: zero-terminated; cut to the record's room.
void clearError(TornwalzenDeckError& error, const char* file);

/// Sets kind, place and the item found after a fault of the reader. `expected` is set by the caller.
void takeFault(TornwalzenDeckError& error, const ListReader& reader);

/// Copies `length` characters into `out` of `size`, other than printing ones as '?', and terminates them.
void copyPrintable(char* out, std::size_t size, const char* text, std::size_t length);

}  // namespace tornwalzen
