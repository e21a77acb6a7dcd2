// The command `tornwalzen materials`.
#pragma once

#include <string>

#include "command/arguments.hpp"
#include "command/material_library.hpp"

namespace host {

// Lists the materials, or prints the program's own as a file to begin with. Returns the exit status; throws Failure
// if the user's file is refused.
int materials(const MaterialsOptions& options);

// The list as the screen shows it: every value with its source, bounds as such.
std::string materialsList(const std::vector<LibraryMaterial>& library);

}  // namespace host
