// Pairs of rows and columns to one.
#include "sparse/node_structure.hpp"

#include "sparse/phase_error.hpp"
#include "sparse/symbolic.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

namespace {

Int nodeOf(Int equation) {
  return (equation + 1) / 2;
}

/// Are the entries 2i-1 and 2i of both lists the two equations of one node, for all i?
bool standsInPairs(const FactorStructure& p) {
  const auto paired = [](const Vector<Int>& list) {
    if (list.length() % 2 != 0) return false;
    for (Int64 i = 2; i <= list.length(); i += 2)
      if (nodeOf(list(i - 1)) != nodeOf(list(i))) return false;
    return true;
  };
  const auto startsOdd = [](const Vector<Int>& starts) {
    for (Int64 k = 1; k <= starts.length(); ++k)
      if (starts(k) % 2 == 0) return false;
    return true;
  };
  return paired(p.PERM) && paired(p.LINDX) && startsOdd(p.XSUP) && startsOdd(p.XLINDX);
}

}  // namespace

Int64 halvedLength(Vector<Int> PAIRS) {
  const Int64 NEQ = PAIRS(header::equations) / 2, m = PAIRS(header::supernodes),
              s = PAIRS(header::subscripts) / 2;
  return partialLength(NEQ, m, s) + 2 * m;
}

void halveStructure(Vector<Int> PAIRS, Vector<Int> WORK, Int& f1, Int& f2, Int& g, Int& IERR) {
  const FactorStructure p = factorStructure(PAIRS);
  IERR = ierr::inconsistent;
  if (!standsInPairs(p)) return;
  const Int m = PAIRS(header::supernodes), NEQ = PAIRS(header::equations) / 2;
  for (Int i = 1; i <= header::length; ++i) WORK(i) = 0;
  WORK(header::equations) = NEQ;
  WORK(header::supernodes) = m;
  WORK(header::subscripts) = PAIRS(header::subscripts) / 2;
  const FactorStructure f = factorStructure(WORK);
  for (Int j = 1; j <= NEQ; ++j) {
    f.PERM(j) = nodeOf(p.PERM(2 * j));
    f.INVP(f.PERM(j)) = j;
    f.SUPMAP(j) = p.SUPMAP(2 * j);
  }
  Int64 entries = 0;
  for (Int k = 1; k <= m + 1; ++k) {
    f.XSUP(k) = nodeOf(p.XSUP(k));
    f.XLINDX(k) = nodeOf(p.XLINDX(k));
    if (k == 1) continue;
    f.PARENT(k - 1) = p.PARENT(k - 1);
    entries += trapezoidEntries(f.XSUP(k) - f.XSUP(k - 1), f.XLINDX(k) - f.XLINDX(k - 1));
  }
  for (Int64 i = 1; i <= f.LINDX.length(); ++i) f.LINDX(i) = nodeOf(p.LINDX(2 * i));
  WORK(header::factorEntries) = WORK(header::leanEntries) = static_cast<Int>(entries);
  WORK(header::realRequirement) = static_cast<Int>(entries - NEQ);
  layOutFactor(WORK, f1, f2, g, IERR);
}

}  // namespace tornwalzen
