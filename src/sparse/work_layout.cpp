// Carves WORK into the arrays of each phase.
#include "sparse/work_layout.hpp"

#include <algorithm>

namespace tornwalzen {

OrderedStructure orderedStructure(Vector<Int> WORK, Int NEQ, Int NADJ, Int m) {
  WorkCarver carve(WORK);
  OrderedStructure o;
  o.XADJ = carve.take("XADJ", Int64{NEQ} + 1);
  o.ADJNCY = carve.take("ADJNCY", NADJ);
  o.PERM = carve.take("PERM", NEQ);
  o.INVP = carve.take("INVP", NEQ);
  o.SUPMAP = carve.take("SUPMAP", NEQ);
  o.XSUP = carve.take("XSUP", Int64{m} + 1);
  o.PARENT = carve.take("PARENT", m);
  o.COLCNT = carve.take("COLCNT", m);
  o.end = carve.next();
  return o;
}

FactorStructure factorStructure(Vector<Int> WORK) {
  const Int NEQ = WORK(header::equations), m = WORK(header::supernodes), s = WORK(header::subscripts);
  WorkCarver carve(WORK);
  FactorStructure f;
  f.PERM = carve.take("PERM", NEQ);
  f.INVP = carve.take("INVP", NEQ);
  f.SUPMAP = carve.take("SUPMAP", NEQ);
  f.XSUP = carve.take("XSUP", Int64{m} + 1);
  f.PARENT = carve.take("PARENT", m);
  f.XLINDX = carve.take("XLINDX", Int64{m} + 1);
  f.LINDX = carve.take("LINDX", s);
  f.LCLDX = carve.take("LCLDX", s);
  f.ASTART = carve.take("ASTART", Int64{m} + 1);
  f.NCHILD = carve.take("NCHILD", m);
  f.end = carve.next();
  return f;
}

Int64 symbolicLength(Int64 NEQ, Int64 NNZ, Int64 m, Int64 s) {
  const Int64 A = 3 * m + 2 * (NNZ - NEQ) + 39 + 4 * NEQ;
  const Int64 B = A + 10 * m + 2 + 2 * s - 2 * NNZ;
  const Int64 P = partialLength(NEQ, m, s);
  return std::max({A + m + s + 1 + 3 * NEQ, B, P + 2 * m});
}

}  // namespace tornwalzen
