// The press model from the texts of the options; see the header.
#include "command/press_choice.hpp"

#include <algorithm>
#include <unordered_map>

#include "system/failure.hpp"
#include "system/input_file.hpp"
#include "system/text.hpp"

namespace host {

namespace {

// The numbers of a text with commas between them. Throws Failure where their count is not allowed.
std::vector<double> numbers(const std::string& option, const std::string& text, std::size_t least,
                            std::size_t most) {
  std::vector<double> values;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(',', begin), text.size());
    double value;
    if (!readReal(text.substr(begin, end - begin), value))
      throw Failure(option + ": \"" + shown(text.substr(begin, end - begin)) + "\" is not a number");
    values.push_back(value);
    begin = end + 1;
  }
  if (values.size() < least || values.size() > most || (values.size() == 2 && least == 3))
    throw Failure(option + " wants " + (least == most ? "" : std::to_string(least) + " or ") +
                  counted(static_cast<std::int64_t>(most), "number") + ", not \"" + shown(text) + "\"");
  return values;
}

double number(const std::string& option, const std::string& text) {
  return numbers(option, text, 1, 1)[0];
}

std::int32_t placeOf(const std::string& word, std::initializer_list<const char*> words) {
  std::int32_t place = 0;
  for (const char* each : words) {
    if (word == each) return place;
    ++place;
  }
  return 0;
}

// The first option that only the press model reads, empty if none is given; the thickness alone is none.
std::string firstOption(const PressOptionTexts& texts) {
  const std::pair<const char*, const std::string*> all[] = {
      {"--young", &texts.young},     {"--planar-r", &texts.planarR}, {"--rolling", &texts.rolling},
      {"--mu", &texts.mu},           {"--binder", &texts.binder},    {"--flange", &texts.flange},
      {"--bending", &texts.bending}, {"--edge", &texts.edge},        {"--mesh-side", &texts.meshSide},
      {"--punch", &texts.punch}};
  for (const auto& [name, text] : all)
    if (!text->empty()) return name;
  return texts.beads.empty() ? "" : "--bead";
}

// Integers, one per line.
std::vector<std::int64_t> readNumbers(const std::string& option, const std::string& path) {
  const std::string content = readInputFile(path);
  std::vector<std::int64_t> values;
  std::size_t position = 0;
  std::string_view line;
  for (std::int64_t row = 1; nextLine(content, position, line); ++row) {
    std::size_t at = 0;
    const std::string_view word = nextWord(line, at);
    if (word.empty() || word[0] == '#') continue;
    std::int64_t value;
    if (!readInteger(word, value) || !nextWord(line, at).empty())
      throw Failure(option + ": " + path + ", line " + std::to_string(row) + ": \"" + shown(line) +
                    "\" is not one whole number");
    values.push_back(value);
  }
  if (values.empty()) throw Failure(option + ": " + path + " holds no number");
  return values;
}

void readFlange(const std::string& path, const Part& part, PressSettings& press) {
  std::unordered_map<std::int64_t, std::size_t> place;
  for (std::size_t e = 0; e < part.fileElement.size(); ++e) place[part.fileElement[e]] = e;
  press.flange.assign(part.fileElement.size(), 0);
  for (const std::int64_t number : readNumbers("--flange", path)) {
    const auto found = place.find(number);
    if (found == place.end())
      throw Failure("--flange: " + path + " names element " + std::to_string(number) +
                    ", which the part does not have");
    press.flange[found->second] = 1;
  }
}

Bead readBead(const std::string& text, const Part& part) {
  const std::size_t colon = text.rfind(':');
  Bead bead;
  if (colon == std::string::npos || colon == 0 || !readReal(text.substr(colon + 1), bead.force))
    throw Failure("--bead wants FILE:N/MM, not \"" + shown(text) + "\"");
  const std::string path = text.substr(0, colon);
  for (const std::int64_t node : readNumbers("--bead", path)) {
    if (node < 1 || node > part.nodes())
      throw Failure("--bead: " + path + " names node " + std::to_string(node) +
                    ", which the part does not have");
    bead.nodes.push_back(static_cast<std::int32_t>(node));
  }
  return bead;
}

}  // namespace

PressSettings pressSettings(const PressOptionTexts& texts, bool inMpa, bool surePath,
                            std::optional<double> measured) {
  PressSettings settings;
  const std::string option = firstOption(texts);
  // Before the part is read a thickness stands in where the user wants the press model: what else is wrong with its
  // options is refused before a long import.
  constexpr double standIn = 1.0;
  const bool wanted = texts.model == "press" || !option.empty();
  const double onPart = measured ? *measured : (wanted ? standIn : 0.0);
  // the thickness serves more than the press model: it does not turn away the path that the user chose
  const bool possible = inMpa && surePath && (!texts.thickness.empty() || onPart > 0.0);
  settings.chosen = texts.model.empty() ? possible : texts.model == "press";
  if (!settings.chosen) {
    if (!option.empty())
      throw Failure(option + " belongs to --model press" +
                    (texts.model.empty() ? ", which goes the sure path and needs --thickness and a flow "
                                           "curve in MPa: --curve, --law, or a --material that has one"
                                         : ""));
    return settings;
  }
  if (texts.thickness.empty() && !(onPart > 0.0)) throw Failure("--model press needs --thickness");
  TornwalzenPress& press = settings.press;
  press.size = sizeof press;
  press.thickness_mm = texts.thickness.empty() ? onPart : number("--thickness", texts.thickness);
  if (!texts.young.empty()) press.young_mpa = number("--young", texts.young);
  if (!texts.planarR.empty()) {
    const std::vector<double> r = numbers("--planar-r", texts.planarR, 3, 3);
    press.r0 = r[0], press.r45 = r[1], press.r90 = r[2];
    if (r[0] == 0.0 && r[1] == 0.0 && r[2] == 0.0)
      throw Failure("--planar-r: the anisotropy must be positive, not 0");
  }
  if (!texts.rolling.empty()) press.rolling_angle_deg = number("--rolling", texts.rolling);
  if (!texts.mu.empty()) {
    const std::vector<double> mu = numbers("--mu", texts.mu, 1, 2);
    press.friction_punch = mu.front(), press.friction_die = mu.back();
  }
  if (!texts.binder.empty()) press.binder_force_n = number("--binder", texts.binder);
  press.flange_of_rim = texts.flange.empty() || texts.flange == "auto" ? 1 : 0;
  press.bending = placeOf(texts.bending, {"auto", "off", "released", "kept"});
  press.edge = placeOf(texts.edge, {"auto", "off", "on"});
  press.mesh_side = placeOf(texts.meshSide, {"middle", "punch", "die"});
  press.punch_above = placeOf(texts.punch, {"below", "above"});
  return settings;
}

void readPressMarks(const PressOptionTexts& texts, const Part& part, PressSettings& press) {
  if (!press.chosen) return;
  if (press.press.flange_of_rim == 0) readFlange(texts.flange, part, press);
  for (const std::string& bead : texts.beads) press.beads.push_back(readBead(bead, part));
}

}  // namespace host
