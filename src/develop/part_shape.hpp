// What the development measures on the formed part itself: corner angles, areas, orientation.
#pragma once

#include "ground/analysis.hpp"
#include "ground/driver_arrays.hpp"

namespace tornwalzen {

/// Smallest corner angle of every triangle. a.INTA, a.KNG: in. a.ELG: out, column 3 (degrees).
/// sharp: out, number of triangles whose smallest angle is below 10 degrees.
/// An edge of no length, or a cosine that rounding has pushed past 1, gives an angle that is not a number.
void measureAngles(Analysis& run, const DriverArrays& a, Int& sharp);

/// Area of every triangle. a.INTA, a.KNG: in. a.ELG: out, column 5 (mm²). Run state: atot, their sum.
void measureAreas(Analysis& run, const DriverArrays& a);

/// Exchanges columns 2 and 3 of a.INTA for all elements if the signed areas of the projection a.RX sum to
/// less than zero. a.ELG: in, column 5.
void orientCounterClockwise(Analysis& run, const DriverArrays& a);

}  // namespace tornwalzen
