// Runs of the library on one part: the analysis behind a handle, its structure kept from run to run.
#ifndef TORNWALZEN_APP_LIBRARY_RUN_HPP
#define TORNWALZEN_APP_LIBRARY_RUN_HPP

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "mesh/mesh_check.hpp"
#include "run/analysis_handle.hpp"
#include "run/hold.hpp"
#include "run/progress_record.hpp"
#include "run/run_settings.hpp"
#include "tornwalzen_analysis.h"

namespace host {

struct RunOutput {
  std::vector<std::int32_t> corners;  // three node numbers per element, counter-clockwise in the blank
  std::vector<double> RX;             // mm: u, v of node 1, of node 2, ...
  std::vector<double> startingBlank;  // mm: u, v per node as RX, of the developed part
  std::vector<double> EVAL;  // five values per element as in tornwalzen.h; NaN if no increment converged
  std::vector<TornwalzenElementStrain> strains;  // per element, between part and blank
  TornwalzenReport report{};
  std::int64_t matrixEntries = 0;  // stored entries of the global matrix
  PhaseTimes times;                // of the structure's phases: when it was set up
};

// Who hears of a run, on the thread that makes it. None may throw.
struct RunListener {
  std::function<void(const ProgressRecord&)> progress;  // after each step
  std::function<void(std::string_view)> message;        // each line of the library, without its line end
  std::function<bool()> stop;                           // at each step: whether the run shall end there
};

class LibraryRun {
 public:
  // part, hold: checked, lengths in mm; copied. Throws Failure (exitRunFailed) in the library's words if it does not
  // take them.
  LibraryRun(const Part& part, const Hold& hold);

  // Throws Failure (exitRunFailed) in the library's words if the structure cannot be set up. How the analysis ended
  // is left in the report; ended by the listener it may have no blank, and the vectors are then empty.
  RunOutput run(const RunSettings& settings, const RunListener& listener);

 private:
  RunOutput collect();
  AnalysisHandle handle_;
  ProgressRecord progress_;
  std::string size_;  // of the part, for messages
};

}  // namespace host

#endif
