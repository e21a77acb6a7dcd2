// How long a run may still take, from how far it is.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace host {

// An estimate. Load increments: what is left of the part, at the pace so far. Newton iterations of the sure path, whose
// fraction is no measure of time: six are usual, so what is left of six, and one at least, at the mean of those so far.
class RemainingTime {
 public:
  // One step. phase: of TORNWALZEN_PHASE_...; fraction: 0..1 of it; iteration: within it; seconds: since the run began,
  // ascending. Returns seconds, or nothing where the run is younger than 5 s or the pace is not known.
  std::optional<double> update(std::int32_t phase, double fraction, std::int32_t iteration, double seconds);

 private:
  std::int32_t phase_ = 0;
  double since_ = 0.0, fractionThen_ = 0.0;
  std::int32_t iterationThen_ = 0;
};

// "about 40 s left", "about 3 min left": one or two digits, as good as the estimate is.
std::string remainingText(double seconds);

}  // namespace host
