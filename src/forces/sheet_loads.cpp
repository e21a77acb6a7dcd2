// From forces on triangles to loads on nodes.
#include "forces/sheet_loads.hpp"

#include <cmath>
#include <initializer_list>

namespace tornwalzen {

void addToolLoads(const SheetView& sheet, Table<const double> FORCE, double scale, Vector<double> LOAD) {
  for (Int e = 1; e <= sheet.INTA.rows(); ++e) {
    const double J11 = sheet.MAPS(1, e), J12 = sheet.MAPS(2, e), J21 = sheet.MAPS(3, e),
                 J22 = sheet.MAPS(4, e);
    const double determinant = J11 * J22 - J12 * J21;
    if (!(determinant > 0.0)) continue;  // turned over: no forward map
    const double f1 = FORCE(1, e), f2 = FORCE(2, e), factor = -1.0 / (3.0 * scale * determinant);
    const double u = factor * (J22 * f1 - J21 * f2), v = factor * (J11 * f2 - J12 * f1);  // Fᵀ = J⁻ᵀ
    for (Int c = 1; c <= 3; ++c) {
      const Int n = sheet.INTA(e, c);
      LOAD(2 * n - 1) += u;
      LOAD(2 * n) += v;
    }
  }
}

void nodeWeights(const SheetView& sheet, Vector<double> WEIGHT) {
  for (Int64 n = 1; n <= WEIGHT.length(); ++n) WEIGHT(n) = 0.0;
  for (Int e = 1; e <= sheet.INTA.rows(); ++e)
    for (Int c = 1; c <= 3; ++c) WEIGHT(sheet.INTA(e, c)) += sheet.AREA(e) / 3.0;
}

namespace {

struct Place {
  double u = 0.0, v = 0.0;
};

Place seen(Table<const double> KNG, Int n, const double (&VIEW)[2][3]) {
  Place p;
  for (Int i = 0; i < 3; ++i) p.u += VIEW[0][i] * KNG(n, i + 1), p.v += VIEW[1][i] * KNG(n, i + 1);
  return p;
}

/// The rigid move that lays the blank on the part: about `blank`, to `part`.
struct Lie {
  Place blank, part;
  double cosine = 1.0, sine = 0.0;

  Place of(const Place& x) const {
    const double du = x.u - blank.u, dv = x.v - blank.v;
    return {part.u + cosine * du - sine * dv, part.v + sine * du + cosine * dv};
  }
};

Lie lieOf(Table<const double> KNG, const double (&VIEW)[2][3], const FreeMoves& moves,
          Vector<const double> WEIGHT, Vector<const double> RX) {
  Lie lie;
  double total = 0.0;
  for (Int n = 1; n <= WEIGHT.length(); ++n) {
    const Place p = seen(KNG, n, VIEW);
    total += WEIGHT(n);
    lie.blank.u += WEIGHT(n) * RX(2 * n - 1), lie.blank.v += WEIGHT(n) * RX(2 * n);
    lie.part.u += WEIGHT(n) * p.u, lie.part.v += WEIGHT(n) * p.v;
  }
  for (double* sum : {&lie.blank.u, &lie.blank.v, &lie.part.u, &lie.part.v}) *sum /= total;
  if (!moves.u) lie.part.u = lie.blank.u;
  if (!moves.v) lie.part.v = lie.blank.v;
  if (!moves.turn) return lie;
  double along = 0.0, across = 0.0;
  for (Int n = 1; n <= WEIGHT.length(); ++n) {
    const Place p = seen(KNG, n, VIEW);
    const double du = RX(2 * n - 1) - lie.blank.u, dv = RX(2 * n) - lie.blank.v;
    along += WEIGHT(n) * (du * (p.u - lie.part.u) + dv * (p.v - lie.part.v));
    across += WEIGHT(n) * (du * (p.v - lie.part.v) - dv * (p.u - lie.part.u));
  }
  const double size = std::hypot(along, across);
  if (size > 0.0) lie.cosine = along / size, lie.sine = across / size;
  return lie;
}

}  // namespace

void slipOfSheet(const SheetView& sheet, Table<const double> KNG, const double (&VIEW)[2][3],
                 const FreeMoves& moves, Vector<const double> WEIGHT, Vector<const double> RX,
                 Table<double> SLIP) {
  const Lie lie = lieOf(KNG, VIEW, moves, WEIGHT, RX);
  for (Int e = 1; e <= sheet.INTA.rows(); ++e) {
    Place move;
    for (Int c = 1; c <= 3; ++c) {
      const Int n = sheet.INTA(e, c);
      const Place p = seen(KNG, n, VIEW), x = lie.of({RX(2 * n - 1), RX(2 * n)});
      move.u += (p.u - x.u) / 3.0, move.v += (p.v - x.v) / 3.0;
    }
    for (Int k = 0; k < 2; ++k) {
      double along = 0.0;
      for (Int i = 0; i < 3; ++i)
        along += sheet.AXES(3 * k + i + 1, e) * (move.u * VIEW[0][i] + move.v * VIEW[1][i]);
      SLIP(k + 1, e) = along;
    }
  }
}

void balanceLoads(const FreeMoves& moves, Vector<const double> WEIGHT, Vector<const double> RX,
                  Vector<double> LOAD) {
  double total = 0.0, u = 0.0, v = 0.0, sumU = 0.0, sumV = 0.0;
  for (Int n = 1; n <= WEIGHT.length(); ++n) {
    total += WEIGHT(n);
    u += WEIGHT(n) * RX(2 * n - 1), v += WEIGHT(n) * RX(2 * n);
    sumU += LOAD(2 * n - 1), sumV += LOAD(2 * n);
  }
  u /= total, v /= total;
  const double shareU = moves.u ? sumU / total : 0.0, shareV = moves.v ? sumV / total : 0.0;
  double moment = 0.0, inertia = 0.0;
  for (Int n = 1; n <= WEIGHT.length(); ++n) {
    LOAD(2 * n - 1) -= shareU * WEIGHT(n), LOAD(2 * n) -= shareV * WEIGHT(n);
    const double du = RX(2 * n - 1) - u, dv = RX(2 * n) - v;
    moment += du * LOAD(2 * n) - dv * LOAD(2 * n - 1);
    inertia += WEIGHT(n) * (du * du + dv * dv);
  }
  if (!moves.turn || !(inertia > 0.0)) return;
  for (Int n = 1; n <= WEIGHT.length(); ++n) {
    const double share = moment / inertia * WEIGHT(n);
    LOAD(2 * n - 1) += share * (RX(2 * n) - v);
    LOAD(2 * n) -= share * (RX(2 * n - 1) - u);
  }
}

}  // namespace tornwalzen
