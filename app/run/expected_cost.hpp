// What a run will take, before it is made.
#pragma once

#include <cstdint>

namespace host {

struct ExpectedCost {
  double seconds = 0.0;    // of one run on one core
  double megabytes = 0.0;  // 10^6 bytes, of the whole program at its peak
};

// Fits through measured runs of drawn cups and rails of 5,000 to 200,000 triangles by the sure path, report and all
// results included; a part that is hard to open takes several times as long. elements: 0 or more.
ExpectedCost expectedCost(std::int64_t elements);

}  // namespace host
