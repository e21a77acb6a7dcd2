// What the user wants of the reading of a part.
#pragma once

#include <string>
#include <vector>

namespace host {

struct ReadOptions {
  std::vector<std::string> parts;  // numbers or names of the parts to take; empty: all
  std::string unit = "mm";         // of the part's coordinates: mm, cm, m, inch; CAD files are turned into it
  std::string skin = "auto";       // of a thin solid: outer, inner or auto
  double fibre = 0.5;              // of a thin solid: neutral fibre from the inside of a bend, in thicknesses
  double meshSize = 0.0;       // largest edge of a mesh on a CAD file, in the part's unit; 0: from the area
  double weld = 0.0;           // border nodes closer than this become one, in the part's unit; 0: none
  double remesh = 0.0;         // mesh anew with edges of this length, in the part's unit; 0: no
  double importLimit = 300.0;  // seconds that the helper program may take
  bool threads = false;        // read in more than one; the mesh is the same
};

}  // namespace host
