// A part with four triangles for each.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>

#include "host_kit/whole_run.hpp"

namespace host_kit {

/// Every triangle in four, by the middles of its edges; the rigid motion is held.
inline HostPart refined(const HostPart& part) {
  HostPart fine;
  fine.knots = part.knots;
  std::map<std::pair<std::int32_t, std::int32_t>, std::int32_t> middles;
  const auto middle = [&](std::int32_t a, std::int32_t b) {
    const auto [place, isNew] = middles.try_emplace(std::minmax(a, b), fine.nodes() + 1);
    if (isNew)
      for (std::size_t i = 0; i < 3; ++i)
        fine.knots.push_back(0.5 * (part.knots[3 * static_cast<std::size_t>(a - 1) + i] +
                                    part.knots[3 * static_cast<std::size_t>(b - 1) + i]));
    return place->second;
  };
  for (std::size_t e = 0; e < part.inzi.size(); e += 3) {
    const std::int32_t a = part.inzi[e], b = part.inzi[e + 1], c = part.inzi[e + 2];
    const std::int32_t ab = middle(a, b), bc = middle(b, c), ca = middle(c, a);
    fine.inzi.insert(fine.inzi.end(), {a, ab, ca, ab, b, bc, ca, bc, c, ab, bc, ca});
  }
  holdRigidMotion(fine);
  return fine;
}

}  // namespace host_kit
