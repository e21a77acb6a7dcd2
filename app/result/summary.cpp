// The summary of a run; see the header.
#include "result/summary.hpp"

#include <nlohmann/json.hpp>

#include "result/run_words.hpp"
#include "result/shop_summary.hpp"
#include "system/text.hpp"

namespace host {

namespace {

using Json = nlohmann::ordered_json;

// element: number in the run from 1, 0 if there is none.
Json elementJson(const RunReport& report, std::int64_t element) {
  if (element == 0) return nullptr;
  const auto e = static_cast<std::size_t>(element) - 1;
  Json json{{"element_number_in_file", report.part.fileElement[e]},
            {"thickness_ratio_Ablank_by_Apart", report.results.thicknessRatio[e]},
            {"thickness_strain_ln_Ablank_by_Apart", report.results.thicknessStrain[e]}};
  if (!report.part.ids.element.empty()) json["element_id"] = report.part.ids.element[e];
  return json;
}

Json timesJson(const PhaseTimes& times) {
  return {{"structure_s", times.structure},
          {"ordering_s", times.ordering},
          {"symbolic_s", times.symbolic},
          {"development_s", times.development},
          {"increments_s", times.increments}};
}

std::string elementText(const RunReport& report, std::int64_t element) {
  if (element == 0) return "none; all are folded over";
  const auto e = static_cast<std::size_t>(element) - 1;
  const std::vector<std::int64_t>& ids = report.part.ids.element;
  return "element " + std::to_string(ids.empty() ? report.part.fileElement[e] : ids[e]) + ", t/t0 " +
         fixedDecimal(report.results.thicknessRatio[e], 4) + ", thickness strain " +
         fixedDecimal(report.results.thicknessStrain[e], 4);
}

std::string settingsText(const RunReport& report) {
  const RunSettings& settings = report.settings;
  return "material " + materialText(report) + ", r " + decimal(settings.r) + ", energy " +
         (settings.partReference ? "part" : "blank") + ", tolerance " + decimal(settings.finalFactor) +
         (settings.surePath ? "" : "," + decimal(settings.pathFactor)) + ", path " +
         (settings.surePath ? "sure" : "fixed");
}

// What to compare a doubtful run with: the next tolerance on the way that was not tried yet, if there is one.
std::string tighterRun(const RunSettings& settings) {
  for (const double factor : {0.1, 0.01})
    if (factor < settings.pathFactor)
      return "--tolerance " + decimal(settings.finalFactor) + "," + decimal(factor);
  return "a finer or more even mesh";
}

// A run may find its way back after increments that were taken as they were; but then it may also have ended
// in another equilibrium, far from the blank.
std::string convergedText(const RunReport& report) {
  if (!report.verdict.converged) return "NO: " + report.verdict.reason;
  const std::int32_t unconverged = report.run.report.accepted_unconverged;
  if (unconverged == 0) return "yes";
  return "yes, but " + counted(unconverged, "increment") +
         " on the way did not; check the largest strain, and compare with " + tighterRun(report.settings);
}

const char* worthWord(Worth worth) {
  return worth == Worth::good ? "good" : worth == Worth::doubtful ? "doubtful" : "not a blank";
}

// The last line: whether one can stand behind the blank, and if not, why and where.
std::string verdictText(const RunReport& report) {
  std::string text = worthWord(report.verdict.worth);
  for (std::size_t k = 0; k < report.verdict.why.size(); ++k)
    text += (k == 0 ? ": " : "; ") + report.verdict.why[k];
  return text;
}

// Largest strain, and where there is any, the shares of the area beyond the curve's data and beyond 1.
std::string strainText(const RunReport& report) {
  const TornwalzenReport& run = report.run.report;
  std::string text = fixedDecimal(run.largest_strain, 4) + " (equivalent";
  const auto share = [&](double part, const std::string& beyond) {
    if (part > 0.0) text += ", " + fixedDecimal(100.0 * part, 1) + " % of the area " + beyond;
  };
  if (run.checked == 1) {
    share(run.share_beyond_curve, "beyond the data of the flow curve");
    share(run.share_beyond_one, "beyond 1");
  }
  return text + ")";
}

std::string secondStartText(const SecondStart& second) {
  if (!second.converged) return "did not converge";
  return second.agrees  ? "ends in the same blank"
         : second.taken ? "ends in a better blank, which is taken"
                        : "ends in another blank, of higher potential";
}

Json secondStartJson(const SecondStart& second) {
  if (!second.made) return nullptr;
  return {{"converged", second.converged},
          {"agrees", second.agrees},
          {"taken", second.taken},
          {"potential_taken_mm2", second.energy},
          {"potential_of_the_other_mm2", second.otherEnergy}};
}

// The figures that the verdict stands on; element numbers are those of the file.
Json checksJson(const RunReport& report) {
  const TornwalzenReport& r = report.run.report;
  if (r.checked == 0) return nullptr;
  const auto element = [&](std::int32_t e) {
    return e > 0 ? Json(report.part.fileElement[static_cast<std::size_t>(e) - 1]) : Json(nullptr);
  };
  Json json{{"inverted_triangles", r.blank_inverted},
            {"first_inverted_in_file", element(r.first_inverted)},
            {"smallest_stretch", r.smallest_stretch},
            {"smallest_stretch_element_in_file", element(r.smallest_stretch_triangle)},
            {"minimum_certified", r.minimum_certified == 1},
            {"nodes_not_closed_once", r.open_nodes},
            {"outline_crossings", r.crossings},
            {"outline_loops_misplaced", r.misplaced_loops},
            {"overlapped_area_mm2", r.overlapped_area},
            {"share_of_area_beyond_flow_curve", r.share_beyond_curve},
            {"share_of_area_beyond_strain_1", r.share_beyond_one},
            {"undercut_area_mm2", r.undercut_area},
            {"undercut_share_of_area", r.undercut_share},
            {"potential_mm2", r.energy}};
  if (r.crossings > 0) json["first_crossing_uv_mm"] = {r.crossing_u, r.crossing_v};
  return json;
}

std::string rectangleText(const Rectangle& rectangle, int digits, const std::string& unit) {
  return fixedDecimal(rectangle.length, digits) + " x " + fixedDecimal(rectangle.width, digits) + " " + unit +
         " (smallest rectangle, its length at " + fixedDecimal(rectangle.angle, 1) + " degrees to x)";
}

std::string seconds(double value) {
  return fixedDecimal(value, 2) + " s";
}

}  // namespace

std::string inSummary(const std::string& text) {
  return Json::parse(Json(text).dump(-1, ' ', false, Json::error_handler_t::replace)).get<std::string>();
}

namespace {

// What acted, and what it tells of the press; pressures and force are estimates.
Json pressJson(const RunReport& report) {
  if (!report.settings.press.chosen) return nullptr;
  const TornwalzenPress& given = report.settings.press.press;
  const TornwalzenPressResult& r = report.run.press;
  const char* const bending[] = {"off", "released", "kept"};
  return {{"thickness_mm", given.thickness_mm},
          {"exponent", r.exponent},
          {"bending", bending[r.bending]},
          {"free_edges", r.edge == 1},
          {"contact_friction", r.contact == 1},
          {"binder", r.binder == 1},
          {"beads", r.beads == 1},
          {"thinnest_mm", r.thinnest_mm},
          {"thickest_mm", r.thickest_mm},
          {"contact_pressure_punch_MPa", r.punch_pressure_mpa},
          {"contact_pressure_die_MPa", r.die_pressure_mpa},
          {"flange_triangles", r.flange_elements},
          {"binder_pressure_largest_MPa", r.binder_pressure_mpa},
          {"binder_area_mm2", r.binder_area_mm2},
          {"work_of_deformation_J", 1e-3 * r.work_nmm},
          {"work_of_friction_J", 1e-3 * r.friction_work_nmm},
          {"depth_mm", r.depth_mm},
          {"punch_force_mean_N", r.punch_force_n}};
}

}  // namespace

std::string summaryJson(const RunReport& report) {
  const Results& results = report.results;
  const TornwalzenReport& run = report.run.report;
  Json json;
  json["program"] = "tornwalzen " TORNWALZEN_VERSION;
  json["part"] = report.part.file;
  json[partPathKey] = report.part.identity.path.empty() ? Json(nullptr) : Json(report.part.identity.path);
  json[partHashKey] = report.part.identity.hash;
  json["converged"] = report.verdict.converged;
  json["reason"] = report.verdict.converged ? Json(nullptr) : Json(report.verdict.reason);
  json["verdict"] = worthWord(report.verdict.worth);
  json["verdict_reasons"] = report.verdict.why;
  json["checks"] = checksJson(report);
  json["second_start"] = secondStartJson(report.second);
  json["path"] = report.settings.surePath ? "sure" : "fixed";
  json["model"] = report.settings.press.chosen ? "press" : "fixed";
  json["press"] = pressJson(report);
  json["material"] = report.settings.material;
  json["flow_curve"] =
      report.settings.curve.source.empty() ? Json("built in") : Json(report.settings.curve.source);
  json["normal_anisotropy"] = report.settings.r;
  json["energy_reference"] = report.settings.partReference ? "part" : "blank";
  json["tolerance_factors"] = {report.settings.finalFactor, report.settings.pathFactor};
  json["unit"] = report.unit.name;
  json["hold"] = report.holdRule;
  json["held_unknowns"] = report.hold.held;
  json["nodes"] = report.part.nodes();
  json["triangles"] = report.part.elements();
  json["triangles_in_file"] = report.part.fileElements;
  json["pieces_in_file"] = report.part.filePieces;
  json["triangles_turned"] = report.part.turned;
  json["matrix_entries"] = report.run.matrixEntries;
  const std::string& unit = report.unit.name;
  json["measured_thickness_" + unit] =
      report.part.thickness > 0.0 ? Json(report.part.thickness) : Json(nullptr);
  json["part_area_" + unit + "2"] = results.partAreaTotal;
  const auto known = [&](const Json& value) { return results.developed ? value : Json(nullptr); };
  json["blank_area_" + unit + "2"] = known(results.blankAreaTotal);
  json["blank_rectangle_length_" + unit] = known(results.blankRectangle.length);
  json["blank_rectangle_width_" + unit] = known(results.blankRectangle.width);
  json["blank_rectangle_angle_deg"] = known(results.blankRectangle.angle);
  json["blank_size_x_" + unit] = known(results.blankSizeX);
  json["blank_size_y_" + unit] = known(results.blankSizeY);
  addShopJson(json, report);
  json["thinnest"] = elementJson(report, results.thinnest);
  json["thickest"] = elementJson(report, results.thickest);
  json["triangles_folded_in_blank"] = known(results.folded);
  json["largest_equivalent_strain"] = known(run.largest_strain);
  json["largest_strain_beyond_flow_curve"] = known(run.beyond_curve == 1);
  json["runs"] = report.runs;
  json["increments"] = run.increments;
  json["repeated_increments"] = run.repeats;
  json["increments_accepted_unconverged"] = run.accepted_unconverged;
  json["newton_iterations"] = run.newton_iterations;
  json["factorizations"] = run.factorizations;
  json["progress_reached"] = run.progress;
  const bool measured = run.newton_iterations > 0 || run.path == 1;
  json["last_largest_gradient_mm"] = measured ? Json(run.last_gradient) : Json(nullptr);
  json["gradient_tolerance_mm"] = measured ? Json(run.gradient_limit) : Json(nullptr);
  json["negative_pivots"] = run.negative_pivots >= 0 ? Json(run.negative_pivots) : Json(nullptr);
  json["factor_entries"] = run.factor_entries;
  json["wall_time"] = timesJson(report.run.times);
  // a file name need not be UTF-8: what is not becomes the replacement character
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string summaryTable(const RunReport& report) {
  const Results& results = report.results;
  const PhaseTimes& times = report.run.times;
  const TornwalzenReport& run = report.run.report;
  const std::string& unit = report.unit.name;
  const int digits = report.unit.millimetres < 2.0 ? 2 : 4;  // of lengths
  std::string table;
  const auto row = [&](const std::string& name, const std::string& value) {
    std::string cell = name;
    cell.resize(20, ' ');
    table += cell + value + "\n";
  };
  row("nodes", std::to_string(report.part.nodes()));
  row("triangles", std::to_string(report.part.elements()));
  const std::string partArea = fixedDecimal(results.partAreaTotal, digits - 1) + " " + unit + "2";
  if (results.developed) {
    row("blank size", rectangleText(results.blankRectangle, digits, unit));
    row("blank area",
        fixedDecimal(results.blankAreaTotal, digits - 1) + " " + unit + "2 (part " + partArea + ")");
    addShopRows(report, row);
    row("thinnest", elementText(report, results.thinnest));
    row("thickest", elementText(report, results.thickest));
    if (results.folded > 0) row("folded over", counted(results.folded, "triangle") + " of the blank");
    row("largest strain", strainText(report));
  } else {
    row("blank", "none");
    row("part area", partArea);
  }
  if (report.settings.press.chosen) {
    const TornwalzenPressResult& press = report.run.press;
    row("press", pressText(report));
    row("thickness",
        fixedDecimal(press.thinnest_mm, 3) + " to " + fixedDecimal(press.thickest_mm, 3) + " mm");
    if (press.contact == 1)
      row("contact pressure", "punch " + fixedDecimal(press.punch_pressure_mpa, 1) + ", die " +
                                  fixedDecimal(press.die_pressure_mpa, 1) + " MPa at most (estimate)");
    if (press.binder == 1)
      row("binder pressure", fixedDecimal(press.binder_pressure_mpa, 1) + " MPa at most, " +
                                 fixedDecimal(press.binder_area_mm2, 0) + " mm2 bear");
    row("punch force", fixedDecimal(1e-3 * press.punch_force_n, 2) + " kN (mean over the depth, estimate)");
  }
  row("settings", settingsText(report));
  if (report.settings.surePath)
    row("factorizations", std::to_string(run.factorizations));
  else
    row("increments", std::to_string(run.increments) + " (" + counted(run.repeats, "repeat") + ")");
  row("Newton iterations",
      std::to_string(run.newton_iterations) +
          (report.runs > 1 ? " (in the last of " + std::to_string(report.runs) + " runs)" : ""));
  row("time", "structure " + seconds(times.structure) + ", ordering " + seconds(times.ordering) +
                  ", symbolic " + seconds(times.symbolic) + ",");
  row("", std::string(report.settings.surePath ? "start " : "development ") + seconds(times.development) +
              (report.settings.surePath ? ", Newton " : ", increments ") + seconds(times.increments));
  if (report.second.made) row("second start", secondStartText(report.second));
  row("results in", report.folder);
  row("converged", convergedText(report));
  row("verdict", verdictText(report));
  return table;
}

}  // namespace host
