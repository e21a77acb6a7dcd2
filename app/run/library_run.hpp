// Runs of the library on one part: the analysis behind a handle, its structure kept from run to run.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "mesh/mesh_check.hpp"
#include "result/run_data.hpp"
#include "run/analysis_handle.hpp"
#include "run/progress_record.hpp"

namespace host {

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
