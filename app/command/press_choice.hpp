// The press model from the texts of the options.
#ifndef TORNWALZEN_APP_PRESS_CHOICE_HPP
#define TORNWALZEN_APP_PRESS_CHOICE_HPP

#include "command/arguments.hpp"
#include "mesh/mesh_check.hpp"
#include "result/run_data.hpp"

namespace host {

// inMpa: whether the user gave a curve or law. Throws Failure, naming the option, for a number that is none, and for an
// option of the press model without it.
PressSettings pressSettings(const PressOptionTexts& texts, bool inMpa);

// Marks and beads that lie on the mesh, from the files that the options name: one number per line, # begins a comment.
// Throws Failure with file and line.
void readPressMarks(const PressOptionTexts& texts, const Part& part, PressSettings& press);

}  // namespace host

#endif
