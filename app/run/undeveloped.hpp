// Why a part was not developed onto the plane: where the starting blank is worst, and what the user can do.
#pragma once

#include <string>

#include "mesh/mesh_check.hpp"
#include "result/run_data.hpp"

namespace host {

// A sentence without full stop. part: in the user's unit, with lengths of `millimetres` mm each. run: of a run that
// ended as TORNWALZEN_NOT_DEVELOPED; its starting blank (mm) is what the development left. A triangle is open
// where its area in the plane is more than (1 - sqrt(0.8))/2 = 5.3 % of that on the part, the limit of the
// development.
std::string whyNotDeveloped(const Part& part, const Hold& hold, const RunOutput& run, double millimetres);

}  // namespace host
