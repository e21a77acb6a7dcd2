// The summary of a run; see the header.
#include "summary.hpp"

#include <nlohmann/json.hpp>

#include "text.hpp"

namespace host {

namespace {

using Json = nlohmann::ordered_json;

// element: number in the run from 1, 0 if there is none.
Json elementJson(const RunReport& report, std::int64_t element) {
  if (element == 0) return nullptr;
  const auto e = static_cast<std::size_t>(element) - 1;
  return {{"element_number_in_file", report.part.fileElement[e]},
          {"thickness_ratio_Ablank_by_Apart", report.results.thicknessRatio[e]},
          {"thickness_strain_ln_Ablank_by_Apart", report.results.thicknessStrain[e]}};
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
  return "element " + std::to_string(report.part.fileElement[e]) + ", t/t0 " +
         fixedDecimal(report.results.thicknessRatio[e], 4) + ", thickness strain " +
         fixedDecimal(report.results.thicknessStrain[e], 4);
}

std::string seconds(double value) {
  return fixedDecimal(value, 2) + " s";
}

}  // namespace

std::string summaryJson(const RunReport& report) {
  const Results& results = report.results;
  Json json;
  json["program"] = "tornwalzen " TORNWALZEN_VERSION;
  json["part"] = report.part.file;
  json["converged"] = report.verdict.converged;
  json["reason"] = report.verdict.converged ? Json(nullptr) : Json(report.verdict.reason);
  json["material"] = report.material;
  json["hold"] = report.holdRule;
  json["held_unknowns"] = report.hold.held;
  json["nodes"] = report.part.nodes();
  json["triangles"] = report.part.elements();
  json["triangles_in_file"] = report.part.fileElements;
  json["pieces_in_file"] = report.part.filePieces;
  json["triangles_turned"] = report.part.turned;
  json["matrix_entries"] = report.run.matrixEntries;
  json["part_area_mm2"] = results.partAreaTotal;
  json["blank_area_mm2"] = results.blankAreaTotal;
  json["blank_size_x_mm"] = results.blankSizeX;
  json["blank_size_y_mm"] = results.blankSizeY;
  json["thinnest"] = elementJson(report, results.thinnest);
  json["thickest"] = elementJson(report, results.thickest);
  json["triangles_folded_in_blank"] = results.folded;
  json["increments"] = report.counts.increments();
  json["repeated_increments"] = report.counts.repeats;
  json["newton_iterations"] = report.counts.newtonIterations;
  json["progress_reached"] =
      report.run.progress.phase() == RunPhase::increments ? report.run.progress.fraction() : 0.0;
  json["last_largest_gradient"] =
      report.counts.newtonIterations > 0 ? Json(report.counts.lastGradient) : Json(nullptr);
  json["wall_time"] = timesJson(report.run.times);
  // a file name need not be UTF-8: what is not becomes the replacement character
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string summaryTable(const RunReport& report) {
  const Results& results = report.results;
  const PhaseTimes& times = report.run.times;
  std::string table;
  const auto row = [&](const std::string& name, const std::string& value) {
    std::string cell = name;
    cell.resize(20, ' ');
    table += cell + value + "\n";
  };
  row("nodes", std::to_string(report.part.nodes()));
  row("triangles", std::to_string(report.part.elements()));
  row("blank size",
      fixedDecimal(results.blankSizeX, 2) + " x " + fixedDecimal(results.blankSizeY, 2) + " mm");
  row("blank area", fixedDecimal(results.blankAreaTotal, 1) + " mm2 (part " +
                        fixedDecimal(results.partAreaTotal, 1) + " mm2)");
  row("thinnest", elementText(report, results.thinnest));
  row("thickest", elementText(report, results.thickest));
  if (results.folded > 0) row("folded over", counted(results.folded, "triangle") + " of the blank");
  row("increments",
      std::to_string(report.counts.increments()) + " (" + counted(report.counts.repeats, "repeat") + ")");
  row("Newton iterations", std::to_string(report.counts.newtonIterations));
  row("time", "structure " + seconds(times.structure) + ", ordering " + seconds(times.ordering) +
                  ", symbolic " + seconds(times.symbolic) + ",");
  row("", "development " + seconds(times.development) + ", increments " + seconds(times.increments));
  row("results in", report.folder);
  row("converged", report.verdict.converged ? "yes" : "NO: " + report.verdict.reason);
  return table;
}

}  // namespace host
