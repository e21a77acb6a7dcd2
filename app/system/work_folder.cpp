// A folder for files that only this process needs; see the header.
#include "system/work_folder.hpp"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "system/failure.hpp"
#include "system/file.hpp"
#include "system/path.hpp"
#include "system/process.hpp"

namespace host {

WorkFolder::WorkFolder() {
  std::error_code error;
  const std::filesystem::path above = std::filesystem::temp_directory_path(error);
  path_ = placeIn(error ? "/tmp" : pathText(above), "tornwalzen_");
  if (!makeOwnFolder(path_))
    throw Failure("cannot make a folder for the import, " + path_ + ": " + std::strerror(errno));
  removeOnSignal(path_);
}

WorkFolder::~WorkFolder() {
  std::error_code error;
  std::filesystem::remove_all(pathOf(path_), error);
  for (const std::string& name : files_) keepOnSignal(name);
  keepOnSignal(path_);
}

std::string WorkFolder::file(const std::string& name) {
  const std::string whole = path_ + "/" + name;
  for (const std::string& known : files_)
    if (known == whole) return whole;
  files_.push_back(whole);
  removeOnSignal(whole);
  return whole;
}

}  // namespace host
