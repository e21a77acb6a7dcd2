// The comma-separated tables that the verification programs leave for the pages.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace verification {

/// Opens the file anew and writes its heading; ends the program with a sentence where it cannot.
inline std::FILE* openTable(const std::string& path, const std::string& heading) {
  std::FILE* const file = std::fopen(path.c_str(), "w");
  if (file == nullptr) {
    std::perror(path.c_str());
    std::exit(2);
  }
  std::fprintf(file, "%s\n", heading.c_str());
  return file;
}

}  // namespace verification
