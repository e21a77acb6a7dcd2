// How far a blank lies from the true one.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace verification {

/// Largest distance (mm) between the nodes of two blanks after the turn and the shift that fit the first to
/// the second best in the sense of least squares. found, exact: in, u v per node (mm).
inline double largestError(const std::vector<double>& found, const std::vector<double>& exact) {
  const std::size_t nodes = exact.size() / 2;
  double fu = 0, fv = 0, eu = 0, ev = 0;
  for (std::size_t n = 0; n < nodes; ++n) {
    fu += found[2 * n], fv += found[2 * n + 1];
    eu += exact[2 * n], ev += exact[2 * n + 1];
  }
  const double count = static_cast<double>(nodes);
  fu /= count, fv /= count, eu /= count, ev /= count;
  double cosine = 0, sine = 0;
  for (std::size_t n = 0; n < nodes; ++n) {
    const double a = found[2 * n] - fu, b = found[2 * n + 1] - fv, c = exact[2 * n] - eu,
                 d = exact[2 * n + 1] - ev;
    cosine += a * c + b * d;
    sine += a * d - b * c;
  }
  const double turn = std::atan2(sine, cosine), co = std::cos(turn), si = std::sin(turn);
  double largest = 0;
  for (std::size_t n = 0; n < nodes; ++n) {
    const double a = found[2 * n] - fu, b = found[2 * n + 1] - fv;
    largest = std::max(
        largest, std::hypot(co * a - si * b + eu - exact[2 * n], si * a + co * b + ev - exact[2 * n + 1]));
  }
  return largest;
}

}  // namespace verification
