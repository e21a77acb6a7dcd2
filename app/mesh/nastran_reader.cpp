// Reads the shells of a Nastran bulk data file; see the header.
//
// An entry is one or more lines of fields. A line has a name or a continuation mark in its first field, eight
// data fields of 8 columns (or four of 16, where an asterisk ends the first field), and a mark for the line
// that continues it. With a comma among its first ten characters it is free: fields end at commas.
#include "mesh/nastran_reader.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

#include "mesh/shell_mesh.hpp"
#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {

constexpr std::size_t smallField = 8, largeField = 16;   // columns
constexpr std::size_t smallFields = 8, largeFields = 4;  // data fields of a line

// Entries that are passed over: names that begin with one of these, and end there where '=' closes it.
constexpr std::array passedOver{
    "ACCEL",  "ASET",   "BCBODY",  "BCONP",   "BCT",    "BLSEG",  "BSURF",   "CAERO",  "CBAR",    "CBEAM",
    "CBEND",  "CBUSH",  "CDAMP",   "CELAS",   "CFAST",  "CGAP",   "CMASS",   "CONM",   "CONROD",  "CORD",
    "CROD",   "CSEAM",  "CSHEAR",  "CSUPER",  "CTUBE",  "CVISC",  "CWELD",   "DAREA",  "DCONADD", "DCONSTR",
    "DEFORM", "DELAY",  "DESOBJ",  "DESVAR",  "DLOAD",  "DMI",    "DOPTPRM", "DPHASE", "DRESP",   "DTPL",
    "DVGRID", "DVPREL", "EIGB",    "EIGC",    "EIGP",   "EIGR",   "EPOINT",  "FORCE",  "FREQ",    "GRAV",
    "LOAD",   "LSEQ",   "MAT",     "MFLUID",  "MOMENT", "MPC",    "NLPARM",  "NLPCI",  "NSM",     "PAERO",
    "PARAM",  "PBAR",   "PBEAM",   "PBEND",   "PBUSH",  "PCOMP",  "PCONT",   "PDAMP",  "PELAS",   "PFAST",
    "PGAP",   "PLOAD",  "PLOTEL=", "PLSOLID", "PMASS",  "PROD",   "PSEAM",   "PSHEAR", "PSHELL",  "PSOLID",
    "PTUBE",  "PVISC",  "PWELD",   "RBAR",    "RBE",    "RFORCE", "RLOAD",   "RROD",   "RSPLINE", "RSSCON",
    "SEQGP",  "SESET",  "SET",     "SLOAD",   "SPC",    "SPLINE", "SPOINT",  "SUPORT", "SURF",    "TABDMP",
    "TABLE",  "TEMP",   "TIC",     "TLOAD",   "TSTEP"};

bool isPassedOver(std::string_view name) {
  return std::any_of(passedOver.begin(), passedOver.end(), [&](std::string_view known) {
    return known.back() == '=' ? name == known.substr(0, known.size() - 1)
                               : name.substr(0, known.size()) == known;
  });
}

struct Entry {
  std::string name;  // in capitals, without the asterisk
  std::vector<std::string>
      fields;            // data fields of all its lines, trimmed; those that are not there are absent
  std::size_t line = 0;  // of the name
};

struct FieldLine {
  std::string first;                // name or continuation mark, trimmed; empty: continues the line before
  std::vector<std::string> fields;  // eight or four
  std::string mark;                 // for the line that continues this one, trimmed
};

// Tabs go to the next multiple of eight columns; what stands behind a dollar sign is a comment.
std::string withoutTabsAndComment(std::string_view line) {
  std::string text;
  for (const char c : line.substr(0, line.find('$'))) {
    if (c != '\t')
      text += c;
    else
      text.append(smallField - text.size() % smallField, ' ');
  }
  text.resize(text.find_last_not_of(" \r") + 1);
  return text;
}

bool isFree(std::string_view line) {
  return line.substr(0, 10).find(',') != std::string_view::npos;
}

bool isLarge(std::string_view first) {
  return !first.empty() && (first.back() == '*' || first.front() == '*');
}

FieldLine freeFields(const std::string& file, std::size_t lineNumber, std::string_view line) {
  std::vector<std::string> words;
  for (std::size_t from = 0; from <= line.size();) {
    const std::size_t comma = std::min(line.find(',', from), line.size());
    words.emplace_back(trimmed(line.substr(from, comma - from)));
    from = comma + 1;
  }
  FieldLine result;
  result.first = words[0];
  const std::size_t most = isLarge(result.first) ? largeFields : smallFields;
  if (words.size() > most + 2)
    refuseLine(file, lineNumber, "more than " + std::to_string(most) + " fields and a continuation mark");
  if (words.size() == most + 2) {
    result.mark = words.back();
    words.pop_back();
  }
  result.fields.assign(words.begin() + 1, words.end());
  result.fields.resize(most);
  return result;
}

