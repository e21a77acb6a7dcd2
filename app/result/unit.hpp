// The unit of the user's lengths. The library's tolerances are lengths in millimetres, so every run is made
// in millimetres, and the results (results.hpp) go back to the user's unit.
#ifndef TORNWALZEN_APP_UNIT_HPP
#define TORNWALZEN_APP_UNIT_HPP

#include <string>

#include "mesh/mesh_check.hpp"

namespace host {

struct Unit {
  std::string name = "mm";
  double millimetres = 1.0;
};

// name: mm, cm, m or inch; anything else throws Failure.
Unit unitOf(const std::string& name);

// The part with its lengths in millimetres.
Part inMillimetres(const Part& part, const Unit& unit);

// A sentence for the user where the part is smaller than 5 mm or larger than 20 m in that unit, else empty.
std::string sizeWarning(const Part& part, const Unit& unit);

}  // namespace host

#endif
