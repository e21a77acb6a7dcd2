// How a run of solve ended; see the header.
#include "command/outcome.hpp"

#include <filesystem>
#include <nlohmann/json.hpp>

#include "command/solve.hpp"
#include "result/result_files.hpp"
#include "system/failure.hpp"
#include "system/input_file.hpp"
#include "system/path.hpp"
#include "system/same_file.hpp"

namespace host {

namespace {

using Json = nlohmann::ordered_json;
namespace fs = std::filesystem;

constexpr const char* format = "tornwalzen outcome 1";

void writeOutcome(const SolveOptions& options, int status, const std::string& reason) {
  const Json json{{"format", format},           {"program", "tornwalzen " TORNWALZEN_VERSION},
                  {"status", status},           {"reason", reason.empty() ? Json(nullptr) : Json(reason)},
                  {"arguments", options.words}, {"folder", options.out}};
  const fs::path place = pathOf(options.outcome);
  ResultFiles files(pathText(place.parent_path()));
  files.add(pathText(place.filename()), [&](FileWriter& file) {
    file.write(json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
  });
  files.putIntoPlace();
}

}  // namespace

int solveWithOutcome(const SolveOptions& options) {
  if (options.outcome.empty()) return solve(options);
  const fs::path place = pathOf(options.outcome);
  checkOutputsSpareInputs({options.part, options.curve, options.materials, options.shop.flc},
                          {options.outcome}, "choose another name with --outcome");
  if (place.has_parent_path()) makeFolder(pathText(place.parent_path()));
  std::error_code error;
  fs::remove(place, error);  // where that fails, writing will
  try {
    const int status = solve(options);
    writeOutcome(options, status, "");
    return status;
  } catch (const Failure& failure) {
    writeOutcome(options, failure.status(), failure.what());
    throw;
  } catch (const std::bad_alloc&) {
    writeOutcome(options, exitRefused, "not enough memory");
    throw;
  }
}

std::optional<Outcome> outcomeIn(const std::string& content) {
  try {
    const Json json = Json::parse(content);
    if (json.at("format") != format || !json.at("status").is_number_integer()) return std::nullopt;
    Outcome outcome;
    outcome.status = json.at("status").get<int>();
    if (json.at("reason").is_string()) outcome.reason = json.at("reason").get<std::string>();
    outcome.arguments = json.at("arguments").get<std::vector<std::string>>();
    outcome.folder = json.at("folder").get<std::string>();
    return outcome;
  } catch (const Json::exception&) {
    return std::nullopt;
  }
}

std::optional<Outcome> readOutcome(const std::string& path) {
  return outcomeIn(readRecordFile(path));
}

}  // namespace host
