// Whether a run converged, and if not, why, in words for the user.
#ifndef TORNWALZEN_APP_VERDICT_HPP
#define TORNWALZEN_APP_VERDICT_HPP

#include "mesh/mesh_check.hpp"
#include "result/run_data.hpp"

namespace host {

// From the library's own report of the run.
Verdict judge(const Part& part, const RunOutput& run);

// Whether the run may converge if the intermediate increments are brought closer to equilibrium: its
// increments stalled, and the part is not flat.
bool tighterPathMayHelp(const Part& part, const RunOutput& run);

}  // namespace host

#endif
