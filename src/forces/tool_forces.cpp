// Pressures and what they hold.
#include "forces/tool_forces.hpp"

#include <algorithm>
#include <cmath>

namespace tornwalzen {

namespace {

constexpr double slipScale = 0.2;           // mm
constexpr double binderStiffness = 2000.0;  // N/mm³

double thicknessOf(const SheetView& sheet, Int e) {
  return sheet.thickness * (sheet.MAPS(1, e) * sheet.MAPS(4, e) - sheet.MAPS(2, e) * sheet.MAPS(3, e));
}

/// Adds a force of the given size against the slip of triangle e.
void hold(const SheetView& sheet, Int e, double size, Table<double> FORCE) {
  const double s1 = sheet.SLIP(1, e), s2 = sheet.SLIP(2, e);
  const double factor = size / std::sqrt(s1 * s1 + s2 * s2 + slipScale * slipScale);
  FORCE(1, e) -= factor * s1;
  FORCE(2, e) -= factor * s2;
}

}  // namespace

void addContactFriction(const SheetView& sheet, const Friction& mu, Table<double> FORCE,
                        Vector<double> PRESSURE) {
  for (Int e = 1; e <= sheet.INTA.rows(); ++e) {
    const double q = sheet.FORCES(1, e) * sheet.CURVATURE(1, e) + sheet.FORCES(2, e) * sheet.CURVATURE(2, e) +
                     2.0 * sheet.FORCES(3, e) * sheet.CURVATURE(3, e);
    PRESSURE(e) = q;
    hold(sheet, e, (q > 0.0 ? mu.below : mu.above) * std::fabs(q) * sheet.AREA(e), FORCE);
  }
}

BinderGrip addBinderFriction(const SheetView& sheet, Vector<const Int> FLANGE, double force, double mu,
                             Table<double> FORCE, Vector<double> PRESSURE) {
  // Σ A·<t - g> = force/k is convex and falls in g: Newton's method from below ends in a finite number of steps
  double gap = -INFINITY, area = 0.0;
  for (Int64 pass = 0; pass <= FLANGE.length(); ++pass) {
    double sum = 0.0, moment = 0.0;
    for (Int e = 1; e <= FLANGE.length(); ++e) {
      if (FLANGE(e) == 0 || !(thicknessOf(sheet, e) > gap)) continue;
      sum += sheet.AREA(e);
      moment += sheet.AREA(e) * thicknessOf(sheet, e);
    }
    if (!(sum > 0.0)) break;
    const double next = (moment - force / binderStiffness) / sum;
    const bool settled = !(next > gap);
    area = sum;
    if (settled) break;
    gap = next;
  }
  BinderGrip grip{gap, 0.0, area};
  for (Int e = 1; e <= FLANGE.length(); ++e) {
    PRESSURE(e) = FLANGE(e) == 0 ? 0.0 : binderStiffness * std::max(0.0, thicknessOf(sheet, e) - gap);
    grip.largest = std::max(grip.largest, PRESSURE(e));
    if (PRESSURE(e) > 0.0) hold(sheet, e, 2.0 * mu * PRESSURE(e) * sheet.AREA(e), FORCE);
  }
  return grip;
}

}  // namespace tornwalzen
