// Fill and counts are those of bench/quality.csv, exactly. A change that means to change them writes the file
// anew: tornwalzen_quality FOLDER_OF_PARTS > bench/quality.csv
#include "quality.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>

namespace {

std::vector<std::string> recordedLines() {
  std::ifstream file(QUALITY_FILE);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

std::vector<std::string> recordedSubjects() {
  std::vector<std::string> subjects;
  for (const std::string& line : recordedLines()) {
    const std::string subject = line.substr(0, line.find(','));
    if (subject != "subject" && (subjects.empty() || subjects.back() != subject)) subjects.push_back(subject);
  }
  return subjects;
}

class Quality : public testing::TestWithParam<std::string> {};

TEST_P(Quality, isTheRecordedOne) {
  const std::vector<std::string> here = bench::qualitySubjects(TORNWALZEN_PARTS);
  if (std::find(here.begin(), here.end(), GetParam()) == here.end())
    GTEST_SKIP() << "skipped: part is not here";
  std::vector<std::string> measured, recorded;
  for (const bench::QualityRow& row : bench::quality(GetParam(), TORNWALZEN_PARTS))
    measured.push_back(bench::csvLine(row));
  for (const std::string& line : recordedLines())
    if (line.rfind(GetParam() + ",", 0) == 0) recorded.push_back(line);
  EXPECT_THAT(measured, testing::ElementsAreArray(recorded));
}

INSTANTIATE_TEST_SUITE_P(Recorded, Quality, testing::ValuesIn(recordedSubjects()), [](const auto& subject) {
  std::string name = subject.param;
  std::replace_if(
      name.begin(), name.end(), [](char c) { return c == ' ' || c == '-'; }, '_');
  return name;
});

TEST(QualityFile, namesEverySubjectThatNeedsNoRealPart) {
  const std::vector<std::string> recorded = recordedSubjects();
  for (const std::string& subject : bench::qualitySubjects(""))
    EXPECT_NE(std::find(recorded.begin(), recorded.end(), subject), recorded.end()) << subject;
}

}  // namespace
