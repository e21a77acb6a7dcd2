// Friction under punch, die and binder (C. A. Coulomb, 1781), against the way that the sheet has slid:
//   f = -μ·p·A·d,   d = s/√(|s|² + s0²),   s0 = 0.2 mm,
// so that sheet that has hardly moved is hardly held (forces in N, pressures in MPa).
//
// Under punch and die the pressure follows from the equilibrium across the sheet, p = |q|, q = N:κ; q > 0 where the
// normal points away from the tool, on the side of the punch if that comes from below. A binder is rigid and presses
// where the sheet is thick: p = k·<t - g> on the flange, the gap g such that the pressure adds up to its force.
#pragma once

#include "forces/sheet_loads.hpp"

namespace tornwalzen {

struct Friction {
  double below, above;  // coefficients where q > 0, where q < 0
};

/// Adds the friction of punch and die to FORCE, 2 × NE (N). PRESSURE: out, NE, q (MPa).
void addContactFriction(const SheetView& sheet, const Friction& mu, Table<double> FORCE,
                        Vector<double> PRESSURE);

struct BinderGrip {
  double gap;      // g (mm)
  double largest;  // pressure (MPa)
  double area;     // that bears (mm²)
};

/// Adds the friction of the binder on both faces to FORCE. FLANGE: in, NE, 1 under the binder. force: in, N, > 0; mu: in,
/// mean of both faces. PRESSURE: out, NE (MPa). Without an element under the binder nothing bears and nothing is added.
BinderGrip addBinderFriction(const SheetView& sheet, Vector<const Int> FLANGE, double force, double mu,
                             Table<double> FORCE, Vector<double> PRESSURE);

}  // namespace tornwalzen
