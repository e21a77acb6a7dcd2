// Any bytes as a mesh file of the host program: each reader and the check behind it end with a mesh or with a
// failure in words; a part that was accepted is one that the library can be given.
#include <cmath>
#include <cstdlib>
#include <string>

#include "system/failure.hpp"
#include "fuzz/fuzz_target.hpp"
#include "run/hold.hpp"
#include "mesh/mesh_check.hpp"
#include "mesh/obj_reader.hpp"
#include "mesh/stl_reader.hpp"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

void requireUsable(const host::Part& part) {
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content(reinterpret_cast<const char*>(data), size);
  host::looksLikeStlBinary(content);
  host::looksLikeStlText(content);
  readAndCheck([&] { return host::readObj(content, "fuzz"); });
  readAndCheck([&] { return host::readStlText(content, "fuzz"); });
  readAndCheck([&] { return host::readStlBinary(content, "fuzz"); });
  return 0;
}
