// List-directed input: records, separators, repeat counts and null values. The numbers are in
// list_numbers.cpp.
#include "deckio/list_directed.hpp"

#include <algorithm>

namespace tornwalzen {

namespace {

constexpr Int64 largestRepeatCount = 200000000;  // more items than any record of ours could ask for

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}
bool endsItem(char c) {
  return isBlank(c) || c == '\n' || c == ',' || c == '/';
}

}  // namespace

bool ListReader::fail(ListFault fault) {
  fault_ = fault;
  return false;
}

// Makes the `length` characters from here on the current item.
void ListReader::markItem(std::size_t length) {
  value_ = at_;
  valueLength_ = length;
  itemLine_ = line_;
  itemColumn_ = static_cast<Int64>(at_ - lineStart_) + 1;
}

bool ListReader::skipRecord() {
  markItem(0);
  if (ended()) return fail(ListFault::textEnded);
  finish();
  return true;
}

void ListReader::begin() {
  separated_ = true;
  slash_ = false;
  repeats_ = 0;
}

void ListReader::finish() {
  const char* newline = std::find(text_ + at_, text_ + length_, '\n');
  at_ = static_cast<std::size_t>(newline - text_);
  if (ended()) return;
  lineStart_ = ++at_;
  ++line_;
}

// Blanks and ends of records.
void ListReader::skipBlanks() {
  for (; !ended(); ++at_) {
    if (text_[at_] == '\n') {
      lineStart_ = at_ + 1;
      ++line_;
    } else if (!isBlank(text_[at_])) {
      return;
    }
  }
}

// Splits `r*` off the item; an item without it counts once. False on a count of zero or one too large.
bool ListReader::takeRepeatCount() {
  repeats_ = 1;
  std::size_t digits = 0;
  Int64 count = 0;
  for (; digits < valueLength_ && isDigit(text_[value_ + digits]); ++digits)
    count = std::min(10 * count + (text_[value_ + digits] - '0'), largestRepeatCount + 1);
  if (digits == 0 || digits == valueLength_ || text_[value_ + digits] != '*') return true;
  if (count < 1 || count > largestRepeatCount) return fail(ListFault::badRepeatCount);
  repeats_ = count;
  const std::size_t prefix = digits + 1;
  value_ += prefix;
  valueLength_ -= prefix;
  itemColumn_ += static_cast<Int64>(prefix);
  return true;
}

ListReader::Item ListReader::next() {
  if (slash_) return Item::null;
  if (repeats_ == 0) {
    skipBlanks();
    if (!separated_ && !ended() && text_[at_] == ',') {
      ++at_;
      skipBlanks();
    }
    markItem(0);
    if (ended()) {
      fail(ListFault::textEnded);
      return Item::fault;
    }
    if (text_[at_] == '/') {
      slash_ = true;
      return Item::null;
    }
    if (text_[at_] == ',') {  // nothing between two commas
      ++at_;
      separated_ = true;
      return Item::null;
    }
    const char* end = std::find_if(text_ + at_, text_ + length_, endsItem);
    markItem(static_cast<std::size_t>(end - text_) - at_);
    at_ += valueLength_;
    separated_ = false;
    if (!takeRepeatCount()) return Item::fault;
  }
  --repeats_;
  return valueLength_ == 0 ? Item::null : Item::value;
}

bool ListReader::integer(Int& value) {
  const Item item = next();
  if (item != Item::value) return item == Item::null;
  bool tooLarge = false;
  if (parseInteger(text_ + value_, valueLength_, value, tooLarge)) return true;
  return fail(tooLarge ? ListFault::integerTooLarge : ListFault::notAnInteger);
}

bool ListReader::real(double& value) {
  const Item item = next();
  if (item != Item::value) return item == Item::null;
  if (parseReal(text_ + value_, valueLength_, value)) return true;
  return fail(ListFault::notAReal);
}

}  // namespace tornwalzen
