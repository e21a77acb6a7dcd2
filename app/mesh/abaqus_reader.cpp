// Reads the shells of an Abaqus input file; see the header.
//
// A line that begins with one asterisk is a keyword with parameters, separated by commas, that goes on in the
// next line after a comma at its end; two asterisks are a comment; all else are data of the keyword before.
#include "mesh/abaqus_reader.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "mesh/keyword_lines.hpp"
#include "mesh/shell_mesh.hpp"
#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {

// Keywords that begin with one of these words are passed over: they neither make nor move nodes and elements.
constexpr std::array passedOver{"ADAPTIVE",     "ADJUST",        "AMPLITUDE",
                                "ANISOTROPIC",  "ANNEAL",        "ASSEMBLY",
                                "BASE",         "BEAM",          "BOUNDARY",
                                "BUCKLE",       "BULK",          "CHANGE",
                                "CLEARANCE",    "CLOAD",         "COHESIVE",
                                "CONDUCTIVITY", "CONNECTOR",     "CONTACT",
                                "CONTROLS",     "CONTOUR",       "COUPLED",
                                "COUPLING",     "CREEP",         "DAMAGE",
                                "DAMPING",      "DASHPOT",       "DENSITY",
                                "DEPVAR",       "DIAGNOSTICS",   "DISPLAY",
                                "DISTRIBUTING", "DISTRIBUTION",  "DLOAD",
                                "DRAG",         "DSLOAD",        "DYNAMIC",
                                "EL",           "ELASTIC",       "ELEMENT OUTPUT",
                                "ELSET",        "END",           "ENERGY",
                                "EQUATION",     "EXPANSION",     "FIELD",
                                "FILE",         "FILM",          "FILTER",
                                "FIXED",        "FORMING",       "FREQUENCY",
                                "FRICTION",     "GAP",           "GEOSTATIC",
                                "HEADING",      "HEAT",          "HOURGLASS",
                                "HYPERELASTIC", "IMPEDANCE",     "INCIDENT",
                                "INERTIA",      "INITIAL",       "INTEGRATED",
                                "KINEMATIC",    "LATENT",        "MASS",
                                "MATERIAL",     "MEMBRANE",      "MODAL",
                                "MONITOR",      "MPC",           "NO",
                                "NODAL",        "NODE FILE",     "NODE OUTPUT",
                                "NODE PRINT",   "NONSTRUCTURAL", "NORMAL",
                                "NSET",         "OPTION",        "ORIENTATION",
                                "OUTPUT",       "PARAMETER",     "PHYSICAL",
                                "PLASTIC",      "POTENTIAL",     "PRE-TENSION",
                                "PREPRINT",     "PRINT",         "RADIATE",
                                "RATE",         "RELEASE",       "RESTART",
                                "RIGID",        "ROTARY",        "SECTION",
                                "SHEAR",        "SHELL",         "SOLUTION",
                                "SPECIFIC",     "SPRING",        "STATIC",
                                "STEP",         "SUBMODEL",      "SURFACE",
                                "TEMPERATURE",  "TIE",           "TIME",
                                "TRANSFORM",    "TRANSVERSE",    "UEL",
                                "USER",         "VARIABLE",      "VIEWPOINT",
                                "VISCO",        "VISCOSITY",     "WIND"};

// Shell types by their number of nodes; membranes (M3D), surfaces (SFM3D) and rigid faces (R3D) are sheet too.
constexpr std::array threeNodes{"S3", "S3R", "S3RS", "S3T", "S3RT", "STRI3", "M3D3", "SFM3D3", "R3D3", "DS3"};
constexpr std::array fourNodes{"S4",   "S4R",   "S4RS",   "S4RSW",   "S4R5", "S4T", "S4RT",
                               "M3D4", "M3D4R", "SFM3D4", "SFM3D4R", "R3D4", "DS4"};
