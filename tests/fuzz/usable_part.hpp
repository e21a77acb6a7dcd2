// What a fuzzed mesh reader owes: a mesh or a failure in words, and behind the check a part that the library can
// be given.
#pragma once

#include <cmath>
#include <cstdlib>

#include "mesh/mesh_check.hpp"
#include "run/hold.hpp"
#include "system/failure.hpp"

namespace fuzz {

inline void require(bool condition) {
  if (!condition) std::abort();
}

inline void requireUsable(const host::Part& part) {
  require(part.points.size() % 3 == 0 && part.corners.size() % 3 == 0 && part.elements() > 0);
  for (const std::int32_t node : part.corners) {
    require(node >= 1 && node <= part.nodes());
    require(std::isfinite(part.x(node)) && std::isfinite(part.y(node)) && std::isfinite(part.z(node)));
  }
  require(std::isfinite(part.size) && part.size > 0.0);
}

template <class Read>
void readAndCheck(Read read) {
  try {
    const host::Mesh mesh = read();
    for (const bool largest : {false, true}) {
      try {
        const host::Part part = host::checkMesh(mesh, largest);
        requireUsable(part);
        const host::Hold hold = host::holdUnknowns(part, "auto");
        require(hold.ARFA.size() == 2 * mesh.nodes());
      } catch (const host::Failure& failure) {
        require(failure.what()[0] != '\0');
      }
    }
  } catch (const host::Failure& failure) {
    require(failure.what()[0] != '\0');
  }
}

}  // namespace fuzz
