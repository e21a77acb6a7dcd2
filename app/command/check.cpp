// The command `tornwalzen check`; see the header.
#include "command/check.hpp"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "command/talk.hpp"
#include "result/finding_grid.hpp"
#include "result/result_files.hpp"
#include "system/failure.hpp"
#include "system/path.hpp"
#include "system/same_file.hpp"
#include "system/text.hpp"

namespace host {

namespace {

using Json = nlohmann::ordered_json;
namespace fs = std::filesystem;

constexpr std::size_t mostElementsInJson = 1000;  // of a finding; the grid has all

const char* wordOf(Level level) {
  return level == Level::note ? "note" : level == Level::doubt ? "doubt" : "refused";
}

const char* verdictOf(const PartCheck& check) {
  const char* const words[] = {"good", "doubtful", "refused"};
  return words[static_cast<int>(check.worst())];
}

std::string directionText(const Vector& d) {
  std::string text;
  for (const double x : d) text += (text.empty() ? "" : ", ") + shortDecimal(x, 4);
  return text;
}

std::string viewText(const DrawView& view) {
  return "undercut " + shortDecimal(100.0 * view.undercutShare(), 1) + " %, steep " +
         shortDecimal(100.0 * view.steepShare(), 1) + " % of the area";
}

std::string boxText(const PartCheck& check, double factor, const std::string& unit) {
  std::string text;
  for (int axis = 0; axis < 3; ++axis)
    text += (axis > 0 ? " x " : "") +
            shortDecimal(factor * (check.census.high[axis] - check.census.low[axis]), 3);
  return text + " " + unit;
}

std::string borderText(const PartCheck& check) {
  const std::vector<BorderLoop>& loops = check.census.loops;
  if (loops.empty()) return "none: the surface is closed";
  std::string text = "outline of " + shortDecimal(loops.front().length, 2) + " " + check.unit.name;
  if (loops.size() == 1) return text + ", no holes";
  text += ", " + counted(static_cast<std::int64_t>(loops.size()) - 1, "hole") + " of " +
          shortDecimal(loops.back().length, 2);
  if (loops.size() > 2) text += " to " + shortDecimal(loops[1].length, 2);
  return text + " " + check.unit.name + " around";
}

std::string costText(const ExpectedCost& cost) {
  const double seconds = cost.seconds;
  return "about " +
         (seconds < 10.0 ? shortDecimal(seconds, seconds < 1.0 ? 2 : 1) : fixedDecimal(seconds, 0)) +
         " s on one core and " + fixedDecimal(cost.megabytes, 0) +
         " MB (estimates; a part that is hard to open takes several times as long)";
}

Json viewJson(const DrawView& view, const std::string& unit) {
  return {{"direction", view.direction},
          {"undercut_area_" + unit + "2", view.undercutArea},
          {"undercut_share_of_area", view.undercutShare()},
          {"steep_area_" + unit + "2", view.steepArea},
          {"steep_share_of_area", view.steepShare()}};
}

Json findingJson(const Finding& finding) {
  const std::size_t shown = std::min(finding.elements.size(), mostElementsInJson);
  return {{"level", wordOf(finding.level)},
          {"kind", finding.kind},
          {"sentence", finding.sentence},
          {"triangles", finding.elements.size()},
          {"first_elements_in_file",
           std::vector<std::int32_t>(finding.elements.begin(),
                                     finding.elements.begin() + static_cast<std::ptrdiff_t>(shown))}};
}

void writeSelection(const PartCheck& check, const std::string& path) {
  if (!check.sound) throw Failure("cannot write " + path + ": the mesh has no place to show");
  FindingGrid grid{check.unit.name, check.mesh.points, {}, check.census.piece, check.mesh.ids.element, {}};
  grid.corners.assign(check.mesh.corners.begin(), check.mesh.corners.end());
  for (const Finding& finding : check.findings)
    if (!finding.elements.empty()) grid.marks.push_back({finding.kind, finding.elements});
  const fs::path place = pathOf(path);
  ResultFiles files(pathText(place.parent_path()));
  files.add(pathText(place.filename()), [&](FileWriter& file) { writeFindingGrid(file, grid); });
  files.putIntoPlace();
}

}  // namespace

std::string checkPage(const PartCheck& check) {
  std::string page;
  const auto row = [&](const std::string& name, const std::string& value) {
    std::string cell = name;
    cell.resize(20, ' ');
    page += cell + value + "\n";
  };
  row("part", check.mesh.file);
  row("nodes", std::to_string(check.mesh.nodes()));
  row("triangles", std::to_string(check.mesh.elements()));
  if (check.sound) {
    row("size", boxText(check, 1.0, check.unit.name) +
                    (check.unit.name == "mm" ? "" : " = " + boxText(check, check.unit.millimetres, "mm")));
    if (check.mesh.thickness > 0.0)
      row("thickness", shortDecimal(check.mesh.thickness * check.unit.millimetres, 4) + " mm (measured)");
    row("pieces", std::to_string(check.census.pieces));
    row("border", borderText(check));
    row("smallest corner", shortDecimal(check.census.smallestAngle, 2) + " degrees (element " +
                               std::to_string(check.census.sharpest + 1) + ")");
  }
  if (check.part) {
    row("draw direction", directionText(check.asked.direction) + ": " + viewText(check.asked));
    row("along z", viewText(check.alongZ));
    row("expected", costText(check.cost));
  }
  for (const Finding& finding : check.findings) row(wordOf(finding.level), finding.sentence);
  row("verdict", verdictOf(check));
  return page;
}

std::string checkJson(const PartCheck& check) {
  const std::string& unit = check.unit.name;
  Json json{{"program", "tornwalzen " TORNWALZEN_VERSION},
            {"part", check.mesh.file},
            {"verdict", verdictOf(check)},
            {"unit", unit},
            {"nodes", check.mesh.nodes()},
            {"triangles", check.mesh.elements()}};
  if (check.sound) {
    std::vector<double> size;
    for (int axis = 0; axis < 3; ++axis) size.push_back(check.census.high[axis] - check.census.low[axis]);
    json["size_" + unit] = size;
    json["measured_thickness_" + unit] =
        check.mesh.thickness > 0.0 ? Json(check.mesh.thickness) : Json(nullptr);
    json["pieces"] = check.census.pieces;
    Json loops = Json::array();
    for (const BorderLoop& loop : check.census.loops)
      loops.push_back(
          {{"length_" + unit, loop.length}, {"edges", loop.edges}, {"first_node", loop.firstNode}});
    json["border_loops"] = loops;
    json["smallest_corner_deg"] = check.census.smallestAngle;
    json["smallest_corner_element_in_file"] = check.census.sharpest + 1;
  }
  if (check.part) {
    json["draw"] = viewJson(check.asked, unit);
    json["along_z"] = viewJson(check.alongZ, unit);
    Json mirrors = Json::array();
    for (const MirrorEdge& edge : check.mirrors)
      mirrors.push_back({{"plane", std::string(1, edge.axis)},
                         {"place_" + unit, edge.place},
                         {"length_" + unit, edge.length},
                         {"off_right_angle_deg", edge.farthestFromRight}});
    json["proposed_symmetry"] = mirrors;
    json["expected"] = {{"seconds_on_one_core", check.cost.seconds}, {"megabytes", check.cost.megabytes}};
  }
  Json findings = Json::array();
  for (const Finding& finding : check.findings) findings.push_back(findingJson(finding));
  json["findings"] = findings;
  // a file name need not be UTF-8: what is not becomes the replacement character
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

int check(const CheckOptions& options) {
  checkOutputsSpareInputs({options.part}, {options.out}, "choose another name with --out");
  const PartCheck found = checkPart(options);
  if (!options.out.empty()) writeSelection(found, options.out);
  Talk{options.quiet, options.json}.result(checkPage(found), checkJson(found));
  return found.worst() == Level::refusal ? exitUnconverged : exitConverged;
}

}  // namespace host
