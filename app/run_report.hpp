// All that a run leaves for its result files and the screen.
#ifndef TORNWALZEN_APP_RUN_REPORT_HPP
#define TORNWALZEN_APP_RUN_REPORT_HPP

#include <string>

#include "hold.hpp"
#include "library_run.hpp"
#include "mesh_check.hpp"
#include "results.hpp"
#include "run_settings.hpp"
#include "unit.hpp"
#include "verdict.hpp"

namespace host {

struct RunReport {
  const Part& part;
  const Hold& hold;
  const RunOutput& run;
  const Results& results;
  const Verdict& verdict;
  const RunSettings& settings;  // of the last run
  int runs;                     // runs made until one converged, or to the last
  const Unit& unit;             // of part, blank and results
  std::string holdRule;         // as the user gave it
  std::string folder;           // of the result files
};

}  // namespace host

#endif
