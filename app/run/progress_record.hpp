// What the progress handler was told, and what follows from it.
#ifndef TORNWALZEN_APP_PROGRESS_RECORD_HPP
#define TORNWALZEN_APP_PROGRESS_RECORD_HPP

#include <chrono>

#include "tornwalzen.h"

namespace host {

enum class RunPhase { development, increments };

class ProgressRecord {
 public:
  // One record of the library's handler.
  void take(const TornwalzenProgress& record);

  RunPhase phase() const { return phase_; }
  double fraction() const { return fraction_; }  // 0..1 of the phase, as last told
  int steps() const { return steps_; }           // increments announced, repeats included
  // When the development was over, if it was.
  std::chrono::steady_clock::time_point developed() const { return developed_; }

 private:
  RunPhase phase_ = RunPhase::development;
  double fraction_ = 0.0;
  int steps_ = 0;
  std::chrono::steady_clock::time_point developed_{};
};

}  // namespace host

#endif
