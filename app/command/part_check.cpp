// What `tornwalzen check` finds out about a part; see the header.
#include "command/part_check.hpp"

#include <algorithm>
#include <cmath>

#include "mesh/mend.hpp"
#include "mesh/mesh_file.hpp"
#include "mesh/part_file.hpp"
#include "mesh/part_unit.hpp"
#include "mesh/submesh.hpp"
#include "run/hold.hpp"
#include "run/library_run.hpp"
#include "run/run_settings.hpp"
#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {

constexpr double foldAngle = 150.0;       // degrees between neighbours: the sheet lies nearly on itself
constexpr double undercutShare = 1e-3;    // of the area: from here on a run makes a second start
constexpr double originTolerance = 1e-6;  // of the part's size, as for --hold

std::vector<std::int32_t> fromOne(const std::vector<std::size_t>& triangles) {
  std::vector<std::int32_t> elements;
  for (const std::size_t e : triangles) elements.push_back(static_cast<std::int32_t>(e) + 1);
  return elements;
}

// Elements of the part as elements of the mesh.
std::vector<std::int32_t> inMesh(const Part& part, const std::vector<std::int32_t>& elements) {
  std::vector<std::int32_t> numbers;
  for (const std::int32_t e : elements) numbers.push_back(part.fileElement[static_cast<std::size_t>(e) - 1]);
  return numbers;
}

// "12 triangles (elements 3, 4, 9, ...)", by the file's own numbers.
std::string named(const Mesh& mesh, const std::vector<std::int32_t>& elements) {
  std::vector<std::size_t> triangles;
  for (const std::int32_t e : elements) triangles.push_back(static_cast<std::size_t>(e) - 1);
  return counted(static_cast<std::int64_t>(elements.size()), "triangle") + " (" +
         firstElements(mesh, triangles) + ")";
}

std::string percent(double share) {
  return shortDecimal(100.0 * share, 1) + " %";
}

// Runs a step of reading or checking; what it refuses becomes a finding. False: refused.
template <class Step>
bool attempt(PartCheck& check, Step step) {
  try {
    step();
    return true;
  } catch (const Failure& failure) {
    check.findings.push_back({Level::refusal, "refused", failure.what(), {}});
    return false;
  }
}

void findInMesh(PartCheck& check) {
  const MeshCensus& census = check.census;
  const auto add = [&](Level level, const char* kind, const std::vector<std::size_t>& triangles,
                       const std::string& words) {
    if (triangles.empty()) return;
    const std::vector<std::int32_t> elements = fromOne(triangles);
    check.findings.push_back({level, kind, named(check.mesh, elements) + " " + words, elements});
  };
  add(Level::refusal, "no_area", census.arealess, "without area");
  add(Level::refusal, "edge_of_three", census.crowded,
      "at " + counted(census.crowdedEdges, "edge") + " that more than two share");
  if (!check.part)
    add(Level::note, "opposed", census.opposed, "beside a neighbour that is turned the other way");
  if (census.pieces > 1) {
    std::vector<std::size_t> others;
    for (std::size_t e = 0; e < census.piece.size(); ++e)
      if (census.piece[e] != 1) others.push_back(e);
    add(Level::note, "other_piece", others,
        "outside the largest of " + std::to_string(census.pieces) + " pieces");
  }
}

// The proposals of the reading, one by one: their triangles go with them.
void proposeMends(const ReadOptions& reading, PartCheck& check) {
  ReadOptions seams = reading, needles = reading;
  seams.remesh = needles.weld = 1.0;  // what is chosen is not proposed
  for (const auto& [options, kind] : {std::pair{seams, "seam"}, std::pair{needles, "needle"}}) {
    proposeMending(options, check.mesh);
    for (const std::string& remark : check.mesh.remarks)
      check.findings.push_back(
          {Level::doubt, kind, remark,
           kind == std::string("needle") ? fromOne(check.census.needles) : std::vector<std::int32_t>{}});
    check.mesh.remarks.clear();
  }
}

