// Range checks of the index arrays that a host passes in, made once per call so that inner loops run free.
#pragma once

#include "ground/analysis.hpp"

namespace tornwalzen {

/// True if every element of `indices` lies in 1..upper. At the first that does not: reports it as subscript
/// #1 of the array `indexed`, sets the solver-side error word `ierrso` to -1 and returns false.
bool subscriptsInside(Analysis& run, Vector<const Int> indices, const char* indexed, Int64 upper);

/// Same for the incidences INTA (NE × 3), whose values are node numbers 1..nkno: rows of KNG.
bool incidencesInside(Analysis& run, Table<const Int> INTA, Int nkno);

/// True if COLS and ROWI describe a lower triangle by columns: COLS(1) = 1, COLS(j) < COLS(j+1) ≤ capacity +
/// 1 (the diagonal is always stored), every row index of column j in j..neq. Reports and fails as above, a
/// column's last entry as a subscript of ROWI (lower bound: its first), a row index as a subscript of TEMP
/// (lower bound: j). neq: equations, ≥ 0; COLS: neq + 1 pointers; ROWI: `capacity` row indices, in its
/// length.
bool patternInside(Analysis& run, Vector<const Int> COLS, Vector<const Int> ROWI, Int neq);

}  // namespace tornwalzen
