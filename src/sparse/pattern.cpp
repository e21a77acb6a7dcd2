// The pattern of the global matrix. Node level first: for every node the larger nodes it shares a triangle with,
// sorted; then two equations per node. With column n of the node level listing n = r1 < r2 < ... < rk,
//   column 2n-1 holds 2n-1, 2n and the pair 2r-1, 2r of every further node r:  2k entries,
//   column 2n   holds 2n and the same pairs:                                   2k - 1 entries,
// so that the matrix has 4·(node-level entries) - nkno entries.
//
// Counting sort by the smaller node, then a sort of each short list: linear in the mesh for bounded valence. One
// scratch block of nkno + 1 + 3·nele integers.
#include "sparse/pattern.hpp"

#include <algorithm>
#include <limits>
#include <memory>
#include <new>

#include "ground/messages.hpp"
#include "ground/subscript_check.hpp"

namespace tornwalzen {

namespace {

constexpr Int64 largestInt = std::numeric_limits<Int>::max();
constexpr char tooManyEntries[] = " FATALER FEHLER : zu viele Matrixeintraege @";

// Rows that a column may still receive: nothing is written past the host's capacity.
class BoundedRows {
 public:
  explicit BoundedRows(Vector<Int> ROWI) : ROWI_(ROWI) {}
  void put(Int64 position, Int row) {
    if (position <= ROWI_.length()) ROWI_(position) = row;
  }

 private:
  Vector<Int> ROWI_;
};

// Sorts the larger neighbours of every node into START and LARGER: those of node p end up at LARGER(START(p)) ..
// LARGER(START(p) + count - 1), increasing and without duplicates. `visit(p, first, count)` takes them in turn.
template <class Visit>
void forEachNodeColumn(Table<const Int> INTA, Vector<Int> START, Vector<Int> LARGER, Visit visit) {
  const Int64 nodes = START.length() - 1, elements = INTA.rows();
  constexpr int corner[3][2] = {{1, 2}, {2, 3}, {3, 1}};
  for (Int64 p = 1; p <= nodes + 1; ++p) START(p) = 0;
  for (Int64 e = 1; e <= elements; ++e)
    for (const auto& side : corner) {
      const Int a = INTA(e, side[0]), b = INTA(e, side[1]);
      if (a != b) ++START(std::min(a, b));
    }
  Int end = 1;  // START(p): one past the list of p, until the lists are filled from their ends
  for (Int64 p = 1; p <= nodes; ++p) START(p) = end += START(p);
  START(nodes + 1) = end;
  for (Int64 e = 1; e <= elements; ++e)
    for (const auto& side : corner) {
      const Int a = INTA(e, side[0]), b = INTA(e, side[1]);
      if (a != b) LARGER(--START(std::min(a, b))) = std::max(a, b);
    }
  for (Int64 p = 1; p <= nodes; ++p) {
    Int* const first = LARGER.data() + (START(p) - 1);
    Int* const last = LARGER.data() + (START(p + 1) - 1);
    std::sort(first, last);
    visit(p, first, static_cast<Int>(std::unique(first, last) - first));
  }
}

}  // namespace

bool meshCountsUsable(Analysis& run, Int nkno, Int nele, Int neq, Int mnsysm) {
  if (nkno < 0 || nele < 0 || mnsysm < 0) {
    failSolver(run, " FATALER FEHLER : nkno, nele oder mnsysm negativ @");
    return false;
  }
  if (Int64{neq} != 2 * Int64{nkno}) {  // even, so that the neq + 1 entries of COLS fit as well
    failSolver(run, " FATALER FEHLER : neq ist nicht 2*nkno @");
    return false;
  }
  if (3 * Int64{nele} > largestInt) {
    failSolver(run, " FATALER FEHLER : nele zu gross @");
    return false;
  }
  if (3 * Int64{nkno} > largestInt) {  // a node alone brings three entries
    failSolver(run, tooManyEntries);
    return false;
  }
  return true;
}

void buildPattern(Analysis& run, Table<const Int> INTA, Vector<Int> COLS, Vector<Int> ROWI) {
  printMessage(run, MessageLine().text("beginn loeini @"));
  if (!incidencesInside(run, INTA, run.nkno)) return;

  const Int64 nodes = run.nkno, scratchLength = nodes + 1 + 3 * Int64{run.nele};
  const std::unique_ptr<Int[]> scratch(new (std::nothrow) Int[static_cast<std::size_t>(scratchLength)]);
  if (!scratch) return failSolver(run, " FATALER FEHLER : kein Speicher fuer die Matrixstruktur @");
  const Vector<Int> START("START", scratch.get(), nodes + 1);
  const Vector<Int> LARGER("LARGER", scratch.get() + nodes + 1, 3 * Int64{run.nele});

  BoundedRows rows(ROWI);
  Int64 next = 1;  // 64 bits: the count is known to fit only when it is complete
  COLS(1) = 1;
  forEachNodeColumn(INTA, START, LARGER, [&](Int64 n, const Int* larger, Int count) {
    const Int equation = static_cast<Int>(2 * n);
    for (const Int first : {equation - 1, equation}) {
      rows.put(next++, first);
      if (first != equation) rows.put(next++, equation);
      for (Int k = 0; k < count; ++k) {
        rows.put(next++, 2 * larger[k] - 1);
        rows.put(next++, 2 * larger[k]);
      }
      if (next <= largestInt) COLS(first + 1) = static_cast<Int>(next);
    }
  });

  const Int64 entries = next - 1;
  if (next > largestInt) return failSolver(run, tooManyEntries);
  run.solver.neq = run.neq;
  run.solver.nsysm = static_cast<Int>(entries);
  if (run.solver.mnsysm < run.solver.nsysm) failSolver(run, " FATALER FEHLER : mnsysm zu klein @");
}

}  // namespace tornwalzen
