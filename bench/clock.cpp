// CLOCK_PROCESS_CPUTIME_ID and CLOCK_MONOTONIC.
#include "clock.hpp"

#include <time.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace bench {

namespace {

double seconds(clockid_t clock) {
  timespec t;
  clock_gettime(clock, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

double middle(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  const std::size_t n = v.size();
  return n % 2 == 1 ? v[n / 2] : 0.5 * (v[n / 2 - 1] + v[n / 2]);
}

}  // namespace

Seconds now() {
  return {seconds(CLOCK_PROCESS_CPUTIME_ID), seconds(CLOCK_MONOTONIC)};
}

double waited() {
  std::error_code missing;
  double sum = 0.0;
  for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task", missing)) {
    std::ifstream statistics(thread.path() / "schedstat");  // on a core, ready without one (ns), turns
    double ran = 0.0, ready = 0.0;
    if (statistics >> ran >> ready) sum += 1e-9 * ready;
  }
  return sum;
}

Seconds median(const std::vector<Seconds>& samples) {
  std::vector<double> cpu, wall;
  for (const Seconds& s : samples) {
    cpu.push_back(s.cpu);
    wall.push_back(s.wall);
  }
  return {middle(cpu), middle(wall)};
}

}  // namespace bench
