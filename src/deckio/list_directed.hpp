// List-directed input (ISO/IEC 1539, list-directed formatting) of integers and reals from a text in memory.
//
// A read begins at the start of a record and takes items one after the other; blanks, tabs, a comma between
// blanks and the ends of records separate them, so a record that ends early goes on in the next one. `r*v`
// stands for r times v, `r*` and nothing between two commas for values that leave their variable as it was,
// `/` ends the read and leaves all further variables as they were. What stands on the record behind the last
// item is ignored.
#pragma once

#include <cstddef>

#include "ground/array_view.hpp"

namespace tornwalzen {

enum class ListFault { none, textEnded, notAnInteger, notAReal, integerTooLarge, badRepeatCount };

class ListReader {
 public:
  /// text: in, `length` characters, any bytes; must outlive the reader. Line ends are LF or CR LF.
  ListReader(const char* text, std::size_t length) : text_(text), length_(length) {}

  /// Passes over one record. False, with a fault, at the end of the text.
  bool skipRecord();

  /// A read of several items: begin, then items, then finish (not after a fault).
  void begin();
  void finish();

  /// The next item: value is written, or kept where the item is null or the read has ended by a slash. False,
  /// with a fault, if the item is not of this kind or the text is at its end; nothing may be read afterwards.
  bool integer(Int& value);
  bool real(
      double& value);  // a magnitude that is too large becomes an infinity, as `inf` and `nan` are read too

  ListFault fault() const { return fault_; }
  /// The last item: where it starts (or the text ends), and its characters, without a repeat count.
  Int64 line() const { return itemLine_; }
  Int64 column() const { return itemColumn_; }
  const char* token() const { return text_ + value_; }
  std::size_t tokenLength() const { return valueLength_; }

 private:
  enum class Item { value, null, fault };
  Item next();
  bool fail(ListFault fault);
  void skipBlanks();
  void markItem(std::size_t length);
  bool takeRepeatCount();
  bool ended() const { return at_ >= length_; }

  const char* text_;
  std::size_t length_;
  std::size_t at_ = 0;         // the next character
  std::size_t lineStart_ = 0;  // the first character of its record
  Int64 line_ = 1;
  ListFault fault_ = ListFault::none;

  bool separated_ = true;        // no comma is due before the next item
  bool slash_ = false;           // the read was ended by a slash
  Int64 repeats_ = 0;            // how often the current value is still to be delivered
  std::size_t value_ = 0;        // its first character
  std::size_t valueLength_ = 0;  // none: null values
  Int64 itemLine_ = 1, itemColumn_ = 1;
};

/// One whole item as a real or an integer. False if the `length` characters are not of that form; for
/// integers also, with `tooLarge` set, if they do not fit.
bool parseReal(const char* item, std::size_t length, double& value);
bool parseInteger(const char* item, std::size_t length, Int& value, bool& tooLarge);

}  // namespace tornwalzen
