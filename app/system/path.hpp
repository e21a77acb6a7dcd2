// Paths as text. Inside the program a path is UTF-8 (where the system's paths are bytes, those bytes); std::filesystem
// would read text by the system's code page, which on Windows has not every sign.
#pragma once

#include <filesystem>
#include <string>

namespace host {

std::filesystem::path pathOf(const std::string& text);
std::string pathText(const std::filesystem::path& path);

// The path of `name` in the folder.
inline std::string placeIn(const std::string& folder, const std::string& name) {
  return pathText(pathOf(folder) / pathOf(name));
}

}  // namespace host
