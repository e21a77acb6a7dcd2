// Which unknowns of the blank are held: the rigid motion in the plane must be taken out, and symmetry planes
// keep their nodes. Unknown 2n-1 is u (blank x) of node n, 2n is v (blank y).
#pragma once

#include <string>

#include "mesh/mesh_check.hpp"
#include "result/run_data.hpp"

namespace host {

// rule:
//   auto    u and v of the node nearest the part's centroid (seen from +z) and, against rotation, v of the
//           node farthest from it in x or u of the node farthest from it in y, whichever is farther; of several
//           as far, the one level with the middle
//   x0      u of all nodes on the plane x = 0 and v of the one of them nearest the centroid
//   y0      v of all nodes on the plane y = 0 and u of the one of them nearest the centroid
//   x0,y0   u of all nodes on x = 0 and v of all nodes on y = 0
//   deck    what the mesh deck holds
//   else    the name of a file with one equation number per line; blank lines and lines that begin with # are
//           skipped
// A node lies on a plane if it is within 1e-6 of the part's size. Of equal candidates the lowest number is
// taken. Throws Failure: no node on a plane, not a deck, the file's line that is no equation number, a motion
// that stays free.
Hold holdUnknowns(const Part& part, const std::string& rule);

// The file that a rule names; empty: the rule is one of the words above.
std::string holdFile(const std::string& rule);

// The rule that is meant: an empty one is `deck` for a mesh deck and `auto` for all other parts.
std::string holdRule(const Part& part, const std::string& rule);

}  // namespace host
