// A folder of its own for each test, removed at its end.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>

class ScratchFolder {
 public:
  ScratchFolder() {
    std::random_device any;
    do path_ = std::filesystem::temp_directory_path() / ("tornwalzen_test_" + std::to_string(any()));
    while (!std::filesystem::create_directory(path_));  // it is there already
  }
  ~ScratchFolder() { std::filesystem::remove_all(path_); }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string path() const { return path_.string(); }
  std::string file(const std::string& name) const { return (path_ / name).string(); }
  // Writes the file and returns its path.
  std::string write(const std::string& name, const std::string& content) const {
    std::ofstream(file(name), std::ios::binary) << content;
    return file(name);
  }
  std::string read(const std::string& name) const {
    std::ifstream stream(file(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  // The names in `folder` below this one.
  std::set<std::string> names(const std::string& folder = "") const {
    std::set<std::string> found;
    if (!std::filesystem::exists(path_ / folder)) return found;
    for (const auto& entry : std::filesystem::directory_iterator(path_ / folder))
      found.insert(entry.path().filename().string());
    return found;
  }

 private:
  std::filesystem::path path_;
};
