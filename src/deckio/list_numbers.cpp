// The number forms of list-directed input: 12  -3.5  .5  5.  1.5E2  1.5d+02  1.5+2  inf  -Infinity  NaN
// nan(text).
#include <charconv>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

#include "deckio/list_directed.hpp"

namespace tornwalzen {

namespace {

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isSign(char c) {
  return c == '+' || c == '-';
}

bool equalsWord(const char* item, std::size_t length, const char* word) {
  if (length != std::strlen(word)) return false;
  for (std::size_t i = 0; i < length; ++i)
    if (lower(item[i]) != word[i]) return false;
  return true;
}

// inf, infinity, nan and nan(...), without their sign.
bool parseWord(const char* item, std::size_t length, double& value) {
  if (equalsWord(item, length, "inf") || equalsWord(item, length, "infinity")) {
    value = std::numeric_limits<double>::infinity();
    return true;
  }
  const bool bare = equalsWord(item, length, "nan");
  const bool marked = length >= 5 && equalsWord(item, 4, "nan(") && item[length - 1] == ')';
  if (bare || marked) value = std::numeric_limits<double>::quiet_NaN();
  return bare || marked;
}

// The parts of an unsigned decimal number.
struct Decimal {
  std::size_t mantissaLength = 0;  // digits and point
  Int64 leadingPower = 0;          // decimal exponent of the first digit that is not zero
  bool zero = true;                // no such digit
  std::size_t exponentStart = 0;   // its sign or first digit; the item's length without an exponent
};

bool splitDecimal(const char* item, std::size_t length, Decimal& parts) {
  std::size_t p = 0, digits = 0, point = length;
  std::size_t firstNonZero = length;
  for (; p < length && (isDigit(item[p]) || (item[p] == '.' && point == length)); ++p) {
    if (item[p] == '.') {
      point = p;
      continue;
    }
    ++digits;
    if (item[p] != '0' && firstNonZero == length) firstNonZero = p;
  }
  if (digits == 0) return false;
  parts.mantissaLength = p;
  parts.zero = firstNonZero == length;
  if (point == length) point = p;
  parts.leadingPower = firstNonZero < point ? static_cast<Int64>(point - firstNonZero) - 1
                                            : static_cast<Int64>(point) - static_cast<Int64>(firstNonZero);
  if (p == length) {
    parts.exponentStart = length;
    return true;
  }
  const char letter = lower(item[p]);
  if (letter == 'e' || letter == 'd' || letter == 'q')
    ++p;
  else if (!isSign(item[p]))
    return false;
  parts.exponentStart = p;
  if (p < length && isSign(item[p])) ++p;
  if (p == length) return false;
  for (; p < length; ++p)
    if (!isDigit(item[p])) return false;
  return true;
}

// The exponent, clamped to what cannot be mistaken for a finite number whatever its mantissa's length.
Int64 exponentOf(const char* item, std::size_t start, std::size_t length) {
  constexpr Int64 enough = Int64{1} << 60;
  if (start == length) return 0;
  const bool negative = item[start] == '-';
  Int64 exponent = 0;
  for (std::size_t p = start + (isSign(item[start]) ? 1 : 0); p < length; ++p)
    if (exponent < enough / 16) exponent = 10 * exponent + (item[p] - '0');
  return negative ? -exponent : exponent;
}

bool parseDecimal(const char* item, std::size_t length, double& value) {
  Decimal parts;
  if (!splitDecimal(item, length, parts)) return false;
  value = 0.0;
  if (parts.zero) return true;
  const Int64 exponent = exponentOf(item, parts.exponentStart, length);
  const Int64 power = parts.leadingPower + exponent;  // the number lies in [10^power, 10^(power+1))
  if (power > 308) {
    value = std::numeric_limits<double>::infinity();
    return true;
  }
  if (power < -325) return true;  // below half the smallest number, 2.5e-324

  // Spell it as the conversion wants it: mantissa, letter, exponent.
  char shortCopy[80];
  std::unique_ptr<char[]> longCopy;
  char* copy = shortCopy;
  constexpr std::size_t exponentRoom = 24;
  if (parts.mantissaLength + exponentRoom > sizeof shortCopy) {
    longCopy.reset(new (std::nothrow) char[parts.mantissaLength + exponentRoom]);
    if (longCopy == nullptr) return false;
    copy = longCopy.get();
  }
  std::memcpy(copy, item, parts.mantissaLength);
  char* end = copy + parts.mantissaLength;
  *end++ = 'e';
  end = std::to_chars(end, end + exponentRoom - 1, exponent).ptr;
  const auto result = std::from_chars(copy, end, value);
  if (result.ec == std::errc::result_out_of_range)
    value = power > 0 ? std::numeric_limits<double>::infinity() : 0.0;
  return true;
}

}  // namespace

bool parseReal(const char* item, std::size_t length, double& value) {
  const bool sign = length > 0 && isSign(item[0]);
  const bool negative = sign && item[0] == '-';
  item += sign;
  length -= sign;
  double magnitude = 0.0;
  if (!parseDecimal(item, length, magnitude) && !parseWord(item, length, magnitude)) return false;
  value = negative ? -magnitude : magnitude;
  return true;
}

bool parseInteger(const char* item, std::size_t length, Int& value, bool& tooLarge) {
  std::size_t p = length > 0 && isSign(item[0]) ? 1 : 0;
  if (p == length) return false;
  for (std::size_t q = p; q < length; ++q)
    if (!isDigit(item[q])) return false;
  const char* first = item[0] == '+' ? item + 1 : item;
  tooLarge = std::from_chars(first, item + length, value).ec != std::errc();
  return !tooLarge;
}

}  // namespace tornwalzen
