// Reads the shells of an LS-DYNA keyword file; see the header.
//
// Data stand in fields of fixed width. Standard: numbers of nodes, elements and parts 8 columns, coordinates
// 16. I10 (or % behind a keyword): integers 10. Long (or + behind a keyword): all of 20 columns.
#include "mesh/dyna_reader.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "mesh/keyword_lines.hpp"
#include "mesh/shell_mesh.hpp"
#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {

// Keywords whose first word, up to an underscore, is one of these are passed over.
constexpr std::array passedOver{
    "AIRBAG",      "ALE",         "BOUNDARY",     "CASE",    "COMMENT",   "COMPONENT",
    "CONSTRAINED", "CONTACT",     "CONTROL",      "DAMPING", "DATABASE",  "DEFINE",
    "DEFORMABLE",  "DEM",         "EOS",          "FATIGUE", "FREQUENCY", "HOURGLASS",
    "INITIAL",     "INTEGRATION", "INTERFACE",    "KEYWORD", "LOAD",      "MAT",
    "MODULE",      "PARAMETER",   "PERTURBATION", "RAIL",    "RIGIDWALL", "SECTION",
    "SENSOR",      "SET",         "TERMINATION",  "TITLE",   "TRANSLATE", "USER"};
// Elements without area, and parts with further cards: passed over.
constexpr std::array passedOverWhole{"ELEMENT_BEAM",    "ELEMENT_DISCRETE", "ELEMENT_MASS",
                                     "ELEMENT_INERTIA", "ELEMENT_SEATBELT", "ELEMENT_PLOTEL",
                                     "ELEMENT_BEARING", "ELEMENT_LANCING",  "PART_"};

struct Widths {
  std::size_t integer = 8, real = 16;  // columns
};

enum class Data { ignored, nodes, shells, partTitle, partCard };

// What is being read, and how.
struct Reading {
  ShellFile shells;
  Widths fileWidths, widths;  // of the file; of the keyword
  Data data = Data::ignored;
  int cardsPerShell = 1;  // options add cards behind that with the nodes
  int card = 0;           // of the present shell, from 0
  std::string partTitle;
};

[[noreturn]] void refuse(const Reading& reading, std::size_t line, const std::string& what) {
  refuseLine(reading.shells.file, line, what);
}

template <std::size_t N>
bool beginsWithOne(const std::array<const char*, N>& heads, std::string_view name) {
  return std::any_of(heads.begin(), heads.end(),
                     [&](std::string_view head) { return name.substr(0, head.size()) == head; });
}

bool isPassedOver(const std::string& name) {
  const std::string word = name.substr(0, name.find_first_of("_ "));
  return std::find(passedOver.begin(), passedOver.end(), word) != passedOver.end() ||
         beginsWithOne(passedOverWhole, name);
}

// --- keywords ----------------------------------------------------------------------------------------------

// Layout of the whole file, from the line of *KEYWORD.
void takeFileLayout(const std::string& name, const KeywordLine& keyword, Reading& reading) {
  std::string text = name;
  for (const auto& [parameter, value] : keyword.parameters) text += " " + parameter + "=" + capitals(value);
  if (text.find("I10=Y") != std::string::npos) reading.fileWidths = {10, 16};
  if (text.find("LONG=Y") != std::string::npos) reading.fileWidths = {20, 20};
}

// Takes the sign of a layout off the name's end.
void takeLayout(std::string& name, Reading& reading) {
  reading.widths = reading.fileWidths;
  const char sign = name.empty() ? ' ' : name.back();
  if (sign != '%' && sign != '+' && sign != '-') return;
  reading.widths = sign == '%' ? Widths{10, 16} : sign == '+' ? Widths{20, 20} : Widths{};
  name.pop_back();
  name.resize(name.find_last_not_of(' ') + 1);
}

// THICKNESS, BETA and MCID share one further card per element, OFFSET has one of its own; options that change
// the nodes or their number are refused.
void startShells(const std::string& name, std::size_t line, Reading& reading) {
  std::string rest = name.substr(std::string_view("ELEMENT_SHELL").size());
  reading.cardsPerShell = 1;
  reading.card = 0;
  bool angleOrThickness = false;
  for (std::size_t from = 0; from < rest.size();) {
    const std::size_t end = std::min(rest.find('_', from + 1), rest.size());
    const std::string option = rest.substr(from + 1, end - from - 1);
    if (option == "THICKNESS" || option == "BETA" || option == "MCID")
      angleOrThickness = true;  // one card holds them all
    else if (option == "OFFSET")
      ++reading.cardsPerShell;
    else
      refuse(reading, line, "*" + shown(name) + ": the option \"" + shown(option) + "\" is not read");
    from = end;
  }
  if (angleOrThickness) ++reading.cardsPerShell;
  reading.data = Data::shells;
}

