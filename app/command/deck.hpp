// The command `tornwalzen deck`.
#pragma once

#include "command/arguments.hpp"

namespace host {

// Reads a part, or a deck whose name it asks for, tells what it holds and writes it as a deck. Returns the
// exit status; throws Failure when the part is refused or the deck cannot be written.
int deck(const DeckOptions& options);

}  // namespace host
