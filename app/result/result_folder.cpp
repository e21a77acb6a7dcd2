// Whose results lie in a folder; see the header.
#include "result/result_folder.hpp"

#include <filesystem>
#include <nlohmann/json.hpp>

#include "result/summary.hpp"
#include "system/failure.hpp"
#include "system/input_file.hpp"
#include "system/path.hpp"

namespace host {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

constexpr const char* cure = "; choose another folder with --out, or replace them with --force";

std::string textOf(const Json& json, const char* key) {
  const auto entry = json.find(key);
  return entry != json.end() && entry->is_string() ? entry->get<std::string>() : "";
}

}  // namespace

void checkFolderIsFree(const std::string& folder, const std::vector<std::string>& names,
                       const FileIdentity& part) {
  std::string found;
  std::error_code error;
  for (const std::string& name : names)
    if (found.empty() && fs::exists(fs::symlink_status(pathOf(folder) / name, error))) found = name;
  if (found.empty()) return;
  const Json json = Json::parse(readRecordFile(placeIn(folder, "summary.json")), nullptr, false);
  const FileIdentity owner =
      json.is_object() ? FileIdentity{textOf(json, partPathKey), textOf(json, partHashKey)} : FileIdentity{};
  if (owner.hash.empty())
    throw Failure("the folder " + folder + " holds " + found +
                  ", and no summary.json there tells that it is a result of this program" + cure);
  if (!sameIdentity(owner, {inSummary(part.path), part.hash}))
    throw Failure("the folder " + folder + " holds the results of another part, " +
                  (owner.path.empty() ? textOf(json, "part") : owner.path) + cure);
}

}  // namespace host