FieldLine fixedFields(std::string_view line) {
  const auto cut = [&](std::size_t from, std::size_t width) {
    return from < line.size() ? std::string(trimmed(line.substr(from, width))) : std::string();
  };
  FieldLine result;
  result.first = cut(0, smallField);
  const bool large = isLarge(result.first);
  const std::size_t width = large ? largeField : smallField, count = large ? largeFields : smallFields;
  for (std::size_t k = 0; k < count; ++k) result.fields.push_back(cut(smallField + k * width, width));
  result.mark = cut(smallField + count * width, smallField);
  return result;
}

std::string markName(std::string_view mark) {
  return capitals(mark.substr(std::min(mark.find_first_not_of("+*"), mark.size())));
}

// The entries of the bulk data one after the other.
class EntryReader {
 public:
  EntryReader(std::string_view content, std::size_t linesBefore, const std::string& file)
      : content_(content), file_(file), lineNumber_(linesBefore) {
    advance();
  }
  // False at ENDDATA or the end of the file.
  bool next(Entry& entry) {
    if (ended_ || capitals(line_).substr(0, 7) == "ENDDATA") return false;
    FieldLine fields = split();
    if (isContinuation()) refuseLine(file_, lineNumber_, "a continuation of no entry");
    entry.line = lineNumber_;
    entry.name = capitals(fields.first.substr(0, fields.first.find('*')));
    entry.fields = std::move(fields.fields);
    std::string mark = fields.mark;
    while (advance() && isContinuation()) {
      fields = split();
      if (!mark.empty() && !fields.first.empty() && markName(mark) != markName(fields.first))
        refuseLine(file_, lineNumber_,
                   "the continuation \"" + shown(fields.first) + "\" does not belong to \"" + shown(mark) +
                       "\" of the line before; lines in another order are not put together");
      entry.fields.insert(entry.fields.end(), fields.fields.begin(), fields.fields.end());
      mark = fields.mark;
    }
    return true;
  }

 private:
  // To the next line that is neither empty nor comment; false at the end.
  bool advance() {
    std::string_view raw;
    while (!(ended_ = !nextLine(content_, position_, raw))) {
      ++lineNumber_;
      line_ = withoutTabsAndComment(raw);
      if (!line_.empty()) return true;
    }
    return false;
  }
  FieldLine split() const {
    return isFree(line_) ? freeFields(file_, lineNumber_, line_) : fixedFields(line_);
  }
  bool isContinuation() const {
    if (line_[0] == '+' || line_[0] == '*' || line_[0] == ',') return true;
    return isFree(line_) ? trimmed(line_.substr(0, line_.find(','))).empty()
                         : trimmed(line_.substr(0, smallField)).empty();
  }

  std::string_view content_;
  const std::string& file_;
  std::size_t position_ = 0, lineNumber_;
  std::string line_;
  bool ended_ = false;
};

// --- entries -----------------------------------------------------------------------------------------------

std::string field(const Entry& entry, std::size_t number) {
  return number < entry.fields.size() ? entry.fields[number] : std::string();
}

std::int64_t integerField(const ShellFile& shells, const Entry& entry, std::size_t number,
                          const std::string& what) {
  const std::string text = field(entry, number);
  std::int64_t value = 0;
  if (!readInteger(text, value))
    refuseLine(shells.file, entry.line,
               entry.name + ": " + what + " expected in field " + std::to_string(number + 2) + ", found \"" +
                   shown(text) + "\"");
  return value;
}

// 1.5, 1.5E2, 1.5D+2 and, without the letter, 1.5+2; a blank field is zero.
double realField(const ShellFile& shells, const Entry& entry, std::size_t number) {
  std::string text = field(entry, number);
  if (text.empty()) return 0.0;
  const std::string original = text;
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == 'D' || c == 'd'; }, 'E');
  const std::size_t sign = text.find_last_of("+-");
  if (sign != std::string::npos && sign > 0 &&
      (std::isdigit(static_cast<unsigned char>(text[sign - 1])) != 0 || text[sign - 1] == '.'))
    text.insert(sign, 1, 'E');
  double value = 0.0;
  if (!readReal(text, value))
    refuseLine(shells.file, entry.line,
               entry.name + ": a coordinate expected in field " + std::to_string(number + 2) + ", found \"" +
                   shown(original) + "\"");
  return value;
}

