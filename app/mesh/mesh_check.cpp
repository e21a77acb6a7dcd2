// Checks a mesh before the run; see the header.
#include "mesh/mesh_check.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "mesh/edges.hpp"
#include "mesh/part_geometry.hpp"
#include "mesh/pieces.hpp"
#include "mesh/seam.hpp"
#include "mesh/triangle_shape.hpp"
#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {

std::string nodeName(const Mesh& mesh, std::size_t node) {
  return "node " + std::to_string(node) + " (" + decimal(mesh.points[3 * node - 3]) + ", " +
         decimal(mesh.points[3 * node - 2]) + ", " + decimal(mesh.points[3 * node - 1]) + ")";
}

std::string edgeName(const Mesh& mesh, const Side& side) {
  return "the edge between " + nodeName(mesh, static_cast<std::size_t>(side.low)) + " and " +
         nodeName(mesh, static_cast<std::size_t>(side.high));
}

void checkNumbers(const Mesh& mesh) {
  const auto nodes = static_cast<std::int64_t>(mesh.nodes());
  for (std::size_t k = 0; k < mesh.corners.size(); ++k)
    if (mesh.corners[k] < 1 || mesh.corners[k] > nodes)
      throw Failure(mesh.file + ": element " + std::to_string(k / 3 + 1) + " names node " +
                    std::to_string(mesh.corners[k]) + ", but the nodes run from 1 to " +
                    std::to_string(nodes));
  for (std::size_t k = 0; k < mesh.points.size(); ++k)
    if (!std::isfinite(mesh.points[k]))
      throw Failure(mesh.file + ": " + nodeName(mesh, k / 3 + 1) + " has a coordinate that is not finite");
}

// --- pieces
// -----------------------------------------------------------------------------------------------------

// Refuses a mesh of several pieces, unless they are pieces of their own and the largest is asked for. Of a sheet
// whose triangles were not joined the largest piece would be any single triangle: then the cure is to join them.
void refusePieces(const Mesh& mesh, const std::vector<std::int32_t>& corners,
                  const std::vector<std::int32_t>& piece, const Part& part, std::int64_t mostElements,
                  std::int32_t element, bool largest) {
  if (largest && mostElements > 1) return;
  const Seam seam = nearestSeam(mesh.points, corners, piece);
  const std::string start =
      mesh.file + ": the mesh has " + std::to_string(part.filePieces) + " pieces that no edge joins";
  if (isUnwelded(seam))
    throw Failure(start + ", but " + nodeName(mesh, static_cast<std::size_t>(seam.node)) + " and " +
                  nodeName(mesh, static_cast<std::size_t>(seam.other)) + " of two of them are " +
                  decimal(seam.gap) + " " + mesh.unit +
                  " apart: the triangles are not joined. --weld TOL joins them, with a " +
                  "tolerance above that gap and below the shortest edge there, " +
                  decimal(seam.shortestBorder) + " " + mesh.unit);
  if (largest) return;
  std::string nearest;  // closed pieces have no border
  if (seam.node != 0)
    nearest = seam.node == seam.other
                  ? "; two of them touch in " + nodeName(mesh, static_cast<std::size_t>(seam.node)) + " alone"
                  : "; their nearest borders are " + decimal(seam.gap) + " " + mesh.unit + " apart";
  throw Failure(start + "; the largest has " + std::to_string(mostElements) + " of " +
                counted(part.fileElements, "triangle") + " and contains element " + std::to_string(element) +
                " (--largest takes it alone)" + nearest);
}

