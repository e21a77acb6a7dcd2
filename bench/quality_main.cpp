// Prints what bench/quality.csv holds, measured anew.
// usage: tornwalzen_quality [FOLDER OF REAL PARTS]
#include <cstdio>
#include <exception>

#include "quality.hpp"

int main(int argc, char** argv) try {
  const std::string parts = argc > 1 ? argv[1] : "";
  std::printf("subject,quantity,value\n");
  for (const std::string& subject : bench::qualitySubjects(parts))
    for (const bench::QualityRow& row : bench::quality(subject, parts))
      std::printf("%s\n", bench::csvLine(row).c_str());
  return 0;
} catch (const std::exception& e) {
  std::fprintf(stderr, "%s\n", e.what());
  return 1;
}
