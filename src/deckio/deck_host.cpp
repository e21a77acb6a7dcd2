// The functions for hosts: decks by name into and out of the host's arrays. None ends the process.
#include <cerrno>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>

#include "deckio/deck_error.hpp"
#include "deckio/deck_file.hpp"
#include "deckio/deck_records.hpp"
#include "deckio/mesh_deck.hpp"
#include "tornwalzen_deck.h"

using namespace tornwalzen;

namespace {

constexpr std::size_t recognitionLength = 4096;  // four records of any deck lie well within it

void putRecord(void* file, const char* record, std::size_t length) {
  static_cast<RecordFile*>(file)->put(record, length);
}

int32_t unwritable(TornwalzenDeckError& error, int reason) {
  error.kind = TORNWALZEN_DECK_UNWRITABLE;
  std::snprintf(error.found, sizeof error.found, "%s", std::strerror(reason));
  return error.kind;
}

// Opens the file, lets `compose` give its records, and puts it in place.
template <class Compose>
int32_t writeFile(const char* path, TornwalzenDeckError& error, Compose compose) {
  RecordFile file;
  if (!file.open(path)) return unwritable(error, file.failure());
  compose(&file);
  return file.complete() ? TORNWALZEN_DECK_OK : unwritable(error, file.failure());
}

int32_t tooWide(TornwalzenDeckError& error, const char* what, int64_t value, int64_t upper) {
  error.kind = TORNWALZEN_DECK_TOO_WIDE;
  error.value = value;
  std::snprintf(error.expected, sizeof error.expected, "%s up to %" PRId64, what, upper);
  return error.kind;
}

// Counts and node numbers that would run together in the fixed fields, or name no node.
int32_t checkFields(int32_t nkno, int32_t nele, const int32_t* INTA, TornwalzenDeckError& error) {
  constexpr Int64 limit = TORNWALZEN_FLAT_BLANK_LIMIT;
  if (nkno > limit) return tooWide(error, "a number of nodes", nkno, limit);
  if (nele > limit) return tooWide(error, "a number of triangles", nele, limit);
  for (Int64 i = 0; i < 3 * Int64{nele}; ++i)
    if (INTA[i] < 1 || INTA[i] > nkno) return tooWide(error, "node numbers from 1", INTA[i], nkno);
  return TORNWALZEN_DECK_OK;
}

}  // namespace

extern "C" {

int32_t tornwalzenDeckRecogniseText(const char* text, size_t length) {
  return looksLikeDeck(text, length) ? 1 : 0;
}

int32_t tornwalzenDeckRecognise(const char* path) {
  TornwalzenDeckError error;
  clearError(error, path);
  FileText file;
  if (loadFile(path, recognitionLength, file, error) != TORNWALZEN_DECK_OK) return 0;
  return tornwalzenDeckRecogniseText(file.text.get(), file.length);
}

int32_t tornwalzenDeckCountsText(const char* path, const char* text, size_t length,
                                 TornwalzenDeckSizes* sizes, TornwalzenDeckError* error) {
  clearError(*error, path);
  constexpr Int unlimited = std::numeric_limits<Int>::max();
  TornwalzenDeckSizes read{unlimited, unlimited, unlimited, 0, 0, 0};
  const int32_t kind = readMeshDeck(text, length, {}, read, *error);
  sizes->nkno = read.nkno;
  sizes->nele = read.nele;
  sizes->neq = read.neq;
  return kind;
}

int32_t tornwalzenDeckCounts(const char* path, TornwalzenDeckSizes* sizes, TornwalzenDeckError* error) {
  clearError(*error, path);
  FileText file;
  if (loadFile(path, SIZE_MAX - 1, file, *error) != TORNWALZEN_DECK_OK) return error->kind;
  return tornwalzenDeckCountsText(path, file.text.get(), file.length, sizes, error);
}

int32_t tornwalzenDeckReadText(const char* path, const char* text, size_t length, TornwalzenDeckSizes* sizes,
                               int32_t* INTA, int32_t* ARFA, double* KNG, TornwalzenDeckError* error) {
  clearError(*error, path);
  const DeckArrays arrays{
      {"INTA", INTA, sizes->maxele, 3}, {"ARFA", ARFA, sizes->maxsys}, {"KNG", KNG, sizes->maxkno, 3}};
  return readMeshDeck(text, length, arrays, *sizes, *error);
}

int32_t tornwalzenDeckRead(const char* path, TornwalzenDeckSizes* sizes, int32_t* INTA, int32_t* ARFA,
                           double* KNG, TornwalzenDeckError* error) {
  clearError(*error, path);
  FileText file;
  if (loadFile(path, SIZE_MAX - 1, file, *error) != TORNWALZEN_DECK_OK) return error->kind;
  return tornwalzenDeckReadText(path, file.text.get(), file.length, sizes, INTA, ARFA, KNG, error);
}

int32_t tornwalzenDeckWrite(const char* path, int32_t nkno, int32_t nele, const int32_t* INTA,
                            const int32_t* ARFA, const double* KNG, TornwalzenDeckError* error) {
  clearError(*error, path);
  return writeFile(path, *error, [&](RecordFile* file) {
    deckRecords(nkno, nele, {"INTA", INTA, nele, 3}, {"KNG", KNG, nkno, 3},
                {"ARFA", ARFA, ARFA != nullptr ? 2 * Int64{nkno} : 0}, putRecord, file);
  });
}

int32_t tornwalzenFlatBlankFits(int32_t nkno, int32_t nele) {
  return nkno <= TORNWALZEN_FLAT_BLANK_LIMIT && nele <= TORNWALZEN_FLAT_BLANK_LIMIT;
}

int32_t tornwalzenFlatBlankRecords(int32_t nkno, int32_t nele, const int32_t* INTA, const double* RX,
                                   TornwalzenTakeRecord take, void* taker, TornwalzenDeckError* error) {
  clearError(*error, "eben.t51");
  if (checkFields(nkno, nele, INTA, *error) != TORNWALZEN_DECK_OK) return error->kind;
  flatBlankRecords(nkno, nele, {"INTA", INTA, nele, 3}, {"RX", RX, 2 * Int64{nkno}}, take, taker);
  return TORNWALZEN_DECK_OK;
}

int32_t tornwalzenFlatBlankWrite(const char* path, int32_t nkno, int32_t nele, const int32_t* INTA,
                                 const double* RX, TornwalzenDeckError* error) {
  clearError(*error, path);
  if (checkFields(nkno, nele, INTA, *error) != TORNWALZEN_DECK_OK) return error->kind;
  return writeFile(path, *error, [&](RecordFile* file) {
    flatBlankRecords(nkno, nele, {"INTA", INTA, nele, 3}, {"RX", RX, 2 * Int64{nkno}}, putRecord, file);
  });
}

}  // extern "C"
