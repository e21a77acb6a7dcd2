// Blank development: the part is dropped onto the x-y plane and spread until no triangle is inverted or shrunk
// below a twentieth of its area, by a steepest descent on a penalty of the area ratios.
#pragma once

#include "ground/analysis.hpp"
#include "ground/driver_arrays.hpp"

namespace tornwalzen {

/// Fills the starting blank.
///
/// a.INTA: inout, columns 2 and 3 exchanged for all elements if the projection is clockwise as a whole.
/// a.ARFA: in, 1 = free, anything else is held at its projection. a.KNG: in, the part (mm).
/// a.RX, a.KNA (columns 1, 2): out, the starting blank (mm). a.RR, a.RB: scratch, force and direction.
/// a.ELG: out, columns 3 (smallest corner angle of the part's triangle, degrees), 4 (penalty, dimensionless) and
/// 5 (area of the part's triangle, mm²).
/// Run state: atot, qmax, maxgrad.
///
/// No convergence in 5000 iterations: `ierrel` = -1 and a line to the progress channel; the blank reached is
/// written all the same.
void unfoldBlank(Analysis& run, const DriverArrays& a);

}  // namespace tornwalzen
