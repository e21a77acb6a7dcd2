// The unit of a part's lengths: to millimetres, and whether it can be meant.
#pragma once

#include <string>

#include "mesh/mesh_check.hpp"
#include "system/unit.hpp"

namespace host {

// The part with its lengths in millimetres, in which every run is made.
Part inMillimetres(const Part& part, const Unit& unit);

// A sentence for the user where the part is smaller than 5 mm or larger than 20 m in that unit, else empty.
std::string sizeWarning(const Part& part, const Unit& unit);

// A guess where the lengths may be meant in another unit, else empty. size: the longest side of the part's box;
// thickness: measured, 0 where it is not; both in that unit. Guessed at from a size beyond 5 mm to 20 m, from a sheet
// thinner than 0.15 mm, and from a part below 60 mm in mm, which in inches would be up to 1.5 m long.
std::string unitGuess(double size, double thickness, const Unit& unit);

}  // namespace host
