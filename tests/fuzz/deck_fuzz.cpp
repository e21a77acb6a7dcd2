// Any bytes as a mesh deck: the reader ends, stays inside text and arrays, names a place for what it refuses,
// finds the same with and without arrays, and what it accepts survives being written and read again bit by
// bit.
#include <bit>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "deckio/deck_error.hpp"
#include "deckio/deck_records.hpp"
#include "deckio/mesh_deck.hpp"
#include "fuzz/fuzz_target.hpp"

namespace {

using namespace tornwalzen;

void require(bool condition) {
  if (!condition) std::abort();
}

struct Mesh {
  TornwalzenDeckSizes sizes{};
  std::vector<Int> INTA, ARFA;
  std::vector<double> KNG;
};

// Reads in the two steps of a host. Returns the error's kind.
Int readMesh(const char* text, std::size_t length, Mesh& mesh) {
  constexpr Int unlimited = std::numeric_limits<Int>::max();
  mesh.sizes = {unlimited, unlimited, unlimited, 0, 0, 0};
  TornwalzenDeckError error;
  clearError(error, "fuzz");
  const Int kind = readMeshDeck(text, length, {}, mesh.sizes, error);
  char line[512];
  tornwalzenDeckErrorText(&error, line, sizeof line);
  require((kind == TORNWALZEN_DECK_OK) == (line[0] == '\0'));
  if (kind != TORNWALZEN_DECK_OK) {
    require(error.line >= 1 && error.column >= 1);
    return kind;
  }
  const TornwalzenDeckSizes counts = mesh.sizes;
  // Every node and triangle took at least one byte of the text.
  require(static_cast<std::size_t>(counts.nkno) <= length && static_cast<std::size_t>(counts.nele) <= length);
  mesh.sizes = {counts.nkno, counts.nele, counts.neq, 0, 0, 0};
  mesh.INTA.assign(3 * static_cast<std::size_t>(counts.nele), 0);
  mesh.ARFA.assign(static_cast<std::size_t>(counts.neq), 0);
  mesh.KNG.assign(3 * static_cast<std::size_t>(counts.nkno), 0.0);
  clearError(error, "fuzz");
  const DeckArrays arrays{{"INTA", mesh.INTA.data(), counts.nele, 3},
                          {"ARFA", mesh.ARFA.data(), counts.neq},
                          {"KNG", mesh.KNG.data(), counts.nkno, 3}};
  require(readMeshDeck(text, length, arrays, mesh.sizes, error) == TORNWALZEN_DECK_OK);
  require(mesh.sizes.nkno == counts.nkno && mesh.sizes.nele == counts.nele &&
          mesh.sizes.neq == 2 * counts.nkno);
  return TORNWALZEN_DECK_OK;
}

void append(void* text, const char* record, std::size_t length) {
  static_cast<std::string*>(text)->append(record, length).append("\n");
}

bool sameNumber(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) ||
         (std::isnan(a) && std::isnan(b));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<char> text(data, data + size);  // its own block: a read past its end is seen
  looksLikeDeck(text.data(), text.size());
  Mesh mesh;
  if (readMesh(text.data(), text.size(), mesh) != TORNWALZEN_DECK_OK) return 0;

  const TornwalzenDeckSizes& s = mesh.sizes;
  std::string written;
  deckRecords(s.nkno, s.nele, {"INTA", mesh.INTA.data(), s.nele, 3}, {"KNG", mesh.KNG.data(), s.nkno, 3},
              {"ARFA", mesh.ARFA.data(), s.neq}, append, &written);
  Mesh again;
  require(looksLikeDeck(written.data(), written.size()));
  require(readMesh(written.data(), written.size(), again) == TORNWALZEN_DECK_OK);
  require(again.INTA == mesh.INTA && again.ARFA == mesh.ARFA && again.KNG.size() == mesh.KNG.size());
  for (std::size_t i = 0; i < mesh.KNG.size(); ++i) require(sameNumber(again.KNG[i], mesh.KNG[i]));
  return 0;
}
