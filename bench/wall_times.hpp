// Wall times on a machine that others use too: calls in turns, and those apart that other work disturbed.
#pragma once

#include <sched.h>

#include <algorithm>
#include <cmath>

#include "clock.hpp"

namespace bench {

/// While it lives the process may use every core that it is granted.
class AllCores {
 public:
  AllCores() {
    sched_getaffinity(0, sizeof before_, &before_);
    cpu_set_t all;
    CPU_ZERO(&all);
    for (int cpu = 0; cpu < CPU_SETSIZE; ++cpu) CPU_SET(cpu, &all);
    sched_setaffinity(0, sizeof all, &all);
  }
  ~AllCores() { sched_setaffinity(0, sizeof before_, &before_); }
  AllCores(const AllCores&) = delete;
  AllCores& operator=(const AllCores&) = delete;

 private:
  cpu_set_t before_;
};

/// Times of one call, those apart during which other work kept a thread from its core.
class WallTimes {
 public:
  template <class Call>
  void take(Call call) {
    const double before = waited();
    const Seconds time = timed(call);
    (waited() - before <= mostWaited * time.wall ? quiet_ : disturbed_).push_back(time);
  }
  int quiet() const { return static_cast<int>(quiet_.size()); }
  /// Medians of the times that nothing disturbed; where there is none, the least of the others (s).
  Seconds typical() const {
    if (!quiet_.empty()) return median(quiet_);
    Seconds least{INFINITY, INFINITY};
    for (const Seconds& s : disturbed_) least = {std::min(least.cpu, s.cpu), std::min(least.wall, s.wall)};
    return least;
  }

 private:
  static constexpr double mostWaited = 0.02;  // of the wall time
  std::vector<Seconds> quiet_, disturbed_;
};

constexpr int patience = 3;  // times as many turns as are wanted undisturbed

}  // namespace bench
