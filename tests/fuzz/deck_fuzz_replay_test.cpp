// Replays the fuzzer's corpus in the ordinary test run.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/deck_fuzz.hpp"

namespace {

namespace fs = std::filesystem;

TEST(DeckFuzz, TheCorpusReplaysWithoutAFinding) {
  std::vector<fs::path> corpus;
  for (const auto& entry : fs::directory_iterator(TORNWALZEN_DECK_CORPUS)) corpus.push_back(entry.path());
  std::sort(corpus.begin(), corpus.end());
  EXPECT_GE(corpus.size(), 10u);
  for (const fs::path& file : corpus) {
    SCOPED_TRACE(file.filename().string());
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_EQ(LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()), 0);
  }
}

}  // namespace
