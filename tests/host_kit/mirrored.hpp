// A part made whole from the half or the quarter that is meshed.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "host_kit/whole_run.hpp"

namespace host_kit {

/// The part and its mirror image in the plane x = 0 (axis 0) or y = 0 (axis 1), joined where it meets the plane.
/// TWIN: out, the mirror image of each node, from 0.
inline HostPart mirrored(const HostPart& part, std::size_t axis, std::vector<std::size_t>& TWIN) {
  HostPart whole;
  whole.knots = part.knots;
  const std::size_t nodes = part.knots.size() / 3;
  TWIN.assign(nodes, 0);
  for (std::size_t n = 0; n < nodes; ++n) {
    TWIN[n] = n;
    if (std::fabs(part.knots[3 * n + axis]) < 1e-4) {
      whole.knots[3 * n + axis] = 0.0;
      continue;
    }
    TWIN[n] = whole.knots.size() / 3;
    for (std::size_t i = 0; i < 3; ++i)
      whole.knots.push_back((i == axis ? -1.0 : 1.0) * part.knots[3 * n + i]);
    TWIN.push_back(n);
  }
  whole.inzi = part.inzi;
  for (std::size_t e = 0; e < part.inzi.size(); e += 3)
    for (const std::size_t corner : {0, 2, 1})
      whole.inzi.push_back(
          static_cast<std::int32_t>(TWIN[static_cast<std::size_t>(part.inzi[e + corner] - 1)]) + 1);
  host_kit::holdRigidMotion(whole);
  return whole;
}

/// The values u v per node, each at the node's mirror image.
inline std::vector<double> mirrorImage(const std::vector<double>& blank,
                                       const std::vector<std::size_t>& TWIN) {
  std::vector<double> image(blank.size());
  for (std::size_t n = 0; n < TWIN.size(); ++n)
    for (std::size_t i = 0; i < 2; ++i) image[2 * TWIN[n] + i] = blank[2 * n + i];
  return image;
}

}  // namespace host_kit
