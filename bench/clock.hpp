// Time of this process, and what is kept of many measurements.
#pragma once

#include <vector>

namespace bench {

/// Seconds. The processor's time is what counts on a machine that others use too; the wall's time is kept
/// beside it.
struct Seconds {
  double cpu = 0.0, wall = 0.0;
};

Seconds now();

/// Seconds that the threads of this process have stood ready without a core, because others had it; 0 where the system does
/// not tell.
double waited();

template <class Call>
Seconds timed(Call call) {
  const Seconds start = now();
  call();
  const Seconds end = now();
  return {end.cpu - start.cpu, end.wall - start.wall};
}

/// Median by processor time, of at least one; the mean of the middle two for an even number. Cpu and wall
/// apart.
Seconds median(const std::vector<Seconds>& samples);

}  // namespace bench