// Keeps the elements that are run: all of them, or those of the largest piece.
void takePiece(const Mesh& mesh, bool largest, Part& part) {
  const std::vector<std::int32_t> corners(mesh.corners.begin(), mesh.corners.end());
  const std::vector<std::int32_t> piece = findPieces(sidesOf(mesh)->sides);
  std::vector<std::int64_t> elementsOf(piece.size(), 0);
  for (const std::int32_t p : piece) ++elementsOf[static_cast<std::size_t>(p)];
  part.filePieces =
      static_cast<std::int64_t>(elementsOf.size()) - std::count(elementsOf.begin(), elementsOf.end(), 0);
  part.fileElements = static_cast<std::int64_t>(piece.size());
  const auto biggest =
      static_cast<std::int32_t>(std::max_element(elementsOf.begin(), elementsOf.end()) - elementsOf.begin());
  if (part.filePieces > 1)
    refusePieces(mesh, corners, piece, part, elementsOf[static_cast<std::size_t>(biggest)], biggest + 1,
                 largest);

  part.inTriangle.assign(mesh.nodes(), false);
  part.fileElement.reserve(piece.size());
  part.corners.reserve(3 * piece.size());
  for (std::size_t e = 0; e < piece.size(); ++e) {
    if (piece[e] != biggest) continue;
    part.fileElement.push_back(static_cast<std::int32_t>(e) + 1);
    if (!mesh.ids.element.empty()) part.ids.element.push_back(mesh.ids.element[e]);
    if (!mesh.ids.part.empty()) part.ids.part.push_back(mesh.ids.part[e]);
    for (std::size_t k = 3 * e; k < 3 * e + 3; ++k) {
      part.corners.push_back(corners[k]);
      part.inTriangle[static_cast<std::size_t>(corners[k]) - 1] = true;
    }
  }
}

// --- shape
// ------------------------------------------------------------------------------------------------------

void checkAreas(const Part& part) {
  for (std::int64_t e = 1; e <= part.elements(); ++e) {
    if (hasNoArea(pointOf(part, part.corner(e, 0)), pointOf(part, part.corner(e, 1)),
                  pointOf(part, part.corner(e, 2))))
      throw Failure(part.file + ": element " +
                    std::to_string(part.fileElement[static_cast<std::size_t>(e) - 1]) + " (nodes " +
                    std::to_string(part.corner(e, 0)) + ", " + std::to_string(part.corner(e, 1)) + ", " +
                    std::to_string(part.corner(e, 2)) + ") has no area");
  }
}

void checkEdges(const Mesh& mesh, const Part& part, const std::vector<Side>& sides) {
  bool hasBorder = false;
  forEachEdge(sides, [&](const Side* first, const Side* last) {
    hasBorder = hasBorder || last - first == 1;
    if (last - first < 3) return;
    std::string elements;
    for (const Side* side = first; side != last; ++side)
      elements += (side == first ? " " : ", ") +
                  std::to_string(part.fileElement[static_cast<std::size_t>(side->element) - 1]);
    throw Failure(part.file + ": " + edgeName(mesh, *first) + " belongs to " + std::to_string(last - first) +
                  " triangles (elements" + elements + ")");
  });
  if (!hasBorder) throw Failure(part.file + ": the surface is closed; it has no edge and no flat blank");
}

// --- orientation
// ------------------------------------------------------------------------------------------------

// A neighbour of an element across one of its sides.
struct Neighbour {
  std::int32_t element = -1;  // from 0; -1: none
  bool opposed = false;       // turned the other way
};
using Neighbours = std::vector<std::array<Neighbour, 3>>;

void addNeighbour(std::array<Neighbour, 3>& of, const Neighbour& neighbour) {
  *std::find_if(of.begin(), of.end(), [](const Neighbour& slot) { return slot.element < 0; }) = neighbour;
}

Neighbours findNeighbours(std::size_t elements, const std::vector<Side>& sides) {
  Neighbours neighbours(elements);
  forEachEdge(sides, [&](const Side* first, const Side* last) {
    if (last - first != 2) return;
    // two triangles of one orientation run along their common edge in opposite directions
    const bool opposed = first[0].rising == first[1].rising;
    addNeighbour(neighbours[static_cast<std::size_t>(first[0].element) - 1], {first[1].element - 1, opposed});
    addNeighbour(neighbours[static_cast<std::size_t>(first[1].element) - 1], {first[0].element - 1, opposed});
  });
  return neighbours;
}

// Whether two triangles at a common edge are turned against each other.
bool anyOpposed(const std::vector<Side>& sides) {
  bool any = false;
  forEachEdge(sides, [&](const Side* first, const Side* last) {
    any = any || (last - first == 2 && first[0].rising == first[1].rising);
  });
  return any;
}

