// What a run will take, before it is made.
#pragma once

#include <cstdint>

namespace host {

struct ExpectedCost {
  double seconds = 0.0;    // of one run on one core
  double megabytes = 0.0;  // 10^6 bytes, of the whole program at its peak
};

// Fits through measured runs by the sure path of parts of 1,500 to 210,000 triangles, drawn, bent and refined, on one thread,
// report and all results included; a part that is hard to open takes several times as long. elements: 0 or more.
ExpectedCost expectedCost(std::int64_t elements);

}  // namespace host
