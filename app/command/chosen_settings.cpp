// From the texts of the options to the library's settings; see the header.
#include "command/chosen_settings.hpp"

#include "command/flow_curve.hpp"
#include "command/material_library.hpp"
#include "command/press_choice.hpp"
#include "run/run_settings.hpp"
#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {

constexpr int geometricMaterial = 10;
constexpr int namedMaterial = 1;  // the built-in curve whose place that of a named material takes
constexpr const char* defaultTolerance = "0.001,1";

void readTolerance(const std::string& text, RunSettings& settings) {
  const std::size_t comma = text.find(',');
  settings.pathFactor = 1.0;
  if (!readReal(text.substr(0, comma), settings.finalFactor) ||
      (comma != std::string::npos && !readReal(text.substr(comma + 1), settings.pathFactor)))
    throw Failure("--tolerance wants FINAL or FINAL,PATH, not \"" + shown(text) + "\"");
}

int builtIn(const std::string& material) {
  for (const int number : {0, 1, 2, geometricMaterial})
    if (material == std::to_string(number)) return number;
  return -1;
}

// Swift's law where e0 is known, Hollomon's where it is not.
FlowCurve curveOf(const Material& material) {
  const std::string K = decimal(material.K->value), n = decimal(material.n->value);
  const std::string e0 = material.e0 ? decimal(material.e0->value) : "";
  FlowCurve curve =
      hardeningLaw(material.e0 ? "swift:K=" + K + ",e0=" + e0 + ",n=" + n : "hollomon:K=" + K + ",n=" + n);
  curve.source = "--material " + material.name + (material.e0 ? ", Swift K " : ", Hollomon K ") + K + " MPa" +
                 (material.e0 ? ", e0 " + e0 : "") + ", n " + n;
  return curve;
}

// What the press model reads and the user left out, where the material has it with a source.
void takeSourced(const Material& material, const PressOptionTexts& given, PressSettings& press) {
  if (!press.chosen) return;
  if (given.young.empty() && material.E && !material.E->minimum) press.press.young_mpa = material.E->value;
  if (given.planarR.empty() && material.hasMeanR()) {
    press.press.r0 = material.r0->value;
    press.press.r45 = material.r45->value;
    press.press.r90 = material.r90->value;
  }
}

bool hasOwnCurve(const SolveOptions& options) {
  return !options.curve.empty() || !options.law.empty();
}

}  // namespace

Material chosenMaterial(const SolveOptions& options) {
  if (builtIn(options.material) >= 0) {
    if (!options.materials.empty())
      readMaterials(options.materials);  // refused even if nothing of it is used
    return {};
  }
  return materialNamed(readMaterials(options.materials), options.material);
}

std::vector<std::string> materialRemarks(const SolveOptions& options, const Material& material) {
  std::vector<std::string> remarks;
  if (material.name.empty()) return remarks;
  if (!material.hasCurve() && !hasOwnCurve(options))
    remarks.push_back(material.name +
                      " has no flow curve with a source: built-in curve 1 stands in; --curve, --law or a "
                      "material that has one give another");
  if (!material.hasMeanR() && !options.rGiven && options.press.planarR.empty())
    remarks.push_back(material.name + " has no " +
                      (material.r90 && material.r90->minimum
                           ? "r values but a minimum of r90, " + decimal(material.r90->value)
                           : std::string("three r values")) +
                      ": the run is made with r = 1; --r gives another");
  return remarks;
}

RunSettings settingsOf(const SolveOptions& options, const Material& material,
                       std::optional<double> measured) {
  RunSettings settings;
  settings.material = material.name.empty() ? builtIn(options.material) : namedMaterial;
  settings.r = options.rGiven || !material.hasMeanR() ? options.r : material.meanR();
  if (material.hasCurve() && !hasOwnCurve(options)) settings.curve = curveOf(material);
  settings.partReference = options.energy == "part";
  settings.surePath = options.path == "sure";
  settings.threads = options.threads;
  settings.mayRepeat = options.tolerance.empty();
  readTolerance(settings.mayRepeat ? defaultTolerance : options.tolerance, settings);
  if (settings.material == geometricMaterial && (hasOwnCurve(options) || options.r != 1.0))
    throw Failure(
        "--curve, --law and --r describe a material, which --material 10 does not read; use 0, 1 or 2");
  if (!options.curve.empty()) settings.curve = readFlowCurve(options.curve);
  if (!options.law.empty()) settings.curve = hardeningLaw(options.law);
  takeThickness(options, material, measured, settings);
  return settings;
}

void takeThickness(const SolveOptions& options, const Material& material, std::optional<double> measured,
                   RunSettings& settings) {
  settings.press = pressSettings(options.press, !settings.curve.strain.empty(), settings.surePath, measured);
  takeSourced(material, options.press, settings.press);
  if (settings.press.chosen && options.path == "fixed")
    throw Failure("--model press goes the sure path; leave --path fixed out");
  checkSettings(settings);  // refused before anything is computed
}

}  // namespace host
