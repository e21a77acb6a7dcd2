// Range checks of the index arrays that a host passes in, made once per call so that inner loops run free.
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

/// True if every element of `indices` lies in 1..upper. At the first that does not: reports it as subscript
/// #1 of the array `indexed`, sets the solver-side error word `ierrso` to -1 and returns false.
bool subscriptsInside(Vector<const Int> indices, const char* indexed, Int64 upper);

/// Same for the incidences INTA (NE × 3), whose values are node numbers 1..nkno: rows of KNG.
bool incidencesInside(Table<const Int> INTA, Int nkno);

/// True if COLS and ROWI describe a lower triangle by columns: COLS(1) = 1, COLS(j) < COLS(j+1) ≤ capacity +
/// 1 (the diagonal is always stored), every row index of column j in j..neq. Reports and fails as above, a
/// column's last entry as a subscript of ROWI (lower bound: its first), a row index as a subscript of TEMP
/// (lower bound: j). neq: equations, ≥ 0; COLS: neq + 1 pointers; ROWI: `capacity` row indices, in its
/// length.
bool patternInside(Vector<const Int> COLS, Vector<const Int> ROWI, Int neq);

}  // namespace tornwalzen
