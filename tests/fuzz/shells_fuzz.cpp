// Any bytes as a finite-element file of the host program: each reader of shells, the mending, the skin of a solid
// and the check behind them end with a mesh or with a failure in words.
#include <string>

#include "fuzz/fuzz_target.hpp"
#include "fuzz/usable_part.hpp"
#include "mesh/abaqus_reader.hpp"
#include "mesh/dyna_reader.hpp"
#include "mesh/format_table.hpp"
#include "mesh/mend.hpp"
#include "mesh/nastran_reader.hpp"
#include "mesh/skin.hpp"
#include "mesh/submesh.hpp"

namespace {

// Every triangle and node has its numbers.
void requireNumbered(const host::Mesh& mesh) {
  fuzz::require(host::isSound(mesh) || mesh.corners.size() % 3 == 0);
  fuzz::require(mesh.ids.node.size() == mesh.nodes());
  fuzz::require(mesh.ids.element.size() == mesh.elements() && mesh.ids.part.size() == mesh.elements());
}

host::Mesh mended(host::Mesh mesh) {
  requireNumbered(mesh);
  if (!host::isSound(mesh)) return mesh;
  host::ReadOptions options;
  host::proposeMending(options, mesh);
  options.weld = 0.25;
  host::mendMesh(options, mesh);
  requireNumbered(mesh);
  if (host::isSolid(mesh)) host::takeSkin(options, mesh);
  requireNumbered(mesh);
  return mesh;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content(reinterpret_cast<const char*>(data), size);
  host::formatOf(content, size);
  for (const std::vector<std::string>& parts : {std::vector<std::string>{}, {"1"}}) {
    fuzz::readAndCheck([&] { return mended(host::readNastran(content, "fuzz", parts)); });
    fuzz::readAndCheck([&] { return mended(host::readAbaqus(content, "fuzz", parts)); });
    fuzz::readAndCheck([&] { return mended(host::readDyna(content, "fuzz", parts)); });
  }
  return 0;
}
