// One run of the library: owns the arrays of the call protocol and drives the entry points.
#ifndef TORNWALZEN_APP_LIBRARY_RUN_HPP
#define TORNWALZEN_APP_LIBRARY_RUN_HPP

#include <cstdint>
#include <functional>
#include <vector>

#include "run/hold.hpp"
#include "mesh/mesh_check.hpp"
#include "run/progress_record.hpp"
#include "run/run_settings.hpp"
#include "tornwalzen_ext.h"

namespace host {

// Seconds of wall time.
struct PhaseTimes {
  double structure = 0.0;    // pattern of the global matrix
  double ordering = 0.0;     // fill-reducing order of the equations
  double symbolic = 0.0;     // layout of the factor
  double development = 0.0;  // starting blank
  double increments = 0.0;   // Newton iterations of all increments
};

struct RunOutput {
  std::vector<std::int32_t> corners;  // three node numbers per element, counter-clockwise in the blank
  std::vector<double> RX;             // mm: u, v of node 1, of node 2, ...
  std::vector<double> startingBlank;  // mm: u, v per node as RX, of the developed part
  std::vector<double> EVAL;  // five values per element as in tornwalzen.h; NaN if no increment converged
  std::vector<TornwalzenElementStrain> strains;  // per element, between part and blank
  TornwalzenReport report{};
  std::int32_t ISTAT = 0;
  std::int64_t matrixEntries = 0;  // stored entries of the global matrix
  ProgressRecord progress;
  PhaseTimes times;
};

// part, hold: checked, lengths in mm. Begins with the library as after loading. onProgress: called on this
// thread after each progress record. Throws Failure (exitRunFailed) if the set-up fails, in words; a failure
// of the analysis is left in ISTAT and the report.
RunOutput runLibrary(const Part& part, const Hold& hold, const RunSettings& settings,
                     const std::function<void(const ProgressRecord&)>& onProgress);

}  // namespace host

#endif