void startKeyword(const KeywordLine& keyword, Reading& reading) {
  std::string name = keyword.name;
  takeLayout(name, reading);
  reading.data = Data::ignored;
  if (name.substr(0, 7) == "KEYWORD") {
    takeFileLayout(name, keyword, reading);
  } else if (name == "NODE") {
    reading.data = Data::nodes;
  } else if (name == "PART") {
    reading.data = Data::partTitle;
  } else if (name == "ELEMENT_SHELL" || name.substr(0, 14) == "ELEMENT_SHELL_") {
    startShells(name, keyword.line, reading);
  } else if (isPassedOver(name)) {
    ++reading.shells.passedOver["*" + name];
  } else if (name.substr(0, 13) == "ELEMENT_SOLID" || name.substr(0, 14) == "ELEMENT_TSHELL") {
    refuse(reading, keyword.line, "*" + shown(name) + " holds solid elements; only shells are read");
  } else {
    refuse(reading, keyword.line,
           "the keyword \"*" + shown(name) +
               "\" is not read; if it neither makes nor moves nodes and elements, take it out");
  }
}

// --- data --------------------------------------------------------------------------------------------------

// The fields of a card one after the other.
class CardFields {
 public:
  CardFields(const Reading& reading, std::string_view text, std::size_t line)
      : reading_(reading), text_(text), line_(line), free_(text.find(',') != std::string_view::npos) {
    if (text.find('\t') != std::string_view::npos)
      refuse(reading, line, "a tab; fields of fixed width take blanks");
  }
  std::string_view next(std::size_t width) {
    const std::size_t from = std::min(position_, text_.size());
    const std::size_t length = free_ ? std::min(text_.find(',', from), text_.size()) - from : width;
    position_ = from + length + (free_ ? 1 : 0);
    return trimmed(text_.substr(from, length));
  }
  std::int64_t integer(const std::string& what) {
    const std::string_view word = next(reading_.widths.integer);
    std::int64_t value = 0;
    if (!word.empty() && !readInteger(word, value))  // a blank field is zero
      refuse(reading_, line_, what + " expected, found \"" + shown(word) + "\"");
    return value;
  }
  double real() {
    const std::string_view written = next(reading_.widths.real);
    std::string word(written);
    std::replace_if(
        word.begin(), word.end(), [](char c) { return c == 'D' || c == 'd'; }, 'E');
    double value = 0.0;
    if (!word.empty() && !readReal(word, value))
      refuse(reading_, line_, "a coordinate expected, found \"" + shown(written) + "\"");
    return value;
  }

 private:
  const Reading& reading_;
  std::string_view text_;
  std::size_t line_, position_ = 0;
  bool free_;
};

void takeNode(std::string_view text, std::size_t line, Reading& reading) {
  CardFields fields(reading, text, line);
  ShellNode node{0, fields.integer("a node's number"), {}, line};
  for (double& coordinate : node.xyz) coordinate = fields.real();
  reading.shells.nodes.push_back(node);
}

void takeShell(std::string_view text, std::size_t line, Reading& reading) {
  if (reading.card > 0) {  // thickness, angle, offset
    reading.card = (reading.card + 1) % reading.cardsPerShell;
    return;
  }
  reading.card = 1 % reading.cardsPerShell;
  CardFields fields(reading, text, line);
  Shell shell{};
  shell.id = fields.integer("an element's number");
  shell.part = fields.integer("a part's number");
  for (std::int64_t& node : shell.nodes) node = fields.integer("a node's number");
  for (int k = 0; k < 4; ++k)
    if (fields.integer("a node's number") != 0)
      refuse(reading, line,
             "element " + std::to_string(shell.id) +
                 " has nodes amid its edges; shells with three or four are read");
  shell.count = shell.nodes[3] == 0 ? 3 : 4;  // a triangle repeats its third node, or leaves the fourth out
  shell.line = line;
  reading.shells.shells.push_back(shell);
}

void takeData(std::string_view text, std::size_t line, Reading& reading) {
  const bool newCard = reading.data == Data::nodes || (reading.data == Data::shells && reading.card == 0);
  if (text.empty() && newCard) return;
  if (reading.data == Data::nodes) {
    takeNode(text, line, reading);
  } else if (reading.data == Data::shells) {
    takeShell(text, line, reading);
  } else if (reading.data == Data::partTitle) {
    reading.partTitle = trimmed(text);
    reading.data = Data::partCard;
  } else if (reading.data == Data::partCard) {
    CardFields fields(reading, text, line);
    std::int64_t number = 0;
    const std::string_view word = fields.next(std::max<std::size_t>(reading.widths.integer, 10));
    if (!readInteger(word, number))
      refuse(reading, line, "a part's number expected, found \"" + shown(word) + "\"");
    reading.shells.partNames[number] = reading.partTitle;
    reading.data = Data::partTitle;
  }
}

}  // namespace

bool looksLikeDyna(const std::string& content) {
  return keywordDialect(content) == KeywordDialect::dyna;
}

Mesh readDyna(const std::string& content, const std::string& file, const std::vector<std::string>& parts) {
  Reading reading;
  reading.shells.file = file;
  KeywordReader lines(content, "$", true);  // an empty card is one of zeros, an empty title a title
  std::string_view text;
  bool begun = false;
  while (lines.next(text)) {
    if (text.substr(0, 1) != "*") {
      if (!begun && !text.empty()) refuse(reading, lines.line(), "data before the first keyword");
      takeData(text, lines.line(), reading);
      continue;
    }
    begun = true;
    KeywordLine keyword = lines.keyword(text);
    if (keyword.name == "END") break;
    startKeyword(keyword, reading);
  }
  return meshOfShells(reading.shells, parts);
}

}  // namespace host
