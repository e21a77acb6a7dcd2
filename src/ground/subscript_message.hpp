// The line that names a subscript out of range.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// Writes one line on standard error, and flushes it:
///   fort: (2): Subscript #k of the array NAME has value V which is greater than the upper bound of U
///   fort: (3): Subscript #k of the array NAME has value V which is less than the lower bound of L
/// name: the array that the value would have indexed; position: k, from 1; value: the subscript, outside
/// lower..upper.
void reportSubscript(const char* name, int position, Int64 value, Int64 upper, Int64 lower = 1);

constexpr int subscriptLineLength = 192;  // words, two 64-bit numbers and a name of up to 40 characters

/// That line with its line end, zero-terminated.
void composeSubscript(char (&line)[subscriptLineLength], const char* name, int position, Int64 value,
                      Int64 upper, Int64 lower);

}  // namespace tornwalzen
