// Forces across lines of nodes.
#include "forces/draw_beads.hpp"

#include <cmath>

#include "forces/free_edges.hpp"

namespace tornwalzen {

namespace {
constexpr double slipScale = 0.2;  // mm

/// `size` (N) across the edge with the direction (t1, t2, t3) in space, against the slip of triangle e.
void holdAcross(const SheetView& sheet, Int e, const double (&edge)[3], double size, Table<double> FORCE) {
  double t[2] = {0.0, 0.0};
  for (Int k = 0; k < 2; ++k)
    for (Int i = 0; i < 3; ++i) t[k] += sheet.AXES(3 * k + i + 1, e) * edge[i];
  const double length = std::hypot(t[0], t[1]);
  if (!(length > 0.0)) return;
  const double m[2] = {t[1] / length, -t[0] / length};
  const double way = m[0] * sheet.SLIP(1, e) + m[1] * sheet.SLIP(2, e);
  const double pull = size * way / std::sqrt(way * way + slipScale * slipScale);
  FORCE(1, e) -= pull * m[0];
  FORCE(2, e) -= pull * m[1];
}

}  // namespace

Int sideBetween(Table<const Int> INTA, Int a, Int b) {
  for (Int e = 1; e <= INTA.rows(); ++e)
    for (Int k = 1; k <= 3; ++k) {
      const Int p = INTA(e, k), q = INTA(e, k % 3 + 1);
      if ((p == a && q == b) || (p == b && q == a)) return 3 * (e - 1) + k;
    }
  return 0;
}

void addBeadForce(const SheetView& sheet, Table<const Int> TWIN, const BeadPiece& piece,
                  Table<const double> KNG, Table<double> FORCE) {
  const Int a = sheet.INTA(piece.e, piece.k), b = sheet.INTA(piece.e, piece.k % 3 + 1);
  const double edge[3] = {KNG(b, 1) - KNG(a, 1), KNG(b, 2) - KNG(a, 2), KNG(b, 3) - KNG(a, 3)};
  const double length = std::hypot(edge[0], edge[1], edge[2]);
  const Int other = acrossSide(TWIN, piece.e, piece.k);
  const double size = piece.force * length * (other == 0 ? 1.0 : 0.5);
  holdAcross(sheet, piece.e, edge, size, FORCE);
  if (other != 0) holdAcross(sheet, other, edge, size, FORCE);
}

}  // namespace tornwalzen
