// The console forms: the reader that asks for its deck and the writer of "eben.t51". Both end the process
// when they fail, as a program's own stop does.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "deckio/deck_error.hpp"
#include "deckio/deck_file.hpp"
#include "deckio/deck_records.hpp"
#include "ground/subscript_message.hpp"
#include "tornwalzen_deck.h"

using namespace tornwalzen;

namespace {

constexpr const char* flatBlankName = "eben.t51";

[[noreturn]] void stop(const TornwalzenDeckError& error) {
  char text[512];
  tornwalzenDeckErrorText(&error, text, sizeof text);
  const bool capacity = error.kind == TORNWALZEN_DECK_MAXKNO || error.kind == TORNWALZEN_DECK_MAXSYS ||
                        error.kind == TORNWALZEN_DECK_MAXELE;
  std::fprintf(capacity ? stdout : stderr, "%s\n", text);
  std::fflush(stdout);
  std::exit(EXIT_FAILURE);
}

void putRecord(void* file, const char* record, std::size_t length) {
  static_cast<RecordFile*>(file)->put(record, length);
}

}  // namespace

extern "C" {

int32_t tornwalzenDeckAskName(char name[TORNWALZEN_DECK_NAME_LENGTH + 1], TornwalzenDeckError* error) {
  clearError(*error, "standard input");
  std::printf(" EINGABEDATEI \n");
  std::fflush(stdout);
  int length = 0, c = std::getchar();
  const bool ended = c == EOF;
  for (; c != EOF && c != '\n'; c = std::getchar())
    if (length < TORNWALZEN_DECK_NAME_LENGTH && c != '\r') name[length++] = static_cast<char>(c);
  while (length > 0 && name[length - 1] == ' ') --length;
  name[length] = '\0';
  if (!ended) return TORNWALZEN_DECK_OK;
  std::snprintf(error->expected, sizeof error->expected, "the name of the deck");
  error->line = error->column = 1;
  return error->kind = TORNWALZEN_DECK_ENDED;
}

void readInputDeck(int32_t* INTA, int32_t* ARFA, double* KNG, TornwalzenDeckSizes* sizes) {
  TornwalzenDeckError error;
  char name[TORNWALZEN_DECK_NAME_LENGTH + 1];
  if (tornwalzenDeckAskName(name, &error) != TORNWALZEN_DECK_OK) stop(error);
  const int32_t kind = tornwalzenDeckRead(name, sizes, INTA, ARFA, KNG, &error);
  if (kind == TORNWALZEN_DECK_SUBSCRIPT) reportSubscript("ARFA", 1, error.value, sizes->neq);
  if (kind != TORNWALZEN_DECK_OK) stop(error);
}

void writeFlatBlankFile(const int32_t* INTA, const int32_t*, const int32_t*, const int32_t*, const int32_t*,
                        const double*, const double*, const double*, const double* RX, const double*,
                        const double*, const double*, const double*, const double*, const double*,
                        const double*, const double*, const TornwalzenDeckSizes* sizes) {
  RecordFile file;
  if (file.open(flatBlankName))
    flatBlankRecords(sizes->nkno, sizes->nele, {"INTA", INTA, sizes->maxele, 3}, {"RX", RX, sizes->neq},
                     putRecord, &file);
  if (file.complete()) return;
  TornwalzenDeckError error;
  clearError(error, flatBlankName);
  error.kind = TORNWALZEN_DECK_UNWRITABLE;
  std::snprintf(error.found, sizeof error.found, "%s", std::strerror(file.failure()));
  stop(error);
}

}  // extern "C"
