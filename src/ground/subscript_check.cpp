// Range checks of host indices.
#include "ground/subscript_check.hpp"

#include "ground/subscript_message.hpp"

namespace tornwalzen {

namespace {

bool violation(Analysis& run, const char* indexed, Int64 value, Int64 upper, Int64 lower) {
  reportSubscript(indexed, 1, value, upper, lower);
  char line[subscriptLineLength];
  composeSubscript(line, indexed, 1, value, upper, lower);
  noteFatalText(run.record, line);
  run.ierrso = errorSet;
  return false;
}

}  // namespace

bool subscriptsInside(Analysis& run, Vector<const Int> indices, const char* indexed, Int64 upper) {
  for (Int64 i = 1; i <= indices.length(); ++i)
    if (indices(i) < 1 || indices(i) > upper) return violation(run, indexed, indices(i), upper, 1);
  return true;
}

bool incidencesInside(Analysis& run, Table<const Int> INTA, Int nkno) {
  return subscriptsInside(run, {INTA.name(), INTA.data(), 3 * INTA.rows()}, "KNG", nkno);
}

bool patternInside(Analysis& run, Vector<const Int> COLS, Vector<const Int> ROWI, Int neq) {
  const Int64 capacity = ROWI.length();
  if (COLS(1) != 1) return violation(run, ROWI.name(), COLS(1), 1, 1);
  for (Int64 j = 1; j <= neq; ++j) {
    const Int64 first = COLS(j), last = Int64{COLS(j + 1)} - 1;
    if (last < first || last > capacity) return violation(run, ROWI.name(), last, capacity, first);
    for (Int64 k = first; k <= last; ++k)
      if (ROWI(k) < j || ROWI(k) > neq) return violation(run, "TEMP", ROWI(k), neq, j);
  }
  return true;
}

}  // namespace tornwalzen
