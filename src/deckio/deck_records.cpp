// The records of the mesh deck and of the flat-blank file.
#include "deckio/deck_records.hpp"

#include <charconv>
#include <cstring>
#include <string>

#include "ground/fixed_fields.hpp"

namespace tornwalzen {

namespace {

constexpr Int triangleType = 81;  // the deck format's number for the 3-node triangle

// Keyword records, blank-padded on the right to the lengths of the format.
constexpr const char* titleRecord = "GEOMETRIE DEFORMIERBARER KOERPER";
constexpr const char* beginRecord = "BEGINN TORNWALZEN_E        ";
constexpr const char* nodesRecord = "KNOTENGEOMETRIE            ";
constexpr const char* gaplessRecord = "LUECKENLOS           ";
constexpr const char* listedRecord = "LISTENGESTEUERT            ";
constexpr const char* incidencesRecord = "INZIDENZTAFEL";
constexpr const char* endRecord = "ENDE";
static_assert(std::char_traits<char>::length(titleRecord) == 32);
static_assert(std::char_traits<char>::length(beginRecord) == 27);
static_assert(std::char_traits<char>::length(nodesRecord) == 27);
static_assert(std::char_traits<char>::length(gaplessRecord) == 21);
static_assert(std::char_traits<char>::length(listedRecord) == 27);

// One record, filled from the left.
class Record {
 public:
  void fixedInteger(Int64 value, int width) { integerField(advance(width), value, width); }
  void fixedExponent(double value, int width, int digits) {
    exponentField(advance(width), value, width, digits);
  }
  template <class Number>
  void shortest(Number value) {  // behind a blank, if it is not the first
    if (used_ > 0) characters_[used_++] = ' ';
    used_ = std::to_chars(characters_ + used_, characters_ + sizeof characters_, value).ptr - characters_;
  }
  void give(TakeRecord take, void* taker) {
    take(taker, characters_, static_cast<std::size_t>(used_));
    used_ = 0;
  }

 private:
  char* advance(int width) {
    used_ += width;
    return characters_ + used_ - width;
  }
  char
      characters_[160];  // the widest record: an integer and three shortest decimals of at most 24 characters
  std::ptrdiff_t used_ = 0;
};

class Keywords {
 public:
  Keywords(TakeRecord take, void* taker) : take_(take), taker_(taker) {}
  void give(const char* record) const { take_(taker_, record, std::strlen(record)); }
  void head() const {
    give(titleRecord);
    give(beginRecord);
    give(nodesRecord);
  }
  void list() const {
    give(gaplessRecord);
    give(listedRecord);
  }

 private:
  TakeRecord take_;
  void* taker_;
};

}  // namespace

void flatBlankRecords(Int nkno, Int nele, Table<const Int> INTA, Vector<const double> RX, TakeRecord take,
                      void* taker) {
  const Keywords keywords(take, taker);
  Record record;
  keywords.head();
  record.fixedInteger(nkno, 5);
  record.give(take, taker);
  keywords.list();
  for (Int64 n = 1; n <= nkno; ++n) {
    record.fixedInteger(n, 6);
    record.fixedExponent(RX(2 * n - 1), 15, 6);
    record.fixedExponent(RX(2 * n), 15, 6);
    record.fixedExponent(0.0, 15, 6);
    record.give(take, taker);
  }
  keywords.give(incidencesRecord);
  record.fixedInteger(nele, 5);
  record.give(take, taker);
  keywords.list();
  for (Int64 e = 1; e <= nele; ++e) {
    record.fixedInteger(e, 6);
    record.fixedInteger(triangleType, 6);
    for (Int64 c = 1; c <= 3; ++c) record.fixedInteger(INTA(e, c), 6);
    record.give(take, taker);
  }
  keywords.give(endRecord);
}

void deckRecords(Int nkno, Int nele, Table<const Int> INTA, Table<const double> KNG, Vector<const Int> ARFA,
                 TakeRecord take, void* taker) {
  const Keywords keywords(take, taker);
  Record record;
  keywords.head();
  record.shortest(nkno);
  record.give(take, taker);
  keywords.list();
  for (Int64 n = 1; n <= nkno; ++n) {
    record.shortest(n);
    for (Int64 c = 1; c <= 3; ++c) record.shortest(KNG(n, c));
    record.give(take, taker);
  }
  keywords.give(incidencesRecord);
  record.shortest(nele);
  record.give(take, taker);
  keywords.list();
  for (Int64 e = 1; e <= nele; ++e) {
    record.shortest(e);
    record.shortest(triangleType);
    for (Int64 c = 1; c <= 3; ++c) record.shortest(INTA(e, c));
    record.give(take, taker);
  }
  keywords.give(endRecord);
  Int64 held = 0;
  for (Int64 i = 1; i <= ARFA.length(); ++i) held += ARFA(i) == 0;
  record.shortest(held);
  record.give(take, taker);
  for (Int64 i = 1; i <= ARFA.length(); ++i) {
    if (ARFA(i) != 0) continue;
    record.shortest(i);
    record.give(take, taker);
  }
}

}  // namespace tornwalzen
