// Replays the corpus of one fuzz target in the ordinary test run.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/fuzz_target.hpp"

namespace {

namespace fs = std::filesystem;

TEST(FuzzReplay, TheCorpusReplaysWithoutAFinding) {
  std::vector<fs::path> corpus;
  for (const auto& entry : fs::directory_iterator(TORNWALZEN_CORPUS)) corpus.push_back(entry.path());
  std::sort(corpus.begin(), corpus.end());
  EXPECT_GE(corpus.size(), 10u);
  for (const fs::path& file : corpus) {
    SCOPED_TRACE(file.filename().string());
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    testing::internal::CaptureStdout();  // the library prints its messages
    testing::internal::CaptureStderr();
    const int status =
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    testing::internal::GetCapturedStdout();
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(status, 0);
  }
}

}  // namespace
