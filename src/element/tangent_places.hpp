// Where the entries of an element's tangent stand in the global one.
#pragma once

#include <utility>

#include "ground/array_view.hpp"

namespace tornwalzen {

/// Adds the lower triangle of one element tangent to SYSM, each entry at its place. The two columns of a node
/// begin with the node's own rows and go on with the same pairs of rows, one pair for each larger neighbour:
/// the number of smaller pairs is a neighbour's place in both. It is counted over the whole column, since a
/// search would end where the processor cannot foresee it.
class TangentPlaces {
 public:
  TangentPlaces(Vector<const Int> COLS, Vector<const Int> ROWI, Vector<double> SYSM)
      : COLS_(COLS), ROWI_(ROWI), SYSM_(SYSM) {}

  /// corner: nodes of the element. AMAT: element tangent, 6 × 6 column-major, `stride` doubles from entry to
  /// entry. owns(n): are the columns of node n to be added to? All others stay.
  template <int stride, class Owns>
  void add(const Int (&corner)[3], const double* AMAT, Owns owns) const {
    int a = 0, b = 1, c = 2;  // the corners by rising node number
    if (corner[b] < corner[a]) std::swap(a, b);
    if (corner[c] < corner[b]) std::swap(b, c);
    if (corner[b] < corner[a]) std::swap(a, b);
    if (owns(corner[a])) {
      const Columns A(COLS_, corner[a]);
      Int beforeB = 0, beforeC = 0;
      for (Int p = A.first + 2; p < A.second; p += 2) {
        beforeB += ROWI_(p) < 2 * corner[b] - 1;
        beforeC += ROWI_(p) < 2 * corner[c] - 1;
      }
      addOwn<stride>(A, AMAT + 14 * stride * a);
      addPair<stride>(A, beforeB, corner[b], AMAT + stride * (12 * a + 2 * b));
      addPair<stride>(A, beforeC, corner[c], AMAT + stride * (12 * a + 2 * c));
    }
    if (owns(corner[b])) {
      const Columns B(COLS_, corner[b]);
      Int beforeC = 0;
      for (Int p = B.first + 2; p < B.second; p += 2) beforeC += ROWI_(p) < 2 * corner[c] - 1;
      addOwn<stride>(B, AMAT + 14 * stride * b);
      addPair<stride>(B, beforeC, corner[c], AMAT + stride * (12 * b + 2 * c));
    }
    if (owns(corner[c])) addOwn<stride>(Columns(COLS_, corner[c]), AMAT + 14 * stride * c);
  }

 private:
  struct Columns {  // of one node: their first entries, and one past the last
    Int first, second, end;
    Columns(Vector<const Int> COLS, Int n)
        : first(COLS(2 * n - 1)), second(COLS(2 * n)), end(COLS(2 * n + 1)) {}
  };

  /// K: the block's entry (1, 1) in AMAT.
  template <int stride>
  void addOwn(const Columns& column, const double* K) const {
    SYSM_(column.first) += K[0];
    SYSM_(column.first + 1) += K[stride];
    SYSM_(column.second) += K[7 * stride];
  }
  /// A pair without a place in the pattern is left out.
  template <int stride>
  void addPair(const Columns& column, Int before, Int n, const double* K) const {
    const Int p = column.first + 2 + 2 * before, q = column.second + 1 + 2 * before;
    if (p + 1 >= column.second || q + 1 >= column.end || ROWI_(p) != 2 * n - 1) return;
    SYSM_(p) += K[0];
    SYSM_(p + 1) += K[stride];
    SYSM_(q) += K[6 * stride];
    SYSM_(q + 1) += K[7 * stride];
  }

  Vector<const Int> COLS_, ROWI_;
  Vector<double> SYSM_;
};

}  // namespace tornwalzen
