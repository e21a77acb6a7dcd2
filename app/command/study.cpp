// The command `tornwalzen study`; see the header.
#include "command/study.hpp"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <set>

#include "command/outcome.hpp"
#include "command/solve_options.hpp"
#include "result/summary.hpp"
#include "system/failure.hpp"
#include "system/input_file.hpp"
#include "system/path.hpp"
#include "system/text.hpp"

namespace host {

namespace {

constexpr const char* partColumn = "PART";
constexpr const char* nameColumn = "name";
constexpr const char* threadsOption = "--threads";
constexpr std::size_t mostRows = 10000;

const std::set<std::string> setByStudy{"--out", "--outcome", "--quiet", "--json", "--verbose", "--help"};

std::string inQuotes(const std::string& text) {
  return "\"" + shown(text) + "\"";
}

struct Column {
  std::string option;  // with its dashes; empty for PART and name
  OptionKind kind = OptionKind::unknown;
};

std::vector<Column> columnsOf(const StudyTable& table, const std::string& source) {
  std::vector<Column> columns;
  bool hasPart = false;
  for (const std::string& heading : table.headings) {
    hasPart = hasPart || heading == partColumn;
    if (heading == partColumn || heading == nameColumn) {
      columns.push_back({});
      continue;
    }
    const std::string option = heading.starts_with("--") ? heading : "--" + heading;
    if (setByStudy.count(option) > 0)
      throw Failure(source + ": column " + inQuotes(heading) + ": the study sets that itself");
    const OptionKind kind = solveOption(option);
    if (kind == OptionKind::unknown)
      throw Failure(source + ": column " + inQuotes(heading) +
                    " is no option of solve, see tornwalzen solve --help");
    if (std::any_of(columns.begin(), columns.end(), [&](const Column& c) { return c.option == option; }))
      throw Failure(source + ": two columns for " + option);
    columns.push_back({option, kind});
  }
  if (!hasPart) throw Failure(source + ": no column " + partColumn + " with the mesh file of each row");
  return columns;
}

void checkCell(const std::string& cell, const std::string& where) {
  if (std::any_of(cell.begin(), cell.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }))
    throw Failure(where + ": a cell with a line end or another sign that cannot be printed");
}

// Appends the option to the words, or nothing.
void addOption(const Column& column, const std::string& cell, const std::string& where,
               std::vector<std::string>& words) {
  if (cell.empty()) return;
  const std::string& option = column.option;
  if (column.kind == OptionKind::value) {
    words.push_back(option + "=" + cell);
    return;
  }
  if (cell == "yes" || cell == "1" || cell == "x")
    words.push_back(option);
  else if (cell == "no" || cell == "0")
    words.push_back(option + "=false");  // some flags are on unless they are turned off
  else
    throw Failure(where + ": " + option + " is yes or no, not " + inQuotes(cell));
}

std::string defaultName(std::size_t number, std::size_t rows, const std::string& part) {
  std::string digits = std::to_string(number);
  digits.insert(0, std::to_string(rows).size() - digits.size(), '0');
  std::string stem = pathText(pathOf(part).stem());
  for (char& c : stem)
    if (!((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '.' || c == '-'))
      c = '_';
  return digits + "_" + stem;
}

void checkName(const std::string& name, const std::string& where, std::set<std::string>& names) {
  if (name == "." || name == ".." || name.find('/') != std::string::npos)
    throw Failure(where + ": " + inQuotes(name) + " is no name for a folder");
  if (!names.insert(name).second) throw Failure(where + ": the name " + inQuotes(name) + " occurs twice");
}

// The hash of the part that the folder's results are of; empty: not known.
std::string hashInSummary(const std::string& folder) {
  try {
    const auto json = nlohmann::json::parse(readInputFile(placeIn(folder, "summary.json")));
    return json.at(partHashKey).get<std::string>();
  } catch (const nlohmann::json::exception&) {
    return "";
  } catch (const Failure&) {
    return "";
  }
}

std::string defaultFolder(const std::string& table) {
  return pathText(pathOf(table).stem()) + "_study";
}

std::string commandLine(const std::string& program, const StudyRow& row) {
  std::string line = shellWord(program) + " solve";
  for (const std::string& word : row.words) line += " " + shellWord(word);
  return line;
}

std::string slurmScript(const std::string& name, const std::string& program,
                        const std::vector<StudyRow>& rows) {
  std::string script = "#!/bin/sh\n#SBATCH --job-name=tornwalzen\n#SBATCH --array=1-" +
                       std::to_string(rows.size()) + "\n# the rows of " + shown(name) +
                       "\ncase \"$SLURM_ARRAY_TASK_ID\" in\n";
  for (std::size_t k = 0; k < rows.size(); ++k)
    script += std::to_string(k + 1) + ")\n  " + commandLine(program, rows[k]) + "\n  ;;\n";
  return script + "*)\n  echo 'no such row' >&2\n  exit 1\n  ;;\nesac\n";
}

}  // namespace

std::string shellWord(const std::string& word) {
  constexpr const char* plain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-./=:,+@";  // nothing for any shell
  if (!word.empty() && word.find_first_not_of(plain) == std::string::npos) return word;
  std::string quoted = "'";
  for (const char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

std::vector<StudyRow> studyRows(const StudyTable& table, const std::string& source,
                                const std::string& folder) {
  if (table.rows.size() > mostRows)
    throw Failure(source + ": more than " + std::to_string(mostRows) + " rows");
  const std::vector<Column> columns = columnsOf(table, source);
  std::vector<StudyRow> rows;
  std::set<std::string> names;
  for (std::size_t r = 0; r < table.rows.size(); ++r) {
    const std::string where = source + ", line " + std::to_string(table.rows[r].line);
    StudyRow row;
    row.line = table.rows[r].line;
    std::string name;
    std::vector<std::string> given;
    for (std::size_t c = 0; c < columns.size(); ++c) {
      const std::string& cell = table.rows[r].cells[c];
      checkCell(cell, where);
      if (table.headings[c] == partColumn)
        row.part = cell;
      else if (table.headings[c] == nameColumn)
        name = cell;
      else
        addOption(columns[c], cell, where, given);
    }
    if (row.part.empty()) throw Failure(where + ": no mesh file in the column " + partColumn);
    if (name.empty()) name = defaultName(r + 1, table.rows.size(), row.part);
    checkName(name, where, names);
    row.folder = placeIn(folder, name);
    row.words.push_back(row.part.front() == '-' ? "./" + row.part : row.part);
    row.words.insert(row.words.end(), given.begin(), given.end());
    // Rows run side by side, one per core: threads of their own would only wait for each other.
    const std::string threads = threadsOption + std::string("=");
    if (std::none_of(given.begin(), given.end(), [&](const auto& word) { return word.starts_with(threads); }))
      row.words.push_back(threads + "1");
    for (const std::string& word :
         {"--out=" + row.folder, "--outcome=" + placeIn(row.folder, outcomeName), std::string("--quiet")})
      row.words.push_back(word);
    const std::string complaint = solveComplaint(row.words);
    if (!complaint.empty()) throw Failure(where + ": " + complaint);
    rows.push_back(row);
  }
  return rows;
}

bool isComplete(const StudyRow& row) {
  const std::optional<Outcome> outcome = readOutcome(placeIn(row.folder, outcomeName));
  if (!outcome || (outcome->status != exitConverged && outcome->status != exitUnconverged)) return false;
  if (outcome->arguments.size() != row.words.size()) return false;
  for (std::size_t k = 0; k < row.words.size(); ++k)
    if (outcome->arguments[k] != inSummary(row.words[k])) return false;
  const std::string hash = hashInSummary(row.folder);
  try {
    return !hash.empty() && hash == contentHash(readInputFile(row.part));
  } catch (const Failure&) {
    return false;  // solve will say why the part cannot be read
  }
}

int study(const StudyOptions& options) {
  const std::string folder = options.out.empty() ? defaultFolder(options.table) : options.out;
  std::vector<StudyRow> rows =
      studyRows(readStudyTable(readInputFile(options.table), options.table), options.table, folder);
  const auto all = static_cast<std::int64_t>(rows.size());
  if (!options.again) rows.erase(std::remove_if(rows.begin(), rows.end(), isComplete), rows.end());
  const auto left = all - static_cast<std::int64_t>(rows.size());
  std::fprintf(stderr, "%s, %lld of them complete%s%s\n", counted(all, "row").c_str(),
               static_cast<long long>(left),
               left > 0 && options.print ? " and left out (--again prints them too)" : "",
               options.print ? "" : "; --print prints the command lines");
  if (!options.print || rows.empty()) return exitConverged;
  if (options.slurm) {
    std::fputs(slurmScript(options.table, options.program, rows).c_str(), stdout);
    return exitConverged;
  }
  for (const StudyRow& row : rows) std::fputs((commandLine(options.program, row) + "\n").c_str(), stdout);
  return exitConverged;
}

}  // namespace host
