// Mesh decks; see the header.
#include "mesh/deck_reader.hpp"

#include <cstdio>

#include "mesh/mesh_check.hpp"
#include "system/failure.hpp"
#include "tornwalzen_deck.h"

namespace host {

namespace {

[[noreturn]] void refuse(const std::string& file, const TornwalzenDeckError& error) {
  char text[512];
  tornwalzenDeckErrorText(&error, text, sizeof text);
  if (error.kind != TORNWALZEN_DECK_MAXSYS) throw Failure(text);
  std::printf("%s\n", text);
  throw Failure(file + ": the deck announces " + std::to_string(error.value) +
                " unknowns; more than 2147483647 are not taken");
}

}  // namespace

bool looksLikeDeck(const std::string& content) {
  return tornwalzenDeckRecogniseText(content.data(), content.size()) == 1;
}

Mesh readDeck(const std::string& content, const std::string& file) {
  TornwalzenDeckSizes sizes{};
  TornwalzenDeckError error;
  // The counts are believed once the deck was seen to hold that many records.
  if (tornwalzenDeckCountsText(file.c_str(), content.data(), content.size(), &sizes, &error) !=
      TORNWALZEN_DECK_OK)
    refuse(file, error);
  if (sizes.nele == 0) throw Failure(file + ": the deck holds no triangles");
  const auto nodes = static_cast<std::size_t>(sizes.nkno), elements = static_cast<std::size_t>(sizes.nele);
  checkCounts(file, nodes, elements);
  std::vector<double> KNG(3 * nodes);
  std::vector<std::int32_t> INTA(3 * elements);
  Mesh mesh;
  mesh.file = file;
  mesh.flags.resize(2 * nodes);
  sizes.maxkno = sizes.nkno;
  sizes.maxele = sizes.nele;
  sizes.maxsys = sizes.neq;
  if (tornwalzenDeckReadText(file.c_str(), content.data(), content.size(), &sizes, INTA.data(),
                             mesh.flags.data(), KNG.data(), &error) != TORNWALZEN_DECK_OK)
    refuse(file, error);
  mesh.points.resize(3 * nodes);
  mesh.corners.resize(3 * elements);
  for (std::size_t c = 0; c < 3;
       ++c) {  // by columns in the deck's arrays, by nodes and triangles in the mesh
    for (std::size_t n = 0; n < nodes; ++n) mesh.points[3 * n + c] = KNG[c * nodes + n];
    for (std::size_t e = 0; e < elements; ++e) mesh.corners[3 * e + c] = INTA[c * elements + e];
  }
  return mesh;
}

}  // namespace host
