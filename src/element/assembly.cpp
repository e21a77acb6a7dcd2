// Global residual and tangent: a sum over the triangles in order, each entry at its place in the pattern.
#include "element/assembly.hpp"

#include <cmath>
#include <utility>

#include "element/element.hpp"
#include "interface/run_state.hpp"

namespace tornwalzen {

namespace {

/// Adds the lower triangle of one element tangent to SYSM, each entry at its place. The two columns of a node
/// begin with the node's own rows and go on with the same pairs of rows, one pair for each larger neighbour:
/// the number of smaller pairs is a neighbour's place in both. It is counted over the whole column, since a
/// search would end where the processor cannot foresee it.
class TangentPlaces {
 public:
  TangentPlaces(Vector<const Int> COLS, Vector<const Int> ROWI, Vector<double> SYSM)
      : COLS_(COLS), ROWI_(ROWI), SYSM_(SYSM) {}

  /// corner: nodes of the element. AMAT: element tangent, 6 × 6 column-major.
  void add(const Int (&corner)[3], const double (&AMAT)[36]) const {
    int a = 0, b = 1, c = 2;  // the corners by rising node number
    if (corner[b] < corner[a]) std::swap(a, b);
    if (corner[c] < corner[b]) std::swap(b, c);
    if (corner[b] < corner[a]) std::swap(a, b);
    const Columns A(COLS_, corner[a]), B(COLS_, corner[b]), C(COLS_, corner[c]);
    Int beforeB = 0, beforeC = 0, beforeCinB = 0;
    for (Int p = A.first + 2; p < A.second; p += 2) {
      beforeB += ROWI_(p) < 2 * corner[b] - 1;
      beforeC += ROWI_(p) < 2 * corner[c] - 1;
    }
    for (Int p = B.first + 2; p < B.second; p += 2) beforeCinB += ROWI_(p) < 2 * corner[c] - 1;
    addOwn(A, AMAT + 14 * a);
    addPair(A, beforeB, corner[b], AMAT + 12 * a + 2 * b);
    addPair(A, beforeC, corner[c], AMAT + 12 * a + 2 * c);
    addOwn(B, AMAT + 14 * b);
    addPair(B, beforeCinB, corner[c], AMAT + 12 * b + 2 * c);
    addOwn(C, AMAT + 14 * c);
  }

 private:
  struct Columns {  // of one node: their first entries, and one past the last
    Int first, second, end;
    Columns(Vector<const Int> COLS, Int n)
        : first(COLS(2 * n - 1)), second(COLS(2 * n)), end(COLS(2 * n + 1)) {}
  };

  /// K: the block's entry (1, 1) in AMAT.
  void addOwn(const Columns& column, const double* K) const {
    SYSM_(column.first) += K[0];
    SYSM_(column.first + 1) += K[1];
    SYSM_(column.second) += K[7];
  }
  /// A pair without a place in the pattern is left out.
  void addPair(const Columns& column, Int before, Int n, const double* K) const {
    const Int p = column.first + 2 + 2 * before, q = column.second + 1 + 2 * before;
    if (p + 1 >= column.second || q + 1 >= column.end || ROWI_(p) != 2 * n - 1) return;
    SYSM_(p) += K[0];
    SYSM_(p + 1) += K[1];
    SYSM_(q) += K[6];
    SYSM_(q + 1) += K[7];
  }

  Vector<const Int> COLS_, ROWI_;
  Vector<double> SYSM_;
};

/// Largest |RR(i)| of the free unknowns. A NaN stays: a residual that is no number must not pass for a small
/// one.
double residualNorm(Vector<const Int> ARFA, Vector<const double> RR) {
  double largest = 0.0;
  for (Int i = 1; i <= run.neq; ++i) {
    if (ARFA(i) != 1) continue;
    const double size = std::fabs(RR(i));
    if (size > largest || std::isnan(size)) largest = size;
  }
  return largest;
}

}  // namespace

void assemble(Int mode, const DriverArrays& a, Table<const double> FC) {
  const bool withMatrix = mode == residualAndMatrix;
  for (Int i = 1; i <= run.neq; ++i) a.RR(i) = 0.0;
  if (withMatrix) {
    for (Int p = 1; p <= run.nsysm; ++p) a.SYSM(p) = 0.0;
    for (Int i = 1; i <= run.neq; ++i) a.TEMP(i) = 0.0;
  }

  const FlowCurve CURVE(FC);
  const TangentPlaces places(a.COLS, a.ROWI, a.SYSM);
  for (Int e = 1; e <= run.nele; ++e) {
    double potential, GRADIENT[6], AMAT[36];
    elementRoutine(e, mode, a.INTA, a.RX, a.KNZ, CURVE, potential, GRADIENT, AMAT);
    if (failed(run.ierrel)) return;
    const Int corner[3] = {a.INTA(e, 1), a.INTA(e, 2), a.INTA(e, 3)};
    for (int c = 0; c < 3; ++c) {
      a.RR(2 * corner[c] - 1) -= GRADIENT[2 * c];
      a.RR(2 * corner[c]) -= GRADIENT[2 * c + 1];
    }
    if (withMatrix) places.add(corner, AMAT);
  }
  run.maxgrad = residualNorm(a.ARFA, a.RR);
}

}  // namespace tornwalzen
