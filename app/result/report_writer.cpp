// Writes report.html; see the header.
#include "result/report_writer.hpp"

#include <nlohmann/json.hpp>

#include "result/base64.hpp"
#include "result/report_pack.hpp"
#include "result/report_template.hpp"
#include "system/failure.hpp"

namespace host {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* levelName[] = {"good", "note", "caution", "bad"};
constexpr const char* colourName[] = {"plain", "green", "amber", "red", "blue", "violet"};

Json figuresJson(const std::vector<ReportFigure>& figures) {
  Json json = Json::array();
  for (const ReportFigure& figure : figures) json.push_back({{"name", figure.name}, {"value", figure.value}});
  return json;
}

Json trustJson(const ReportTrust& trust) {
  Json findings = Json::array();
  for (const ReportFinding& finding : trust.findings)
    findings.push_back({{"level", levelName[static_cast<int>(finding.level)]}, {"text", finding.text}});
  return {{"level", levelName[static_cast<int>(trust.level)]},
          {"headline", trust.headline},
          {"findings", findings},
          {"scope", trust.scope}};
}

Json fieldJson(const ReportField& field, const PackedField& packed) {
  Json classes = Json::array(), key = Json::array();
  for (const ReportClass& one : field.classes)
    classes.push_back({{"name", one.name}, {"colour", colourName[static_cast<int>(one.colour)]}});
  for (const KeyTerm& term : packed.key) key.push_back({term.factor, term.first, term.second});
  return {{"name", field.name}, {"unit", field.unit}, {"note", field.note},    {"aboutZero", field.aboutZero},
          {"classes", classes}, {"key", key},         {"power", packed.power}, {"none", packed.none}};
}

Json meshJson(const ReportData& report, const PackedMesh& mesh) {
  Json fields = Json::array();
  for (std::size_t f = 0; f < report.fields.size(); ++f)
    fields.push_back(fieldJson(report.fields[f], mesh.fields[f]));
  return {{"nodes", mesh.nodes},       {"triangles", mesh.triangles},     {"partOrigin", mesh.partOrigin},
          {"partStep", mesh.partStep}, {"blankOrigin", mesh.blankOrigin}, {"blankStep", mesh.blankStep},
          {"widths", mesh.widths},     {"fieldOrder", mesh.fieldOrder},   {"fields", fields}};
}

Json convergenceJson(const ReportConvergence& convergence) {
  Json increments = Json::array();
  for (const ReportIncrement& increment : convergence.increments)
    increments.push_back({{"number", increment.number},
                          {"progress", increment.progress},
                          {"repeated", increment.repeated},
                          {"gradient", increment.gradient},
                          {"factor", increment.factor},
                          {"chords", increment.chords}});
  return {{"increments", increments}, {"tolerance", convergence.tolerance}};
}

Json placesJson(const ReportData& report) {
  Json places = Json::array();
  for (const ReportPlace& place : report.places) {
    const auto e = static_cast<std::size_t>(place.triangle);
    places.push_back(
        {{"text", place.text}, {"number", report.number.empty() ? place.triangle + 1 : report.number.at(e)}});
  }
  return places;
}

// A text between the tags of an element such as title.
std::string escaped(const std::string& text) {
  std::string safe;
  for (const char c : text) {
    if (c == '&')
      safe += "&amp;";
    else if (c == '<')
      safe += "&lt;";
    else if (c == '>')
      safe += "&gt;";
    else
      safe += c;
  }
  return safe;
}

// The text as UTF-8, replacement characters for what is not.
std::string asUtf8(const std::string& text) {
  return Json::parse(Json(text).dump(-1, ' ', false, Json::error_handler_t::replace)).get<std::string>();
}

}  // namespace

std::string reportJson(const ReportData& report, const PackedMesh& mesh) {
  Json json;
  json["part"] = report.part;
  json["program"] = report.program;
  json["unit"] = report.unit;
  json["trust"] = trustJson(report.trust);
  json["figures"] = figuresJson(report.figures);
  json["settings"] = figuresJson(report.settings);
  json["notes"] = report.notes;
  json["places"] = placesJson(report);
  json["shownField"] = report.shownField;
  json["majorField"] = report.majorField;
  json["minorField"] = report.minorField;
  json["outline"] = {
      {"loops", report.outline.loops}, {"angle", report.outline.angle}, {"marks", report.outline.marks}};
  json["convergence"] = convergenceJson(report.convergence);
  json["limits"] = {
      {"curve", report.limits.curve}, {"margin", report.limits.margin}, {"source", report.limits.source}};
  json["strip"] = {{"width", report.strip.width},
                   {"pitch", report.strip.pitch},
                   {"placed", report.strip.placed},
                   {"figures", figuresJson(report.strip.figures)}};
  json["mesh"] = meshJson(report, mesh);
  const std::string text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
  std::string safe;
  safe.reserve(text.size());
  for (const char c : text)  // "</script" and "<!--" would end or open what the browser reads
    if (c == '<')
      safe += "\\u003c";
    else
      safe += c;
  return safe;
}

std::string reportPage(const ReportData& report, bool threads) {
  const PackedMesh mesh = packMesh(report, threads);
  const std::pair<std::string_view, std::string> fillings[] = {
      {"@@TITLE@@", escaped(asUtf8(report.part)) + " - tornwalzen"},
      {"@@DATA@@", reportJson(report, mesh)},
      {"@@MESH@@", base64(mesh.bytes)}};
  const std::string page = reportTemplate();
  std::string filled;
  std::size_t at = 0;
  for (const auto& [mark, filling] : fillings) {
    const std::size_t place = page.find(mark, at);
    if (place == std::string::npos) throw Failure("the page's template has lost " + std::string(mark));
    filled.append(page, at, place - at).append(filling);
    at = place + mark.size();
  }
  return filled.append(page, at);
}

}  // namespace host
