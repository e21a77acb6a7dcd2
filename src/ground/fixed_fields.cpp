// Fixed-width number fields.
#include "ground/fixed_fields.hpp"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace tornwalzen {

namespace {

// Right-justifies `text` of `length` characters; asterisks if it is too wide.
void place(char* out, const char* text, int length, int width) {
  if (length > width) {
    std::memset(out, '*', static_cast<std::size_t>(width));
    return;
  }
  std::memset(out, ' ', static_cast<std::size_t>(width - length));
  std::memcpy(out + (width - length), text, static_cast<std::size_t>(length));
}

// NaN and infinities: the longest of the words that fits.
void placeNonFinite(char* out, double value, int width) {
  if (std::isnan(value)) return place(out, "NaN", 3, width);
  const bool negative = std::signbit(value);
  if (width >= (negative ? 9 : 8))
    return negative ? place(out, "-Infinity", 9, width) : place(out, "Infinity", 8, width);
  negative ? place(out, "-Inf", 4, width) : place(out, "Inf", 3, width);
}

}  // namespace

void integerField(char* out, std::int64_t value, int width) {
  char text[24];
  place(out, text, std::snprintf(text, sizeof text, "%lld", static_cast<long long>(value)), width);
}

void fixedField(char* out, double value, int width, int decimals) {
  if (!std::isfinite(value)) return placeNonFinite(out, value, width);
  char text[400];  // 309 digits before the point, the point, 63 decimals, the sign
  int length = std::snprintf(text, sizeof text, "%#.*f", decimals, value);  // with its point always
  if (length > width) {  // the zero before the point is optional
    char* zero = text + (text[0] == '-' ? 1 : 0);
    if (zero[0] == '0' && zero[1] == '.' && decimals > 0) {
      std::memmove(zero, zero + 1, std::strlen(zero));
      --length;
    }
  }
  place(out, text, length, width);
}

void exponentField(char* out, double value, int width, int digits) {
  if (!std::isfinite(value)) return placeNonFinite(out, value, width);
  char scientific[40];  // d.ddddde±xx: the same digits, the point one place further right
  std::snprintf(scientific, sizeof scientific, "%.*e", digits - 1, value);
  const char* p = scientific;
  char text[48];
  int length = 0;
  if (*p == '-') text[length++] = *p++;
  text[length++] = '0';
  text[length++] = '.';
  for (; *p != 'e'; ++p)
    if (*p != '.') text[length++] = *p;
  const int exponent = value == 0.0 ? 0 : std::atoi(p + 1) + 1;
  length += std::snprintf(text + length, sizeof text - static_cast<std::size_t>(length),
                          std::abs(exponent) > 99 ? "%+04d" : "E%+03d", exponent);
  if (length == width + 1) {  // the zero before the point is optional
    char* zero = text + (text[0] == '-' ? 1 : 0);
    std::memmove(zero, zero + 1, static_cast<std::size_t>(length - (zero - text) - 1));
    --length;
  }
  place(out, text, length, width);
}

}  // namespace tornwalzen
