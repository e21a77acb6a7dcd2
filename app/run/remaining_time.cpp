// How long a run may still take; see the header.
#include "run/remaining_time.hpp"

#include <algorithm>
#include <cmath>

#include "tornwalzen_analysis.h"

namespace host {

namespace {
constexpr double youngRun = 5.0;     // s: a run that ends before nobody waits for
constexpr double leastShare = 0.02;  // of the part: before it the pace of the increments is not known
constexpr int usualIterations = 6;   // factorizations of a drawn part on the sure path: 3 to 6
}  // namespace

std::optional<double> RemainingTime::update(std::int32_t phase, double fraction, std::int32_t iteration,
                                            double seconds) {
  if (phase != phase_ || iteration < iterationThen_) {
    const bool sameIncrements = phase == phase_ && phase == TORNWALZEN_PHASE_INCREMENTS;
    if (!sameIncrements) {  // there the iterations begin anew within each increment
      since_ = seconds;
      fractionThen_ = fraction;
      iterationThen_ = iteration;
    }
    phase_ = phase;
  }
  if (seconds < youngRun) return std::nullopt;
  const double lasted = seconds - since_;
  if (phase == TORNWALZEN_PHASE_INCREMENTS) {
    const double done = fraction - fractionThen_;
    if (!(done >= leastShare)) return std::nullopt;
    return lasted * std::max(0.0, 1.0 - fraction) / done;
  }
  const int done = iteration - iterationThen_;
  if (phase != TORNWALZEN_PHASE_NEWTON || done < 1) return std::nullopt;
  return lasted / done * std::max(1, usualIterations - iteration);
}

std::string remainingText(double seconds) {
  const bool minutes = seconds >= 100.0;
  const double amount = minutes ? seconds / 60.0 : seconds;
  const double step = amount < 10.0 ? 1.0 : 10.0;
  const auto rounded = static_cast<long long>(std::max(1.0, std::round(amount / step)) * step);
  return "about " + std::to_string(rounded) + (minutes ? " min" : " s") + " left";
}

}  // namespace host
