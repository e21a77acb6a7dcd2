// The two text formats that other tools take; see the header.
#include "result/deck_writer.hpp"

#include <exception>
#include <string_view>

#include "system/failure.hpp"
#include "system/process.hpp"
#include "tornwalzen_deck.h"

namespace host {

namespace {

[[noreturn]] void refuse(const TornwalzenDeckError& error) {
  char text[512];
  tornwalzenDeckErrorText(&error, text, sizeof text);
  throw Failure(text);
}

// Three values per row into three columns.
template <class T>
std::vector<T> byColumns(const std::vector<T>& rows) {
  std::vector<T> columns(rows.size());
  const std::size_t count = rows.size() / 3;
  for (std::size_t r = 0; r < count; ++r)
    for (std::size_t c = 0; c < 3; ++c) columns[c * count + r] = rows[3 * r + c];
  return columns;
}

// Where the records go. A writer's exception waits until the library has returned.
struct RecordTaker {
  FileWriter& file;
  std::exception_ptr problem;

  static void take(void* self, const char* record, std::size_t length) {
    auto& taker = *static_cast<RecordTaker*>(self);
    if (taker.problem) return;
    try {
      taker.file.write(std::string_view(record, length));
      taker.file.write("\n");
    } catch (...) {
      taker.problem = std::current_exception();
    }
  }
};

}  // namespace

std::vector<std::string> deckPlaces(const std::string& path) {
  if (path.empty()) return {};
  return {path + ".part", path};  // the library lets the deck grow beside its place
}

void writeDeck(const std::string& path, const std::vector<double>& points,
               const std::vector<std::int32_t>& corners, const std::vector<std::int32_t>& ARFA) {
  const std::vector<double> KNG = byColumns(points);
  const std::vector<std::int32_t> INTA = byColumns(corners);
  const std::string unfinished = deckPlaces(path).front();
  removeOnSignal(unfinished);
  TornwalzenDeckError error;
  const std::int32_t kind = tornwalzenDeckWrite(path.c_str(), static_cast<std::int32_t>(points.size() / 3),
                                                static_cast<std::int32_t>(corners.size() / 3), INTA.data(),
                                                ARFA.data(), KNG.data(), &error);
  keepOnSignal(unfinished);
  if (kind != TORNWALZEN_DECK_OK) refuse(error);
}

void checkFlatBlankFits(const std::string& part, std::int64_t nodes, std::int64_t elements) {
  if (tornwalzenFlatBlankFits(static_cast<std::int32_t>(nodes), static_cast<std::int32_t>(elements)) == 1)
    return;
  throw Failure(part + ": " + std::to_string(nodes) + " nodes and " + std::to_string(elements) +
                " triangles do not fit the fields of eben.t51, which hold " +
                std::to_string(TORNWALZEN_FLAT_BLANK_LIMIT) + " of each");
}

void writeFlatBlank(FileWriter& file, const std::vector<std::int32_t>& corners,
                    const std::vector<double>& positions) {
  const std::vector<std::int32_t> INTA = byColumns(corners);
  RecordTaker taker{file, nullptr};
  TornwalzenDeckError error;
  const std::int32_t kind = tornwalzenFlatBlankRecords(
      static_cast<std::int32_t>(positions.size() / 2), static_cast<std::int32_t>(corners.size() / 3),
      INTA.data(), positions.data(), RecordTaker::take, &taker, &error);
  if (taker.problem) std::rethrow_exception(taker.problem);
  if (kind != TORNWALZEN_DECK_OK) refuse(error);
}

}  // namespace host