// The coordinate system of grid points must be the basic one, 0.
void checkSystem(const ShellFile& shells, const Entry& entry) {
  const std::string system = field(entry, 1);
  if (!system.empty() && system != "0")
    refuseLine(shells.file, entry.line,
               entry.name + ": coordinate system " + shown(system) + "; only the basic one, 0, is read");
}

void takeGrid(const Entry& entry, ShellFile& shells) {
  checkSystem(shells, entry);
  shells.nodes.push_back(
      {0,
       integerField(shells, entry, 0, "a grid point's number"),
       {realField(shells, entry, 2), realField(shells, entry, 3), realField(shells, entry, 4)},
       entry.line});
}

void takeShell(const Entry& entry, int corners, ShellFile& shells) {
  Shell shell{};
  shell.id = integerField(shells, entry, 0, "an element's number");
  shell.part = field(entry, 1).empty() ? shell.id  // the property has the element's number by default
                                       : integerField(shells, entry, 1, "a property's number");
  for (int k = 0; k < corners; ++k)
    shell.nodes[static_cast<std::size_t>(k)] =
        integerField(shells, entry, static_cast<std::size_t>(k) + 2, "a grid point's number");
  shell.count = corners;
  shell.line = entry.line;
  shells.shells.push_back(shell);
}

void refuseEntry(const ShellFile& shells, const Entry& entry) {
  const auto isOneOf = [&](std::initializer_list<std::string_view> names) {
    return std::find(names.begin(), names.end(), entry.name) != names.end();
  };
  if (isOneOf({"CTRIA6", "CQUAD8", "CQUAD", "CTRIAX", "CTRIAX6", "CQUADX"}))
    refuseLine(shells.file, entry.line,
               entry.name + " is not read; only shells with nodes at their corners (CTRIA3, CQUAD4) are");
  if (isOneOf({"CTETRA", "CPENTA", "CHEXA", "CPYRAM", "CPYRA"}))
    refuseLine(shells.file, entry.line, entry.name + " is a solid element; only shells are read");
  if (entry.name.substr(0, 7) == "INCLUDE")
    refuseLine(shells.file, entry.line, "INCLUDE is not followed; put all into one file");
  if (!entry.name.empty() && entry.name[0] == '=')
    refuseLine(shells.file, entry.line, "replication (=) is not read; write the entries out");
  refuseLine(shells.file, entry.line, "the entry \"" + shown(entry.name) + "\" is not known");
}

// Where the bulk data begin, and the number of lines before.
std::size_t startOfBulk(std::string_view content, std::size_t& linesBefore) {
  std::size_t position = 0, count = 0;
  std::string_view line;
  while (nextLine(content, position, line)) {
    ++count;
    std::size_t inLine = 0;
    if (capitals(nextWord(line, inLine)) != "BEGIN") continue;
    if (capitals(nextWord(line, inLine)).substr(0, 4) != "BULK") continue;
    linesBefore = count;
    return std::min(position, content.size());  // a last line without an end leaves it behind
  }
  linesBefore = 0;
  return 0;
}

void takeEntry(const Entry& entry, ShellFile& shells) {
  if (entry.name == "GRID")
    takeGrid(entry, shells);
  else if (entry.name == "CTRIA3" || entry.name == "CTRIAR")
    takeShell(entry, 3, shells);
  else if (entry.name == "CQUAD4" || entry.name == "CQUADR")
    takeShell(entry, 4, shells);
  else if (entry.name == "GRDSET")
    checkSystem(shells, entry);
  else if (isPassedOver(entry.name))
    ++shells.passedOver[entry.name];
  else
    refuseEntry(shells, entry);
}

}  // namespace

bool looksLikeNastran(const std::string& content) {
  std::size_t position = 0;
  std::string_view line;
  while (nextLine(content, position, line)) {
    std::size_t inLine = 0;
    const std::string_view word = nextWord(line, inLine);
    if (word.find_first_of("GgCcBb") != 0) continue;  // the first letters of what follows
    const std::string name =
        capitals(word.substr(0, std::min({word.find(','), word.find('*'), std::size_t{8}})));
    if (name == "GRID" || name == "CTRIA3" || name == "CQUAD4" || name == "CTRIAR" || name == "CQUADR")
      return true;
    if (name == "BEGIN" && capitals(nextWord(line, inLine)).substr(0, 4) == "BULK") return true;
  }
  return false;
}

Mesh readNastran(const std::string& content, const std::string& file, const std::vector<std::string>& parts) {
  ShellFile shells;
  shells.file = file;
  std::size_t linesBefore = 0;
  const std::size_t start = startOfBulk(content, linesBefore);
  EntryReader reader(std::string_view(content).substr(start), linesBefore, file);
  Entry entry;
  while (reader.next(entry)) takeEntry(entry, shells);
  return meshOfShells(shells, parts);
}

}  // namespace host