// Turns triangles to the orientation that most of them have.
void turnToOneOrientation(const Mesh& mesh, Part& part, const std::vector<Side>& sides) {
  if (!anyOpposed(sides)) return;
  const auto elements = static_cast<std::size_t>(part.elements());
  const Neighbours neighbours = findNeighbours(elements, sides);
  std::vector<signed char> turn(elements, -1);  // -1 not reached yet, else whether to turn it
  std::vector<std::int32_t> reached{0};
  turn[0] = 0;
  for (std::size_t next = 0; next < reached.size(); ++next) {  // the part is one piece: all are reached
    const auto e = static_cast<std::size_t>(reached[next]);
    for (const Neighbour& neighbour : neighbours[e]) {
      if (neighbour.element < 0) continue;
      const auto n = static_cast<std::size_t>(neighbour.element);
      if (turn[n] >= 0) continue;
      turn[n] = static_cast<signed char>(turn[e] ^ static_cast<signed char>(neighbour.opposed));
      reached.push_back(neighbour.element);
    }
  }
  forEachEdge(sides, [&](const Side* first, const Side* last) {
    if (last - first != 2) return;
    const bool opposed = first[0].rising == first[1].rising;
    const bool turnedApart = turn[static_cast<std::size_t>(first[0].element) - 1] !=
                             turn[static_cast<std::size_t>(first[1].element) - 1];
    if (opposed != turnedApart)
      throw Failure(part.file +
                    ": the triangles cannot be turned to one orientation (a one-sided surface); " +
                    edgeName(mesh, *first) + " is where it fails");
  });

  const auto others = static_cast<std::size_t>(std::count(turn.begin(), turn.end(), 1));
  const signed char minority = 2 * others > elements ? 0 : 1;
  for (std::size_t e = 0; e < elements; ++e)
    if (turn[e] == minority) {
      std::swap(part.corners[3 * e + 1], part.corners[3 * e + 2]);
      ++part.turned;
    }
}

double longestBoxSide(const Part& part) {
  double longest = 0.0;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    double low = std::numeric_limits<double>::infinity(), high = -low;
    for (std::size_t n = 0; n < part.inTriangle.size(); ++n) {
      if (!part.inTriangle[n]) continue;
      low = std::min(low, part.points[3 * n + axis]);
      high = std::max(high, part.points[3 * n + axis]);
    }
    longest = std::max(longest, high - low);
  }
  return longest;
}

}  // namespace

void checkCounts(const std::string& file, std::uint64_t nodes, std::uint64_t elements) {
  constexpr std::uint64_t most = std::numeric_limits<std::int32_t>::max();
  if (nodes > most / 3 || elements > most / 12 || 4 * (nodes + 3 * elements) - nodes > most)
    throw Failure(file + ": " + std::to_string(nodes) + " nodes and " + std::to_string(elements) +
                  " triangles are too many: the matrix could have more than 2147483647 entries");
}

Part checkMesh(const Mesh& mesh, bool largest) {
  checkCounts(mesh.file, mesh.nodes(), mesh.elements());
  checkNumbers(mesh);
  Part part;
  part.file = mesh.file;
  part.identity = mesh.identity;
  part.unit = mesh.unit;
  part.points = mesh.points;
  part.deckFlags = mesh.flags;
  part.ids.node = mesh.ids.node;
  part.thickness = mesh.thickness;
  takePiece(mesh, largest, part);
  checkAreas(part);
  const std::shared_ptr<const SortedSides> ofMesh = sidesOf(mesh);
  const std::vector<Side> ofPiece = part.filePieces > 1 ? sortedSides(part.corners) : std::vector<Side>();
  const std::vector<Side>& sides = part.filePieces > 1 ? ofPiece : ofMesh->sides;
  checkEdges(mesh, part, sides);
  turnToOneOrientation(mesh, part, sides);
  part.size = longestBoxSide(part);
  return part;
}

}  // namespace host
