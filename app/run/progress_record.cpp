// What the library told of a run's progress; see the header.
#include "run/progress_record.hpp"

namespace host {

void ProgressRecord::beginRun() {
  for (std::size_t phase = TORNWALZEN_PHASE_DEVELOPMENT; phase < seconds_.size(); ++phase)
    seconds_[phase] = 0.0;
  step_ = {};
  steps_ = 0;
  began_ = Clock::now();
}

void ProgressRecord::take(const TornwalzenStep& step) {
  if (began_ == Clock::time_point{}) began_ = Clock::now();
  if (step.phase != step_.phase) {
    closePhase();
    since_ = Clock::now();
  }
  // an increment announces itself before its first iteration
  if (step.phase == TORNWALZEN_PHASE_INCREMENTS && step.iteration == 0) ++steps_;
  step_ = step;
}

void ProgressRecord::endRun() {
  closePhase();
}

void ProgressRecord::closePhase() {
  const auto phase = static_cast<std::size_t>(step_.phase);
  if (phase == 0 || phase >= seconds_.size()) return;
  const double seconds = std::chrono::duration<double>(Clock::now() - since_).count();
  // the press model comes back to phases that it has left
  seconds_[phase] = phase < TORNWALZEN_PHASE_DEVELOPMENT ? seconds : seconds_[phase] + seconds;
}

double ProgressRecord::seconds() const {
  return std::chrono::duration<double>(Clock::now() - began_).count();
}

PhaseTimes ProgressRecord::times() const {
  return {seconds_[TORNWALZEN_PHASE_STRUCTURE], seconds_[TORNWALZEN_PHASE_ORDERING],
          seconds_[TORNWALZEN_PHASE_SYMBOLIC],
          seconds_[TORNWALZEN_PHASE_DEVELOPMENT] + seconds_[TORNWALZEN_PHASE_START],
          seconds_[TORNWALZEN_PHASE_INCREMENTS] + seconds_[TORNWALZEN_PHASE_NEWTON] +
              seconds_[TORNWALZEN_PHASE_PRESS]};
}

}  // namespace host