// Bars, springs, masses and connections begin like this.
constexpr std::array withoutArea{"B2",     "B3",      "PIPE",  "ELBOW",   "FRAME", "T2D",     "T3D",
                                 "SPRING", "DASHPOT", "MASS",  "ROTARYI", "CONN",  "HEATCAP", "GAPUNI",
                                 "GAPCYL", "ITT",     "DCOUP", "JOINTC",  "RB3D"};
constexpr std::array solids{"C3D", "SC", "CSS", "DC3D", "AC3D", "CIN3D", "COH3D", "GK3D"};

template <std::size_t N>
bool contains(const std::array<const char*, N>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

template <std::size_t N>
bool beginsWithOne(const std::array<const char*, N>& heads, std::string_view name) {
  return std::any_of(heads.begin(), heads.end(),
                     [&](std::string_view head) { return name.substr(0, head.size()) == head; });
}

bool isPassedOver(const std::string& keyword) {
  return std::any_of(passedOver.begin(), passedOver.end(), [&](std::string_view known) {
    return keyword.substr(0, known.size()) == known &&
           (keyword.size() == known.size() || keyword[known.size()] == ' ');
  });
}

// What is being read, and where.
struct Reading {
  ShellFile shells;
  KeywordLine keyword;
  std::int64_t scope = 0;              // of node numbers: each *PART has its own
  std::string part;                    // name of the *PART
  std::vector<std::string> instances;  // parts that were placed
  std::map<std::pair<std::int64_t, std::string>, std::int64_t> numberOfSet;
  int corners = 0;  // of the *ELEMENT that is read; 0: its data are passed over
  std::int64_t partNumber = 0;
};

[[noreturn]] void refuse(const Reading& reading, std::size_t line, const std::string& what) {
  refuseLine(reading.shells.file, line, what);
}

std::int64_t integerOf(const Reading& reading, std::string_view word, std::size_t line,
                       const std::string& what) {
  std::int64_t value = 0;
  if (!readInteger(word, value)) refuse(reading, line, what + " expected, found \"" + shown(word) + "\"");
  return value;
}

double realOf(const Reading& reading, std::string_view word, std::size_t line) {
  std::string text(word);
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == 'D' || c == 'd'; }, 'E');
  double value = 0.0;
  if (!text.empty() && !readReal(text, value))  // what is not given is zero
    refuse(reading, line, "a coordinate expected, found \"" + shown(word) + "\"");
  return value;
}

// --- keywords ----------------------------------------------------------------------------------------------

void startElements(Reading& reading) {
  const std::string type = capitals(reading.keyword.parameter("TYPE"));
  const std::size_t line = reading.keyword.line;
  if (!reading.keyword.parameter("INPUT").empty())
    refuse(reading, line, "INPUT= is not followed; put all into one file");
  reading.corners = contains(threeNodes, type) ? 3 : contains(fourNodes, type) ? 4 : 0;
  if (reading.corners == 0) {
    if (beginsWithOne(solids, type))
      refuse(reading, line, "elements of type " + shown(type) + " are solids; only shells are read");
    if (!beginsWithOne(withoutArea, type))
      refuse(reading, line,
             "elements of type \"" + shown(type) +
                 "\" are not read; shells with three or four nodes (S3, S4R, ...) are");
    ++reading.shells.passedOver["*ELEMENT, TYPE=" + type];
    return;
  }
  const std::string set = reading.keyword.parameter("ELSET");
  const std::string name = set.empty() ? reading.part : set;
  const auto next = static_cast<std::int64_t>(reading.numberOfSet.size()) + 1;
  const auto entry = reading.numberOfSet.try_emplace({reading.scope, capitals(name)}, next);
  reading.partNumber = entry.first->second;
  if (entry.second && !name.empty()) reading.shells.partNames[next] = name;
}

void startInstance(Reading& reading) {
  const std::string part = capitals(reading.keyword.parameter("PART"));
  if (std::find(reading.instances.begin(), reading.instances.end(), part) != reading.instances.end())
    refuse(reading, reading.keyword.line,
           "a second instance of part \"" + shown(part) + "\"; one of each is read");
  reading.instances.push_back(part);
}

