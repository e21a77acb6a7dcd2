// The command `tornwalzen deck`: a part into a mesh deck, or a look into one.
#include "command/deck.hpp"

#include <cstdio>

#include "mesh/deck_reader.hpp"
#include "mesh/mesh_check.hpp"
#include "mesh/part_file.hpp"
#include "result/deck_writer.hpp"
#include "run/hold.hpp"
#include "system/failure.hpp"
#include "system/input_file.hpp"
#include "system/same_file.hpp"
#include "system/text.hpp"
#include "tornwalzen_deck.h"

namespace host {

namespace {

// The deck that the user names when asked.
Mesh askForDeck() {
  char name[TORNWALZEN_DECK_NAME_LENGTH + 1];
  TornwalzenDeckError error;
  if (tornwalzenDeckAskName(name, &error) != TORNWALZEN_DECK_OK)
    throw Failure("no name of a deck on standard input");
  return readDeck(readInputFile(name), name);
}

}  // namespace

int deck(const DeckOptions& options) {
  const Part part =
      options.part.empty()
          ? checkMesh(askForDeck(), options.largest)
          : readPart(options.part, options.reading, options.largest,
                     [](const std::string& sentence) { std::fprintf(stderr, "%s\n", sentence.c_str()); });
  const Hold hold = holdUnknowns(part, holdRule(part, options.hold));
  checkOutputsSpareInputs({part.file, holdFile(options.hold)}, deckPlaces(options.out),
                          "choose another name with -o");
  if (!options.out.empty()) writeDeck(options.out, part.points, part.corners, hold.ARFA);
  // Not on standard output when the deck goes there.
  std::fprintf(options.out.empty() ? stdout : stderr, "%s: %s, %s, %s\n", part.file.c_str(),
               counted(part.nodes(), "node").c_str(), counted(part.elements(), "triangle").c_str(),
               counted(hold.held, "held unknown").c_str());
  return exitConverged;
}

}  // namespace host
