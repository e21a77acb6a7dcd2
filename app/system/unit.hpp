// Units of length. The library's tolerances are lengths in millimetres, so every run is made in millimetres, and the
// results go back to the user's unit.
#pragma once

#include <string>

namespace host {

struct Unit {
  std::string name = "mm";
  double millimetres = 1.0;
};

// name: mm, cm, m or inch; anything else throws Failure.
Unit unitOf(const std::string& name);

}  // namespace host
