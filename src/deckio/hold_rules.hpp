// Which unknowns a deck's negative selectors hold.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// Clears the flags of the unknowns that the rule of `selector` holds; unknown 2n-1 is x of node n, 2n its y.
///   -1  x held where x <= -357.9, y where y < 101
///   -2  x held where x <= -357.9, y where y < 101.16, or y < 105.4 and x < -684
///   -3  x held where x < 0.1,     y where y < 0.1
/// Every other selector holds nothing. The limits (mm) are fixed numbers of the format; those with decimals
/// are held in single precision, so the neighbouring doubles decide differently than the decimals would. KNG:
/// in, maxkno × 3, mm; nkno: in, nodes in use; ARFA: inout, at least 2·nkno flags.
void holdByRule(Int selector, Table<const double> KNG, Int nkno, Vector<Int> ARFA);

}  // namespace tornwalzen
