// Whether a run converged, and if not, why, in words for the user.
#pragma once

#include "mesh/mesh_check.hpp"
#include "result/run_data.hpp"

namespace host {

// From the library's own report of the run. part: in mm, as it was run.
Verdict judge(const Part& part, const RunOutput& run);

// Whether a start from another side may find a better blank: the sure path ran, and its blank is not good, or the part
// has undercut.
bool secondStartMayHelp(const Verdict& verdict, const RunOutput& run);

// Of two converged runs: is `one` nearer to the work itself, or as near and of the lower potential?
bool isNearer(const RunOutput& one, const RunOutput& other);

// What two runs of the sure path from different starts tell of one another. Both in mm; `taken` is the one whose blank
// is kept.
SecondStart compareStarts(const RunOutput& taken, const RunOutput& other, bool secondTaken);

// A blank that another start does not confirm is doubtful.
void noteSecondStart(const SecondStart& second, Verdict& verdict);

// Whether the run may converge if the intermediate increments are brought closer to equilibrium: its
// increments stalled, and the part is not flat.
bool tighterPathMayHelp(const Part& part, const RunOutput& run);

}  // namespace host
