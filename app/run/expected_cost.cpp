// What a run will take; see the header.
#include "run/expected_cost.hpp"

#include <cmath>

namespace host {

namespace {

// User time of 0.08, 0.35, 1.6 and 4.7 s and a peak of 12, 30, 108 and 284 MB at 5, 20, 80 and 200 thousand triangles
// (means of cup and rail on a 2.x GHz server core): t = 80 ms (NE/5000)^1.1, m = 7 MB + 1.4 kB NE, both within a fifth.
constexpr double fitted = 5000.0, secondsThere = 0.08, growth = 1.1;
constexpr double programMegabytes = 7.0, megabytesPerTriangle = 1.4e-3;

}  // namespace

ExpectedCost expectedCost(std::int64_t elements) {
  const auto count = static_cast<double>(elements);
  return {secondsThere * std::pow(count / fitted, growth), programMegabytes + megabytesPerTriangle * count};
}

}  // namespace host
