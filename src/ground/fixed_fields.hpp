// Numbers in fixed-width fields, by the edit rules of ISO/IEC 1539 (Iw, Fw.d, Ew.d): right-justified, blanks to
// the left, asterisks where the number does not fit.
#pragma once

#include <cstdint>

namespace tornwalzen {

constexpr int widestField = 64;  // the largest width any of the three accepts

/// Iw. out: exactly `width` characters, not terminated. width: 1..64.
void integerField(char* out, std::int64_t value, int width);

/// Fw.d: fixed point with `decimals` digits after the point, correctly rounded (ties to even on the exact binary
/// value). A leading zero is dropped only where the field would overflow by it. Negative zero keeps its sign;
/// NaN and Infinity are words. width: 1..64, decimals: 0..width-1.
void fixedField(char* out, double value, int width, int decimals);

/// Ew.d: 0.ddddddE±ee, with ±eee in place of E±ee where the exponent has three digits. width: 1..64, digits: 1..17.
void exponentField(char* out, double value, int width, int digits);

}  // namespace tornwalzen
