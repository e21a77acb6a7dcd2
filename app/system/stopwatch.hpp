// Wall time, stage by stage.
#pragma once

#include <chrono>

namespace host {

class Stopwatch {
 public:
  // Seconds since the last call, at first since the beginning.
  double lap() {
    const Clock::time_point before = last_;
    last_ = Clock::now();
    return std::chrono::duration<double>(last_ - before).count();
  }

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point last_ = Clock::now();
};

}  // namespace host
