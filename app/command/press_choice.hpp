// The press model from the texts of the options.
#pragma once

#include <optional>

#include "command/arguments.hpp"
#include "mesh/mesh_check.hpp"
#include "result/run_data.hpp"

namespace host {

// inMpa: whether there is a curve or law in MPa. surePath: whether the run may take the press model. measured: thickness in
// mm that the part's file holds, 0 for none, which stands in for a --thickness that is not given; no value: the part is not
// read yet, and nothing is refused that its thickness may cure. Throws Failure, naming the option, for a number that is
// none, and for an option of the press model without it.
PressSettings pressSettings(const PressOptionTexts& texts, bool inMpa, bool surePath,
                            std::optional<double> measured);

// Marks and beads that lie on the mesh, from the files that the options name: one number per line, # begins a comment.
// Throws Failure with file and line.
void readPressMarks(const PressOptionTexts& texts, const Part& part, PressSettings& press);

}  // namespace host
