// From the name of a file to the part that is run; see the header.
#include "mesh/part_file.hpp"

#include "mesh/import.hpp"
#include "mesh/mend.hpp"
#include "mesh/mesh_file.hpp"
#include "mesh/skin.hpp"
#include "mesh/submesh.hpp"

namespace host {

namespace {

void tellAll(Mesh& mesh, const Tell& tell) {
  for (const std::string& sentence : mesh.remarks) tell(sentence);
  mesh.remarks.clear();
}

}  // namespace

void prepareMesh(const ReadOptions& options, Mesh& mesh, const Tell& tell) {
  mendMesh(options, mesh);
  tellAll(mesh, tell);
  if (isSolid(mesh)) takeSkin(options, mesh);
  tellAll(mesh, tell);
  if (options.remesh > 0.0) mesh = importAnew(mesh, options);
  tellAll(mesh, tell);
}

Part readPart(const std::string& path, const ReadOptions& options, bool largest, const Tell& tell) {
  Mesh mesh = readMeshFile(path, options);
  tellAll(mesh, tell);
  if (!isSound(mesh)) return checkMesh(mesh, largest);  // which names what is wrong
  prepareMesh(options, mesh, tell);
  const Part part = checkMesh(mesh, largest);
  proposeMending(options, mesh);
  tellAll(mesh, tell);
  return part;
}

}  // namespace host
