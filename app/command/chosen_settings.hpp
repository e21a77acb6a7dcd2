// The run's settings that the user chose on the command line.
#ifndef TORNWALZEN_APP_CHOSEN_SETTINGS_HPP
#define TORNWALZEN_APP_CHOSEN_SETTINGS_HPP

#include "command/arguments.hpp"
#include "result/run_data.hpp"

namespace host {

// Reads the texts of the options, the curve's file included. Throws Failure, which names option and cause.
RunSettings settingsOf(const SolveOptions& options);

}  // namespace host

#endif
