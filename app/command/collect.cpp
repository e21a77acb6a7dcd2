// The command `tornwalzen collect`; see the header.
#include "command/collect.hpp"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>

#include "command/outcome.hpp"
#include "command/solve_options.hpp"
#include "result/result_files.hpp"
#include "system/failure.hpp"
#include "system/input_file.hpp"
#include "system/path.hpp"
#include "system/text.hpp"

namespace host {

namespace {

using Json = nlohmann::ordered_json;
namespace fs = std::filesystem;

constexpr int deepestObject = 4;  // in a summary; ours have two
constexpr const char* tableName = "collected.csv";
constexpr const char* pageName = "overview.html";

bool holdsRun(const fs::path& folder) {
  std::error_code error;
  for (const char* name : {outcomeName, "summary.json", "tornwalzen.log"})
    if (fs::exists(folder / name, error)) return true;
  return false;
}

std::string textOf(const Json& value) {
  if (value.is_null()) return "";
  return value.is_string() ? value.get<std::string>()
                           : value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// The scalars of a summary by their keys; those of an object inside with a dot between. depth: of objects that may follow.
void addFigures(const Json& json, const std::string& before, int depth, std::vector<OverviewCell>& figures) {
  for (const auto& [key, value] : json.items()) {
    if (value.is_object() && depth > 0)
      addFigures(value, before + key + ".", depth - 1, figures);
    else if (!value.is_structured())
      figures.push_back({before + key, textOf(value)});
  }
}

std::string reasonIn(const Json& summary) {
  std::string reason = textOf(summary.value("reason", Json(nullptr)));
  for (const Json& why : summary.value("verdict_reasons", Json::array()))
    reason += (reason.empty() ? "" : "; ") + textOf(why);
  return reason;
}

// The options that a run was given. arguments: of solve.
std::vector<OverviewCell> optionsIn(const std::vector<std::string>& arguments) {
  std::vector<OverviewCell> options;
  for (std::size_t k = 0; k < arguments.size(); ++k) {
    const std::string& word = arguments[k];
    if (!word.starts_with("--")) {
      options.push_back({"PART", word});
      continue;
    }
    const std::size_t equals = word.find('=');
    const std::string name = word.substr(0, equals);
    std::string value = equals == std::string::npos ? "yes" : word.substr(equals + 1);
    if (equals == std::string::npos && solveOption(name) == OptionKind::value && k + 1 < arguments.size())
      value = arguments[++k];
    if (name != "--out" && name != "--outcome" && name != "--quiet" && name != "--json" && name != "--force")
      options.push_back({name.substr(2), value});
  }
  return options;
}

void takeFigures(const Json& summary, OverviewRow& row) {
  row.verdict = textOf(summary.value("verdict", Json("")));
  row.reason = reasonIn(summary);
  addFigures(summary, "", deepestObject, row.figures);
}

// Files of these names are replaced only if this command made them.
void checkPlaces(const fs::path& folder, bool force) {
  for (const auto& [name, beginning] :
       {std::pair{tableName, overviewTableBeginning}, {pageName, overviewPageBeginning}}) {
    const fs::path place = folder / name;
    std::error_code error;
    if (force || !fs::exists(fs::symlink_status(place, error))) continue;
    if (!fs::is_regular_file(place, error) || !readInputFile(pathText(place)).starts_with(beginning))
      throw Failure(pathText(place) +
                    " is not of this command; choose another folder with --out, or replace it with --force");
  }
}

// Where the page leads to a run's own, from the folder it lies in.
std::string linkTo(const OverviewRow& row, const fs::path& from) {
  const fs::path page = pathOf(row.folder) / "report.html";
  std::error_code error;
  if (!fs::exists(page, error)) return "";
  return pathText(fs::proximate(page, from, error).generic_u8string());
}

}  // namespace

bool takeSummary(const std::string& content, OverviewRow& row) {
  try {
    const Json json = Json::parse(content);
    if (!json.is_object() || !json.contains("converged")) return false;
    takeFigures(json, row);
    return true;
  } catch (const Json::exception&) {
    return false;
  }
}

OverviewRow rowOf(const std::string& folder) {
  OverviewRow row;
  row.folder = folder;
  const std::optional<Outcome> outcome = readOutcome(placeIn(folder, outcomeName));
  if (outcome) {
    row.status = std::to_string(outcome->status);
    row.options = optionsIn(outcome->arguments);
  }
  const bool ended = !outcome || outcome->status == exitConverged || outcome->status == exitUnconverged;
  if (ended && takeSummary(readRecordFile(placeIn(folder, "summary.json")), row)) return row;
  if (outcome && !outcome->reason.empty()) {
    row.verdict = outcome->status == exitRunFailed ? "failed" : "refused";
    row.reason = outcome->reason;
  } else {
    row.verdict = "not finished";
    row.reason = outcome ? "its summary.json cannot be read" : "the run did not end, or has not begun";
  }
  return row;
}

std::vector<std::string> runFolders(const std::vector<std::string>& folders) {
  std::vector<std::string> runs;
  for (const std::string& folder : folders) {
    std::error_code error;
    if (!fs::is_directory(pathOf(folder), error)) throw Failure(folder + " is no folder");
    if (holdsRun(folder)) {
      runs.push_back(folder);
      continue;
    }
    std::vector<std::string> below;
    for (fs::directory_iterator entry(pathOf(folder), error), end; !error && entry != end;
         entry.increment(error))
      if (entry->is_directory(error) && holdsRun(entry->path())) below.push_back(pathText(entry->path()));
    if (error) throw Failure("cannot read the folder " + folder + ": " + error.message());
    if (below.empty()) throw Failure(folder + ": no results in it or directly below it");
    std::sort(below.begin(), below.end());
    runs.insert(runs.end(), below.begin(), below.end());
  }
  return runs;
}

int collect(const CollectOptions& options) {
  const std::string out = options.out.empty() ? options.folders.front() : options.out;
  Overview overview;
  for (const std::string& folder : runFolders(options.folders)) overview.rows.push_back(rowOf(folder));
  makeFolder(out);
  for (OverviewRow& row : overview.rows) row.link = linkTo(row, pathOf(out));
  checkPlaces(pathOf(out), options.force);
  ResultFiles files(out);
  files.add(tableName, [&](FileWriter& file) { writeOverviewTable(file, overview); });
  files.add(pageName, [&](FileWriter& file) { writeOverviewPage(file, overview); });
  files.putIntoPlace();
  std::map<std::string, std::int64_t> verdicts;
  for (const OverviewRow& row : overview.rows) ++verdicts[row.verdict];
  std::string counts;
  for (const auto& [verdict, count] : verdicts)
    counts += (counts.empty() ? "" : ", ") + std::to_string(count) + " " + verdict;
  std::printf("%s: %s\n%s\n%s\n", counted(static_cast<std::int64_t>(overview.rows.size()), "run").c_str(),
              counts.c_str(), placeIn(out, tableName).c_str(), placeIn(out, pageName).c_str());
  return exitConverged;
}

}  // namespace host
