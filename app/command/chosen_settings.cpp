// From the texts of the options to the library's settings; see the header.
#include "command/chosen_settings.hpp"

#include "command/flow_curve.hpp"
#include "command/press_choice.hpp"
#include "run/run_settings.hpp"
#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {

constexpr int geometricMaterial = 10;
constexpr const char* defaultTolerance = "0.001,1";

void readTolerance(const std::string& text, RunSettings& settings) {
  const std::size_t comma = text.find(',');
  settings.pathFactor = 1.0;
  if (!readReal(text.substr(0, comma), settings.finalFactor) ||
      (comma != std::string::npos && !readReal(text.substr(comma + 1), settings.pathFactor)))
    throw Failure("--tolerance wants FINAL or FINAL,PATH, not \"" + shown(text) + "\"");
}

}  // namespace

RunSettings settingsOf(const SolveOptions& options) {
  RunSettings settings;
  settings.material = options.material;
  settings.r = options.r;
  settings.partReference = options.energy == "part";
  settings.surePath = options.path == "sure";
  settings.mayRepeat = options.tolerance.empty();
  readTolerance(settings.mayRepeat ? defaultTolerance : options.tolerance, settings);
  const bool ownCurve = !options.curve.empty() || !options.law.empty();
  if (options.material == geometricMaterial && (ownCurve || options.r != 1.0))
    throw Failure(
        "--curve, --law and --r describe a material, which --material 10 does not read; use 0, 1 or 2");
  if (!options.curve.empty()) settings.curve = readFlowCurve(options.curve);
  if (!options.law.empty()) settings.curve = hardeningLaw(options.law);
  settings.press = pressSettings(options.press, ownCurve);
  if (settings.press.chosen && options.path == "fixed")
    throw Failure("--model press goes the sure path; leave --path fixed out");
  checkSettings(settings);  // refused before anything is computed
  return settings;
}

}  // namespace host
