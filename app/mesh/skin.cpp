// One skin of a thin solid; see the header.
#include "mesh/skin.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "mesh/edges.hpp"
#include "mesh/fibre.hpp"
#include "mesh/submesh.hpp"
#include "system/failure.hpp"
#include "system/text.hpp"
#include "system/vector.hpp"

namespace host {

namespace {

const double cosineOfGrowth = std::cos(50.0 * std::acos(-1.0) / 180.0);  // a rim stands at about 90 degrees
// Sheet: skins of like area, thickness small against their size, and no more area beside them than a rim of
// their outlines' length has.
constexpr double leastShare = 0.5, thickestSheet = 0.2, widestRim = 1.5;

Vector pointOf(const Mesh& mesh, std::int64_t node) {
  const auto n = static_cast<std::size_t>(node) - 1;
  return {mesh.points[3 * n], mesh.points[3 * n + 1], mesh.points[3 * n + 2]};
}

// Twice the area along the normal, per triangle.
std::vector<Vector> areaVectors(const Mesh& mesh) {
  std::vector<Vector> vectors;
  for (std::size_t k = 0; k < mesh.corners.size(); k += 3) {
    const Vector a = pointOf(mesh, mesh.corners[k]);
    vectors.push_back(
        cross(minus(pointOf(mesh, mesh.corners[k + 1]), a), minus(pointOf(mesh, mesh.corners[k + 2]), a)));
  }
  return vectors;
}

// Volume that the triangles enclose, positive if they look outwards.
double enclosedVolume(const Mesh& mesh) {
  const Vector origin = pointOf(mesh, mesh.corners[0]);
  double sum = 0.0;
  for (std::size_t k = 0; k < mesh.corners.size(); k += 3) {
    const Vector a = minus(pointOf(mesh, mesh.corners[k]), origin),
                 b = minus(pointOf(mesh, mesh.corners[k + 1]), origin),
                 c = minus(pointOf(mesh, mesh.corners[k + 2]), origin);
    sum += dot(a, cross(b, c));
  }
  return sum / 6.0;
}

// Per triangle (from 0) the smallest triangle of its region.
std::vector<std::size_t> growRegions(const std::vector<Side>& sides, const std::vector<Vector>& areas) {
  std::vector<std::size_t> parent(areas.size());
  std::iota(parent.begin(), parent.end(), std::size_t{0});
  const auto root = [&](std::size_t e) {
    while (parent[e] != e) e = parent[e] = parent[parent[e]];
    return e;
  };
  forEachEdge(sides, [&](const Side* first, const Side* last) {
    if (last - first != 2) return;
    const auto a = static_cast<std::size_t>(first[0].element) - 1,
               b = static_cast<std::size_t>(first[1].element) - 1;
    // a needle without area has no normal that could keep it apart
    if (dot(areas[a], areas[b]) < cosineOfGrowth * norm(areas[a]) * norm(areas[b])) return;
    const std::size_t ra = root(a), rb = root(b);
    parent[std::max(ra, rb)] = std::min(ra, rb);
  });
  for (std::size_t e = 0; e < parent.size(); ++e) parent[e] = root(e);
  return parent;
}

struct Skins {
  std::array<std::size_t, 2> region{};  // root triangle of the larger and of the smaller
  std::array<double, 2> area{};
  double total = 0.0;    // area of the solid
  double outline = 0.0;  // length of the larger one's border
};

Skins largestRegions(const Mesh& mesh, const std::vector<Side>& sides, const std::vector<Vector>& areas,
                     const std::vector<std::size_t>& region) {
  std::vector<double> sum(areas.size(), 0.0);
  Skins skins;
  for (std::size_t e = 0; e < areas.size(); ++e) sum[region[e]] += 0.5 * norm(areas[e]);
  for (std::size_t e = 0; e < areas.size(); ++e) {
    skins.total += sum[e];
    if (sum[e] > skins.area[0]) {
      skins.region = {e, skins.region[0]};
      skins.area = {sum[e], skins.area[0]};
    } else if (sum[e] > skins.area[1]) {
      skins.region[1] = e;
      skins.area[1] = sum[e];
    }
  }
  forEachEdge(sides, [&](const Side* first, const Side* last) {
    const std::size_t a = region[static_cast<std::size_t>(first->element) - 1];
    const std::size_t b = region[static_cast<std::size_t>(last[-1].element) - 1];
    if (a != b && (a == skins.region[0] || b == skins.region[0]))
      skins.outline += norm(minus(pointOf(mesh, first->high), pointOf(mesh, first->low)));
  });
  return skins;
}

}  // namespace

bool isSolid(const Mesh& mesh) {
  bool closed = mesh.elements() > 0;
  forEachEdge(sidesOf(mesh)->sides, [&](const Side* first, const Side* last) {
    closed = closed && last - first == 2 && first[0].rising != first[1].rising;
  });
  return closed;
}

void takeSkin(const ReadOptions& options, Mesh& mesh) {
  double volume = enclosedVolume(mesh);
  if (volume < 0.0)  // looks inwards
    for (std::size_t k = 0; k < mesh.corners.size(); k += 3)
      std::swap(mesh.corners[k + 1], mesh.corners[k + 2]);
  volume = std::fabs(volume);
  const std::shared_ptr<const SortedSides> kept = sidesOf(mesh);
  const std::vector<Side>& sides = kept->sides;
  const std::vector<Vector> areas = areaVectors(mesh);
  const std::vector<std::size_t> region = growRegions(sides, areas);
  const Skins skins = largestRegions(mesh, sides, areas, region);
  const double both = skins.area[0] + skins.area[1], thickness = 2.0 * volume / both;
  const bool thin = skins.area[1] > leastShare * skins.area[0] &&
                    thickness < thickestSheet * std::sqrt(skins.area[1]) &&
                    skins.total - both < widestRim * skins.outline * thickness;
  if (!thin)
    throw Failure(mesh.file +
                  ": the surface is closed, but not that of a thin solid: it has no edge and no flat "
                  "blank, and its two largest skins, " +
                  decimal(skins.area[0]) + " and " + decimal(skins.area[1]) + " of " + decimal(skins.total) +
                  " " + options.unit + "2, do not make a sheet");
  const std::size_t taken = skins.region[options.skin == "inner" ? 1 : 0];
  std::vector<bool> keep;
  for (const std::size_t r : region) keep.push_back(r == taken);
  keepTriangles(keep, mesh);
  dropUnusedNodes(mesh);
  mesh.thickness = thickness;
  mesh.remarks.push_back(
      "a thin solid: took its " + std::string(options.skin == "inner" ? "inner" : "outer") + " skin (" +
      fixedDecimal(skins.area[0], 1) + " " + options.unit + "2 outside, " + fixedDecimal(skins.area[1], 1) +
      " inside); measured thickness " + fixedDecimal(thickness, 4) + " " + options.unit);
  moveToFibre(nodeNormals(mesh), options.fibre, false, mesh);
}

}  // namespace host
