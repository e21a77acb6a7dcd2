// Range checks of host indices.
#include "ground/subscript_check.hpp"

#include "ground/run_record.hpp"
#include "ground/run_state.hpp"

namespace tornwalzen {

namespace {

bool violation(const char* indexed, Int64 value, Int64 upper, Int64 lower) {
  reportSubscript(indexed, 1, value, upper, lower);
  char line[subscriptLineLength];
  composeSubscript(line, indexed, 1, value, upper, lower);
  noteFatalText(line);
  run.ierrso = errorSet;
  return false;
}

}  // namespace

bool subscriptsInside(Vector<const Int> indices, const char* indexed, Int64 upper) {
  for (Int64 i = 1; i <= indices.length(); ++i)
    if (indices(i) < 1 || indices(i) > upper) return violation(indexed, indices(i), upper, 1);
  return true;
}

bool incidencesInside(Table<const Int> INTA, Int nkno) {
  return subscriptsInside({INTA.name(), INTA.data(), 3 * INTA.rows()}, "KNG", nkno);
}

bool patternInside(Vector<const Int> COLS, Vector<const Int> ROWI, Int neq) {
  const Int64 capacity = ROWI.length();
  if (COLS(1) != 1) return violation(ROWI.name(), COLS(1), 1, 1);
  for (Int64 j = 1; j <= neq; ++j) {
    const Int64 first = COLS(j), last = Int64{COLS(j + 1)} - 1;
    if (last < first || last > capacity) return violation(ROWI.name(), last, capacity, first);
    for (Int64 k = first; k <= last; ++k)
      if (ROWI(k) < j || ROWI(k) > neq) return violation("TEMP", ROWI(k), neq, j);
  }
  return true;
}

}  // namespace tornwalzen