void findInShape(const CheckOptions& options, PartCheck& check) {
  const Part& part = *check.part;
  if (part.turned > 0)
    check.findings.push_back(
        {Level::note,
         "turned",
         "turned " + counted(part.turned, "triangle") + " to the orientation of the others",
         {}});
  const std::vector<std::int32_t> folded = inMesh(part, foldedElements(part, foldAngle));
  if (!folded.empty())
    check.findings.push_back(
        {Level::note, "folded",
         named(check.mesh, folded) +
             " at edges folded by more than 150 degrees: a hem or curl, which the sure path "
             "opens; or a fault of the mesh",
         folded});
  const std::optional<Vector> wanted = drawDirection(options.draw);
  check.asked = wanted ? seenAlong(part, *wanted) : bestDrawDirection(part);
  check.alongZ = seenAlong(part, {0, 0, 1});
  if (check.asked.undercutShare() > undercutShare) {
    const std::vector<std::int32_t> undercut = inMesh(part, check.asked.undercut);
    check.findings.push_back(
        {Level::doubt, "undercut",
         percent(check.asked.undercutShare()) + " of the area undercut along " +
             (wanted ? "the direction given" : "the best direction") + ": " + named(check.mesh, undercut) +
             "; there may be several blanks, and solve makes a second start to compare with",
         undercut});
  }
  check.mirrors = mirrorEdges(part);
  std::string holds;
  for (const MirrorEdge& edge : check.mirrors) {
    const std::string plane = std::string(1, edge.axis) + " = ";
    const bool atOrigin = std::fabs(edge.place) <= originTolerance * part.size;
    if (atOrigin) holds += std::string(holds.empty() ? "" : ",") + edge.axis + "0";
    check.findings.push_back(
        {Level::note,
         "mirror_plane",
         "a curved edge of " + shortDecimal(edge.length, 2) + " " + part.unit + " lies in the plane " +
             plane + (atOrigin ? "0" : shortDecimal(edge.place, 4)) +
             " and the sheet meets it at right angles: if the part goes on mirrored there, " +
             (atOrigin ? "hold it with --hold " + std::string(1, edge.axis) + "0"
                       : "move it so that this plane is " + plane + "0 and hold it with --hold " +
                             std::string(1, edge.axis) + "0") +
             "; a cut profile looks the same",
         {}});
  }
  if (holds == "x0,y0")
    check.findings.push_back({Level::note, "mirror_planes", "of a quarter both: --hold x0,y0", {}});
}

void findInSize(PartCheck& check) {
  double size = 0.0;
  for (int axis = 0; axis < 3; ++axis)
    size = std::max(size, check.census.high[axis] - check.census.low[axis]);
  std::string warning;
  if (check.part) warning = sizeWarning(*check.part, check.unit);
  if (!warning.empty()) check.findings.push_back({Level::doubt, "size", warning, {}});
  const std::string guess = unitGuess(size, check.mesh.thickness, check.unit);
  const bool usual = warning.empty() && check.mesh.thickness == 0.0;
  if (!guess.empty()) check.findings.push_back({usual ? Level::note : Level::doubt, "unit", guess, {}});
}

// Whether the library takes the part for a sheet: its run is stopped at the first step.
void askLibrary(PartCheck& check) {
  const Part part = inMillimetres(*check.part, check.unit);
  const bool accepted = attempt(check, [&] {
    LibraryRun library(part, holdUnknowns(part, "auto"));
    library.run(RunSettings{}, {[](const ProgressRecord&) {}, [](std::string_view) {}, [] { return true; }});
  });
  if (!accepted) check.part.reset();
}

}  // namespace

Level PartCheck::worst() const {
  Level level = Level::note;
  for (const Finding& finding : findings) level = std::max(level, finding.level);
  return level;
}

std::optional<Vector> drawDirection(const std::string& text) {
  if (text == "auto") return std::nullopt;
  Vector direction{};
  std::size_t begin = 0, k = 0;
  bool good = true;
  for (; k < 3 && begin <= text.size(); ++k) {
    const std::size_t end = std::min(text.find(',', begin), text.size());
    good = good && readReal(std::string_view(text).substr(begin, end - begin), direction[k]) &&
           std::isfinite(direction[k]) && std::fabs(direction[k]) <= 1e100;
    begin = end + 1;
  }
  if (k != 3 || begin <= text.size() || !good || norm(direction) < 1e-100)
    throw Failure("--draw " + text + ": auto, or a direction as x,y,z");
  return direction;
}

PartCheck checkPart(const CheckOptions& options) {
  drawDirection(options.draw);  // refused before the part is read
  PartCheck check;
  check.unit = unitOf(options.reading.unit);
  const Tell tell = [&](const std::string& sentence) {
    check.findings.push_back({Level::note, "reading", sentence, {}});
  };
  check.mesh = readMeshFile(options.part, options.reading);
  for (const std::string& remark : check.mesh.remarks) tell(remark);
  check.mesh.remarks.clear();
  check.sound = isSound(check.mesh) && check.mesh.elements() > 0;
  if (!check.sound) {
    attempt(check, [&] { checkMesh(check.mesh, options.largest); });
    return check;
  }
  const bool prepared = attempt(check, [&] { prepareMesh(options.reading, check.mesh, tell); });
  check.census = censusOf(check.mesh);
  if (prepared && attempt(check, [&] { check.part = checkMesh(check.mesh, options.largest); }))
    askLibrary(check);
  proposeMends(options.reading, check);
  findInMesh(check);
  findInSize(check);
  if (check.part) {
    findInShape(options, check);
    check.cost = expectedCost(check.part->elements());
  }
  return check;
}

}  // namespace host
