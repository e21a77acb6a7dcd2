// Any bytes as an OBJ file: what `tornwalzen check` measures on a mesh, refused or not, and where the sheet is bent, seen on
// its projection, ends, stays within its range and tells the same of the same mesh.
#include <cmath>
#include <string>

#include "fuzz/fuzz_target.hpp"
#include "fuzz/usable_part.hpp"
#include "mesh/draw_direction.hpp"
#include "mesh/mend.hpp"
#include "mesh/mesh_census.hpp"
#include "mesh/obj_reader.hpp"
#include "mesh/sheet_shape.hpp"
#include "mesh/submesh.hpp"
#include "result/bend_lines.hpp"
#include "result/outline.hpp"

namespace {

constexpr std::size_t mostElements = 60;  // a thousand directions are tried for each

void requireCensus(const host::Mesh& mesh) {
  const host::MeshCensus census = host::censusOf(mesh);
  fuzz::require(census.pieces >= 1 && census.piece.size() == mesh.elements());
  for (const std::int32_t piece : census.piece) fuzz::require(piece >= 1 && piece <= census.pieces);
  for (const auto* list :
       {&census.border, &census.crowded, &census.opposed, &census.arealess, &census.needles})
    for (std::size_t k = 0; k < list->size(); ++k)
      fuzz::require((*list)[k] < mesh.elements() && (k == 0 || (*list)[k - 1] < (*list)[k]));
  fuzz::require(census.sharpest < mesh.elements());
  for (std::size_t k = 1; k < census.loops.size(); ++k)
    fuzz::require(!(census.loops[k].length > census.loops[k - 1].length));
}

void requireShape(const host::Part& part) {
  for (const std::int32_t e : host::foldedElements(part, 150.0))
    fuzz::require(e >= 1 && e <= part.elements());
  for (const host::MirrorEdge& edge : host::mirrorEdges(part))
    fuzz::require(edge.length > 0.0 && edge.farthestFromRight >= 0.0);
  if (static_cast<std::size_t>(part.elements()) > mostElements) return;
  const host::DrawView best = host::bestDrawDirection(part), z = host::seenAlong(part, {0, 0, 1});
  if (!std::isfinite(best.area) || best.area < 1e-300)
    return;  // beyond the range of lengths that are squared
  fuzz::require(std::fabs(host::norm(best.direction) - 1.0) < 1e-9);
  fuzz::require(best.undercutShare() <= z.undercutShare() + 1.1e-3);
  fuzz::require(host::bestDrawDirection(part).direction == best.direction);
}

void requireBends(const host::Part& part) {
  std::vector<double> plane;
  for (std::size_t n = 0; n < part.points.size(); n += 3)
    plane.insert(plane.end(), {part.points[n], part.points[n + 1]});
  const std::vector<host::OutlineLoop> loops = host::outlineOf(part.corners, plane).loops;
  for (const double radius : {1e-3, 5.0, 1e6}) {
    const auto lines = host::bendLines(part.corners, part.points, plane, loops, radius);
    for (const auto& line : lines)
      for (const host::PlanePoint& end : line) fuzz::require(std::isfinite(end[0]) && std::isfinite(end[1]));
    fuzz::require(host::bendLines(part.corners, part.points, plane, loops, radius) == lines);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content(reinterpret_cast<const char*>(data), size);
  try {
    host::Mesh mesh = host::readObj(content, "fuzz");
    if (!host::isSound(mesh) || mesh.elements() == 0) return 0;
    requireCensus(mesh);
    host::ReadOptions options;
    host::proposeMending(options, mesh);
    const host::Part part = host::checkMesh(mesh, true);
    requireShape(part);
    requireBends(part);
  } catch (const host::Failure& failure) {
    fuzz::require(failure.what()[0] != '\0');
  }
  return 0;
}