void startKeyword(Reading& reading) {
  const KeywordLine& keyword = reading.keyword;
  if (keyword.name == "NODE") {
    if (!keyword.parameter("INPUT").empty())
      refuse(reading, keyword.line, "INPUT= is not followed; put all into one file");
    const std::string system = capitals(keyword.parameter("SYSTEM"));
    if (!system.empty() && system != "R")
      refuse(reading, keyword.line, "only rectangular coordinates (SYSTEM=R) are read");
  } else if (keyword.name == "ELEMENT") {
    startElements(reading);
  } else if (keyword.name == "PART") {
    ++reading.scope;
    reading.part = keyword.parameter("NAME");
  } else if (keyword.name == "INSTANCE") {
    startInstance(reading);
  } else if (isPassedOver(keyword.name)) {
    if (keyword.name.substr(0, 4) != "END ") ++reading.shells.passedOver["*" + keyword.name];
  } else {
    refuse(reading, keyword.line,
           "the keyword \"*" + shown(keyword.name) +
               "\" is not read; if it neither makes nor moves nodes and elements, take it out");
  }
}

// --- data --------------------------------------------------------------------------------------------------

void takeNode(Reading& reading, const std::vector<std::string_view>& words, std::size_t line) {
  ShellNode node{reading.scope, integerOf(reading, words[0], line, "a node's number"), {}, line};
  for (std::size_t axis = 0; axis < 3 && axis + 1 < words.size(); ++axis)
    node.xyz[axis] = realOf(reading, words[axis + 1], line);
  reading.shells.nodes.push_back(node);
}

void takeElement(Reading& reading, const std::vector<std::string_view>& words, std::size_t line) {
  if (reading.corners == 0) return;
  Shell shell{};
  shell.scope = reading.scope;
  shell.id = integerOf(reading, words[0], line, "an element's number");
  if (words.size() != static_cast<std::size_t>(reading.corners) + 1)
    refuse(reading, line,
           "element " + std::to_string(shell.id) + " has " +
               counted(static_cast<std::int64_t>(words.size()) - 1, "node") + ", its type has " +
               std::to_string(reading.corners));
  for (std::size_t k = 1; k < words.size(); ++k)
    shell.nodes[k - 1] = integerOf(reading, words[k], line, "a node's number");
  shell.part = reading.partNumber;
  shell.count = reading.corners;
  shell.line = line;
  reading.shells.shells.push_back(shell);
}

void takeData(Reading& reading, std::string_view text, std::size_t line) {
  std::vector<std::string_view> words = commaWords(text);
  if (words.size() > 1 && words.back().empty()) words.pop_back();  // a comma may end the line
  if (reading.keyword.name == "NODE") takeNode(reading, words, line);
  if (reading.keyword.name == "ELEMENT") takeElement(reading, words, line);
  if (reading.keyword.name == "INSTANCE")
    for (const std::string_view word : words)
      if (realOf(reading, word, line) != 0.0)
        refuse(reading, line, "a moved instance is not read; write the part where it belongs");
}

}  // namespace

bool looksLikeAbaqus(const std::string& content) {
  return keywordDialect(content) == KeywordDialect::abaqus;
}

Mesh readAbaqus(const std::string& content, const std::string& file, const std::vector<std::string>& parts) {
  Reading reading;
  reading.shells.file = file;
  KeywordReader lines(content, "**");
  std::string_view text;
  while (lines.next(text)) {
    if (text[0] == '*') {
      reading.keyword = lines.keyword(text);
      startKeyword(reading);
    } else {
      if (reading.keyword.name.empty()) refuse(reading, lines.line(), "data before the first keyword");
      takeData(reading, text, lines.line());
    }
  }
  return meshOfShells(reading.shells, parts);
}

}  // namespace host
