// Counts and times of the library's own procedures during a run, without a change to the library: the linker
// sends its calls through here (--wrap on the names in probes.cpp).
#pragma once

#include <functional>

#include "clock.hpp"
#include "ground/driver_arrays.hpp"

namespace bench {

struct Probe {
  long calls = 0;
  Seconds time;
};

struct Probes {
  Probe development;  // the blank development as a whole
  long unfoldIterations = 0, unfoldEvaluations = 0;
  long increments = 0;      // started, repeats included
  Probe newton;             // Newton steps, all that follows here included
  Probe tangent, residual;  // assembly passes
  Probe factorize, solve;
  Probe energy;  // energy sum at the start of an increment
  /// Called once, before the first factorization, with the arrays as they then stand; its time is no one's.
  std::function<void(const tornwalzen::DriverArrays&)> beforeFirstFactorization;
};

/// What the probes have seen since this was last set to Probes{}.
extern Probes probes;

}  // namespace bench
