// What a run puts on its page; see the header.
#include "result/report_content.hpp"

#include <algorithm>
#include <cmath>

#include "result/report_shop.hpp"
#include "result/report_trust.hpp"
#include "result/run_words.hpp"
#include "system/text.hpp"

namespace host {

namespace {

void addMesh(const RunReport& report, ReportData& data) {
  data.part = report.part.file;
  data.program = "tornwalzen " TORNWALZEN_VERSION;
  data.unit = report.unit.name;
  data.partPoints = report.part.points;
  const std::vector<double>& blank = report.results.blankPoints;
  data.blankPoints.reserve(blank.size() / 3 * 2);
  for (std::size_t k = 0; k + 2 < blank.size(); k += 3)
    data.blankPoints.insert(data.blankPoints.end(), {blank[k], blank[k + 1]});
  data.corners.reserve(report.run.corners.size());
  for (const std::int32_t node : report.run.corners) data.corners.push_back(node - 1);
  data.number = report.part.fileElement;
}

ReportField fieldOf(const std::string& name, const std::string& unit, const std::string& note,
                    std::vector<double> values) {
  ReportField field;
  field.name = name;
  field.unit = unit;
  field.note = note;
  field.values = std::move(values);
  return field;
}

template <class Value>
std::vector<double> perTriangle(std::size_t triangles, Value value) {
  std::vector<double> values(triangles);
  for (std::size_t e = 0; e < triangles; ++e) values[e] = value(e);
  return values;
}

// Thinning follows from the two strains, which keep the volume; the equivalent strain, with the anisotropy r, is
// (1+r)^2/(1+2r) (e1^2 + e2^2 + 2r/(1+r) e1 e2) under a root; the flow stress is a function of it.
void addStrainFields(const RunReport& report, ReportData& data) {
  const std::size_t triangles = report.run.strains.size();
  const auto strain = [&](double TornwalzenElementStrain::*what) {
    return perTriangle(triangles, [&](std::size_t e) { return report.run.strains[e].*what; });
  };
  const double r = report.settings.r;
  data.fields = {
      fieldOf("thinning", "%", "1 \u2212 t/t0; above zero the sheet is thinner",
              perTriangle(triangles,
                          [&](std::size_t e) { return 100.0 * (1.0 - report.results.thicknessRatio[e]); })),
      fieldOf("major strain", "", "logarithmic, in the sheet's plane",
              strain(&TornwalzenElementStrain::major)),
      fieldOf("minor strain", "", "logarithmic, in the sheet's plane",
              strain(&TornwalzenElementStrain::minor)),
      fieldOf("equivalent strain", "", "with the anisotropy r of the run",
              strain(&TornwalzenElementStrain::equivalent)),
      fieldOf("flow stress", "MPa", "of the curve at the equivalent strain",
              strain(&TornwalzenElementStrain::flow_stress))};
  constexpr int major = 1, minor = 2, equivalent = 3;
  data.fields[0].key = {{1.0, major}, {1.0, minor}};
  data.fields[3].key = {
      {1024.0, major, major}, {1024.0, minor, minor}, {std::round(2048.0 * r / (1.0 + r)), major, minor}};
  data.fields[4].key = {{1.0, equivalent}};
  for (const int k : {0, major, minor}) data.fields[static_cast<std::size_t>(k)].aboutZero = true;
  data.majorField = major;
  data.minorField = minor;
}

void addFieldsWithoutBlank(const RunReport& report, ReportData& data) {
  const Results& results = report.results;
  data.fields = {
      fieldOf(
          "area in the plane", "%",
          "of the triangle in the development that failed, by its area on the part; not above zero: inverted",
          perTriangle(results.partArea.size(),
                      [&](std::size_t e) { return 100.0 * results.blankArea[e] / results.partArea[e]; })),
      fieldOf("smallest angle", "degrees", "of the part's triangle", results.smallestAngle)};
}

// The element number of the largest equivalent strain, 0 if there is none.
std::int64_t mostStrained(const RunReport& report) {
  std::int64_t most = 0;
  for (std::size_t e = 0; e < report.run.strains.size(); ++e) {
    const double strain = report.run.strains[e].equivalent;
    if (std::isfinite(strain) &&
        (most == 0 || strain > report.run.strains[static_cast<std::size_t>(most) - 1].equivalent))
      most = static_cast<std::int64_t>(e) + 1;
  }
  return most;
}

// Where to look: a class per triangle, and buttons that lead there.
void addPlaces(const RunReport& report, ReportData& data) {
  constexpr int nothing = 0, needle = 1, beyondOne = 2, folded = 3, thickest = 4, strained = 5, thinnest = 6;
  const Results& results = report.results;
  ReportField places =
      fieldOf("places", "", "where to look first", std::vector<double>(results.partArea.size(), nothing));
  places.classes = {{"nothing to note", ClassColour::plain},
                    {"corner below 5 degrees", ClassColour::violet},
                    {"equivalent strain above 1", ClassColour::amber},
                    {"turned over in the blank", ClassColour::red},
                    {"thickest", ClassColour::blue},
                    {"largest strain", ClassColour::amber},
                    {"thinnest", ClassColour::red}};
  const auto mark = [&](std::int64_t element, int which, const std::string& text) {
    if (element == 0) return;
    places.values[static_cast<std::size_t>(element) - 1] = which;
    data.places.push_back({text, element - 1});
  };
  std::int64_t firstFold = 0;
  for (std::size_t e = 0; e < results.partArea.size(); ++e) {
    if (results.smallestAngle[e] < sharpCorner) places.values[e] = needle;
    if (results.developed && report.run.strains[e].equivalent > 1.0) places.values[e] = beyondOne;
    if (results.blankArea[e] > 0.0) continue;
    places.values[e] = folded;
    if (firstFold == 0) firstFold = static_cast<std::int64_t>(e) + 1;
  }
  if (results.developed) {
    mark(results.thinnest, thinnest, "thinnest");
    mark(results.thickest, thickest, "thickest");
    mark(mostStrained(report), strained, "largest strain");
  }
  mark(firstFold, folded, "turned over");
  if (std::any_of(places.values.begin(), places.values.end(), [](double value) { return value > nothing; }))
    data.fields.push_back(places);
}

// The border of the blank, which the drawings follow too.
void addOutline(const RunReport& report, ReportData& data) {
  const double millimetres = report.unit.millimetres;
  for (const OutlineLoop& loop : report.shop.shape.outline.loops) {
    auto& points = data.outline.loops.emplace_back();
    for (const PlanePoint& point : loop.points)
      points.push_back({point[0] / millimetres, point[1] / millimetres});
  }
  data.outline.angle = report.results.blankRectangle.angle;
  const TornwalzenReport& run = report.run.report;
  if (run.crossings > 0)
    data.outline.marks.push_back(
        {run.crossing_u / report.unit.millimetres, run.crossing_v / report.unit.millimetres});
}

std::string elementText(const RunReport& report, std::int64_t element) {
  if (element == 0) return "none";
  const auto e = static_cast<std::size_t>(element) - 1;
  return fixedDecimal(report.results.thicknessRatio[e], 4) + " at triangle " +
         std::to_string(report.part.fileElement[e]);
}

void addFigures(const RunReport& report, ReportData& data) {
  const Results& results = report.results;
  const std::string& unit = report.unit.name;
  const int digits = report.unit.millimetres < 2.0 ? 2 : 4;  // of lengths
  const auto add = [&](const std::string& name, const std::string& value) {
    data.figures.push_back({name, value});
  };
  if (results.developed) {
    const Rectangle& rectangle = results.blankRectangle;
    add("fits into", fixedDecimal(rectangle.length, digits) + " \u00d7 " +
                         fixedDecimal(rectangle.width, digits) + "\u00a0" + unit);
    add("blank area", fixedDecimal(results.blankAreaTotal, digits - 1) + " " + unit + "\u00b2");
  }
  add("part area", fixedDecimal(results.partAreaTotal, digits - 1) + " " + unit + "\u00b2");
  if (!results.developed) return;
  add("thinnest t/t0", elementText(report, results.thinnest));
  add("thickest t/t0", elementText(report, results.thickest));
  add("largest strain", fixedDecimal(report.run.report.largest_strain, 4) + " (equivalent)");
}

void addSettings(const RunReport& report, ReportData& data) {
  const RunSettings& settings = report.settings;
  const TornwalzenReport& run = report.run.report;
  const PhaseTimes& times = report.run.times;
  const auto add = [&](const std::string& name, const std::string& value) {
    data.settings.push_back({name, value});
  };
  add("part", report.part.file);
  add("material", materialText(report));
  if (settings.press.chosen) add("press", pressText(report));
  add("normal anisotropy r", decimal(settings.r));
  add("energy weighed with", settings.partReference ? "the part" : "the blank");
  add("path", settings.surePath
                  ? std::string("sure") + (settings.patchStart ? ", from the largest flat patch" : "")
                  : std::string("fixed, by increments"));
  add("tolerance factors",
      decimal(settings.finalFactor) + (settings.surePath ? "" : ", " + decimal(settings.pathFactor)));
  add("held", report.holdRule + ", " + counted(report.hold.held, "unknown"));
  if (!settings.surePath)
    add("increments", std::to_string(run.increments) + ", " + counted(run.repeats, "repeat"));
  add("Newton iterations",
      std::to_string(run.newton_iterations) +
          (report.runs > 1 ? ", in one of " + std::to_string(report.runs) + " runs" : ""));
  add("factorizations", std::to_string(run.factorizations));
  add("time",
      fixedDecimal(times.structure + times.ordering + times.symbolic + times.development + times.increments,
                   2) +
          " s");
  data.notes = {counted(report.part.elements(), "triangle"), counted(report.part.nodes(), "node"),
                "lengths in " + report.unit.name};
  if (report.part.filePieces > 1)
    data.notes.push_back("the largest of " + counted(report.part.filePieces, "piece"));
}

}  // namespace

ReportData reportDataOf(const RunReport& report, const ConvergenceHistory& history) {
  ReportData data;
  addMesh(report, data);
  if (report.results.developed)
    addStrainFields(report, data);
  else
    addFieldsWithoutBlank(report, data);
  addPlaces(report, data);
  if (report.results.developed) addOutline(report, data);
  addFigures(report, data);
  addShopToPage(report, data);
  addSettings(report, data);
  data.trust = trustOf(report);
  data.convergence = {history.increments(), report.run.report.gradient_limit};
  // a field that no triangle has a value of, such as the flow stress of a material without one
  for (std::size_t f = data.fields.size(); f-- > 0;) {
    const std::vector<double>& values = data.fields[f].values;
    const bool last = f + 1 == data.fields.size() || static_cast<int>(f) > data.minorField;
    if (last && std::none_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); }))
      data.fields.erase(data.fields.begin() + static_cast<std::ptrdiff_t>(f));
  }
  return data;
}

}  // namespace host
