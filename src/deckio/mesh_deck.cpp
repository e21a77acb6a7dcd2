// The mesh deck, record by record: keywords are passed over unread, numbers are list-directed.
#include "deckio/mesh_deck.hpp"

#include <cinttypes>
#include <cstdio>
#include <cstring>

#include "deckio/deck_error.hpp"
#include "deckio/hold_rules.hpp"
#include "deckio/list_directed.hpp"

namespace tornwalzen {

namespace {

constexpr const char* coordinateNames[] = {"x", "y", "z"};

// One pass over a deck. Every step returns false once the error record is filled.
class DeckReading {
 public:
  DeckReading(const char* text, std::size_t length, const DeckArrays& arrays, TornwalzenDeckSizes& sizes,
              TornwalzenDeckError& error)
      : reader_(text, length), arrays_(arrays), sizes_(sizes), error_(error) {}

  bool run() {
    return skip(3) && nodeCount() && skip(2) && nodes() && skip(1) && elementCount() && skip(2) &&
           elements() && skip(1) && heldUnknowns();
  }

 private:
  bool skip(int records) {
    for (int r = 0; r < records; ++r)
      if (!reader_.skipRecord()) return fault("a keyword record");
    return true;
  }

  bool nodeCount() {
    if (!count("an integer: the number of nodes", sizes_.nkno)) return false;
    const Int64 equations = 2 * Int64{sizes_.nkno};
    if (sizes_.maxkno < sizes_.nkno) return tooSmall(TORNWALZEN_DECK_MAXKNO, sizes_.nkno);
    if (sizes_.maxsys < equations) return tooSmall(TORNWALZEN_DECK_MAXSYS, equations);
    sizes_.neq = static_cast<Int>(equations);
    return true;
  }

  bool elementCount() {
    if (!count("an integer: the number of triangles", sizes_.nele)) return false;
    return sizes_.maxele >= sizes_.nele || tooSmall(TORNWALZEN_DECK_MAXELE, sizes_.nele);
  }

  // A count that is not written down is 0.
  bool count(const char* expected, Int& value) {
    value = 0;
    reader_.begin();
    if (!reader_.integer(value)) return fault(expected);
    reader_.finish();
    if (value >= 0) return true;
    fault("%s, 0 or more", expected);
    error_.kind = TORNWALZEN_DECK_MALFORMED;
    return false;
  }

  bool nodes() {
    double unkept = 0.0;
    for (Int n = 1; n <= sizes_.nkno; ++n) {
      Int number = 0;
      reader_.begin();
      if (!reader_.integer(number)) return fault("an integer: the number of node %" PRId32, n);
      for (int c = 1; c <= 3; ++c) {
        double& target = arrays_.KNG.data() != nullptr ? arrays_.KNG(n, c) : unkept;
        if (!reader_.real(target))
          return fault("a real number: %s of node %" PRId32, coordinateNames[c - 1], n);
      }
      reader_.finish();
    }
    return true;
  }

  bool elements() {
    Int unkept = 0;
    for (Int e = 1; e <= sizes_.nele; ++e) {
      Int number = 0, type = 0;
      reader_.begin();
      if (!reader_.integer(number)) return fault("an integer: the number of triangle %" PRId32, e);
      if (!reader_.integer(type)) return fault("an integer: the type of triangle %" PRId32, e);
      for (int c = 1; c <= 3; ++c) {
        Int& target = arrays_.INTA.data() != nullptr ? arrays_.INTA(e, c) : unkept;
        if (!reader_.integer(target)) return fault("an integer: node %d of triangle %" PRId32, c, e);
      }
      reader_.finish();
    }
    return true;
  }

  bool heldUnknowns() {
    const bool keep = arrays_.ARFA.data() != nullptr;
    for (Int i = 1; keep && i <= sizes_.neq; ++i) arrays_.ARFA(i) = 1;
    Int selector = 0;
    reader_.begin();
    if (!reader_.integer(selector)) return fault("an integer: the selector of held unknowns");
    reader_.finish();
    if (keep && arrays_.KNG.data() != nullptr) holdByRule(selector, arrays_.KNG, sizes_.nkno, arrays_.ARFA);
    Int unknown = 0;  // a null value repeats the number before
    for (Int r = 1; r <= selector; ++r) {
      reader_.begin();
      if (!reader_.integer(unknown)) return fault("an integer: held unknown %" PRId32, r);
      if (unknown < 1 || unknown > sizes_.neq) return outside(unknown, r);
      reader_.finish();
      if (keep) arrays_.ARFA(unknown) = 0;
    }
    return true;
  }

  bool outside(Int unknown, Int record) {
    fault("held unknown %" PRId32 " in 1..%" PRId32, record, sizes_.neq);
    error_.kind = TORNWALZEN_DECK_SUBSCRIPT;
    error_.value = unknown;
    return false;
  }

  bool tooSmall(TornwalzenDeckErrorKind kind, Int64 needed) {
    takeFault(error_, reader_);
    error_.kind = kind;
    error_.value = needed;
    return false;
  }

  template <class... Arguments>
  bool fault(const char* expected, Arguments... arguments) {
    takeFault(error_, reader_);
    describe(expected, arguments...);
    return false;
  }
  void describe(const char* expected) {
    std::snprintf(error_.expected, sizeof error_.expected, "%s", expected);
  }
  template <class... Arguments>
  void describe(const char* format, Arguments... arguments) {
    std::snprintf(error_.expected, sizeof error_.expected, format, arguments...);
  }

  ListReader reader_;
  const DeckArrays& arrays_;
  TornwalzenDeckSizes& sizes_;
  TornwalzenDeckError& error_;
};

}  // namespace

Int readMeshDeck(const char* text, std::size_t length, const DeckArrays& arrays, TornwalzenDeckSizes& sizes,
                 TornwalzenDeckError& error) {
  sizes.nkno = sizes.nele = sizes.neq = 0;
  DeckReading(text, length, arrays, sizes, error).run();
  return error.kind;
}

bool looksLikeDeck(const char* text, std::size_t length) {
  constexpr const char* keyword = "GEOMETRIE";
  std::size_t start = 0;
  while (start < length && (text[start] == ' ' || text[start] == '\t')) ++start;
  if (length - start >= std::strlen(keyword) && std::memcmp(text + start, keyword, std::strlen(keyword)) == 0)
    return true;
  ListReader reader(text, length);
  for (int record = 1; record <= 3; ++record)
    if (!reader.skipRecord()) return false;
  Int count = -1;
  reader.begin();
  return reader.integer(count) && count >= 0;
}

}  // namespace tornwalzen
