// Small sample parts and what is held of them.
#pragma once

#include <cmath>
#include <cstdint>
#include <string>

#include "errors/hostile_host.hpp"
#include "shapes.hpp"

namespace golden {

/// The sample of that name with about `triangles` triangles; the mesh is regular for the seed 0.
inline hostile::Mesh samplePart(const std::string& name, std::int32_t triangles, std::uint64_t seed = 0) {
  shapes::MeshChoice choice;
  choice.triangles = triangles;
  choice.seed = seed;
  const shapes::Sheet sheet = shapes::makeShape(name, choice);
  return {sheet.knots, sheet.inzi};
}

/// Holds u and v of the node nearest the centre of all nodes in plan, and v of the one farthest from it along
/// x.
inline void holdMiddle(hostile::Host& host) {
  const std::int64_t nodes = host.NKNO[0];
  const auto x = [&](std::int64_t n) { return host.KNOTS[3 * n]; };
  const auto y = [&](std::int64_t n) { return host.KNOTS[3 * n + 1]; };
  double mx = 0.0, my = 0.0;
  for (std::int64_t n = 0; n < nodes; ++n) {
    mx += x(n) / static_cast<double>(nodes);
    my += y(n) / static_cast<double>(nodes);
  }
  std::int64_t middle = 0, far = 0;
  for (std::int64_t n = 1; n < nodes; ++n)
    if (std::hypot(x(n) - mx, y(n) - my) < std::hypot(x(middle) - mx, y(middle) - my)) middle = n;
  for (std::int64_t n = 1; n < nodes; ++n)
    if (std::fabs(x(n) - x(middle)) > std::fabs(x(far) - x(middle))) far = n;
  for (std::int32_t& flag : host.ARFA) flag = 1;
  host.ARFA[2 * middle] = host.ARFA[2 * middle + 1] = host.ARFA[2 * far + 1] = 0;
}

}  // namespace golden
