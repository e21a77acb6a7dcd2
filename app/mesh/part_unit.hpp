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

}  // namespace host
