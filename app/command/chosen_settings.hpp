// The run's settings that the user chose on the command line.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "command/arguments.hpp"
#include "result/material.hpp"
#include "result/run_data.hpp"

namespace host {

// Reads the texts of the options, the curve's file included. Throws Failure, which names option and cause.
// material: that of chosenMaterial; its flow curve and mean anisotropy, (r0 + 2 r45 + r90)/4, are taken where they are
// known themselves and the user gives none of his own. A bound is never taken for a value. measured: as in
// press_choice.hpp; without a value the press model's settings are for refusals alone, and takeThickness comes later.
RunSettings settingsOf(const SolveOptions& options, const Material& material = {},
                       std::optional<double> measured = 0.0);

// The press model's settings once the part is read; no file is read a second time. settings: in and out, of settingsOf.
// Throws Failure as settingsOf does.
void takeThickness(const SolveOptions& options, const Material& material, std::optional<double> measured,
                   RunSettings& settings);

// The material that is named, without a name where --material is 0, 1, 2 or 10. Throws Failure: not known, the user's
// library refused.
Material chosenMaterial(const SolveOptions& options);

// What stands in for values of the material that are not known: sentences for the user, without full stop.
std::vector<std::string> materialRemarks(const SolveOptions& options, const Material& material);

}  // namespace host
