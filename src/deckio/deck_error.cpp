// The error record of the deck library and its one-line text.
#include "deckio/deck_error.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace tornwalzen {

void copyPrintable(char* out, std::size_t size, const char* text, std::size_t length) {
  const std::size_t kept = std::min(length, size - 1);
  for (std::size_t i = 0; i < kept; ++i) out[i] = text[i] >= ' ' && text[i] <= '~' ? text[i] : '?';
  out[kept] = '\0';
}

void clearError(TornwalzenDeckError& error, const char* file) {
  error = TornwalzenDeckError{};
  std::snprintf(error.file, sizeof error.file, "%s", file);
}

void takeFault(TornwalzenDeckError& error, const ListReader& reader) {
  error.kind = reader.fault() == ListFault::textEnded ? TORNWALZEN_DECK_ENDED : TORNWALZEN_DECK_MALFORMED;
  error.line = reader.line();
  error.column = reader.column();
  copyPrintable(error.found, sizeof error.found, reader.token(), reader.tokenLength());
}

}  // namespace tornwalzen

extern "C" void tornwalzenDeckErrorText(const TornwalzenDeckError* error, char* out, size_t size) {
  if (size == 0) return;
  const long long line = error->line, column = error->column, value = error->value;
  const char* file = error->file;
  switch (error->kind) {
    case TORNWALZEN_DECK_UNREADABLE:
      std::snprintf(out, size, "%s: cannot be read: %s", file, error->found);
      return;
    case TORNWALZEN_DECK_ENDED:
      std::snprintf(out, size, "%s:%lld:%lld: expected %s, found the end of the file", file, line, column,
                    error->expected);
      return;
    case TORNWALZEN_DECK_MALFORMED:
      std::snprintf(out, size, "%s:%lld:%lld: expected %s, found \"%s\"", file, line, column, error->expected,
                    error->found);
      return;
    case TORNWALZEN_DECK_MAXKNO:
      std::snprintf(out, size, " maxkno zu klein ");
      return;
    case TORNWALZEN_DECK_MAXSYS:
      std::snprintf(out, size, " maxsys zu klein ");
      return;
    case TORNWALZEN_DECK_MAXELE:
      std::snprintf(out, size, " maxele zu klein ");
      return;
    case TORNWALZEN_DECK_SUBSCRIPT:
      std::snprintf(out, size, "%s:%lld:%lld: expected %s, found %lld", file, line, column, error->expected,
                    value);
      return;
    case TORNWALZEN_DECK_UNWRITABLE:
      std::snprintf(out, size, "%s: cannot be written: %s", file, error->found);
      return;
    case TORNWALZEN_DECK_TOO_WIDE:
      std::snprintf(out, size, "%s: expected %s, found %lld", file, error->expected, value);
      return;
    case TORNWALZEN_DECK_NO_MEMORY:
      std::snprintf(out, size, "%s: not enough memory", file);
      return;
    default:
      out[0] = '\0';
  }
}
