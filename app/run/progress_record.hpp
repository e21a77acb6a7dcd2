// What the library told of a run's progress, and what follows from it.
#pragma once

#include <array>
#include <chrono>

#include "result/run_data.hpp"
#include "tornwalzen_analysis.h"

namespace host {

class ProgressRecord {
 public:
  // A run begins. The times of the structure's phases stay: it may stand already.
  void beginRun();
  // One step of the library's handler. A phase lasts until another begins.
  void take(const TornwalzenStep& step);
  // The run is over, and with it its last phase.
  void endRun();

  std::int32_t phase() const { return step_.phase; }  // 0 before the first step
  double fraction() const { return step_.fraction; }  // 0..1 of the phase, as last told
  std::int32_t iteration() const { return step_.iteration; }
  double residual() const { return step_.residual; }  // mm; negative where there is none
  int steps() const { return steps_; }                // increments begun, repeats included
  double seconds() const;                             // since the run began
  PhaseTimes times() const;

 private:
  using Clock = std::chrono::steady_clock;
  void closePhase();

  TornwalzenStep step_{};
  int steps_ = 0;
  Clock::time_point since_{};                                 // begin of the phase
  Clock::time_point began_{};                                 // begin of the run
  std::array<double, TORNWALZEN_PHASE_PRESS + 1> seconds_{};  // by phase; 0: none of these
};

}  // namespace host
