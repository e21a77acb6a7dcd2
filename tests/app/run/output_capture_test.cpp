#include "run/output_capture.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

using namespace host;

TEST(OutputCapture, ReceivesEveryLineInOrderAndGivesTheScreenBack) {
  std::vector<std::string> lines;
  {
    const OutputCapture capture([&](std::string_view line) { lines.emplace_back(line); });
    std::printf("first\n\nthi");
    std::fflush(stdout);
    std::printf("rd\nwithout an end");
  }
  EXPECT_THAT(lines, testing::ElementsAre("first", "", "third", "without an end"));
  testing::internal::CaptureStdout();
  std::printf("again on the screen\n");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "again on the screen\n");
}

TEST(OutputCapture, DoesNotBlockWhenMuchIsPrinted) {
  std::size_t received = 0;
  {
    const OutputCapture capture([&](std::string_view line) { received += line.size() + 1; });
    for (int k = 0; k < 20000; ++k) std::printf("%079d\n", k);  // far more than a pipe holds
  }
  EXPECT_EQ(received, 20000u * 80u);
}

TEST(OutputCapture, CanBeUsedAgain) {
  std::string all;
  for (const char* text : {"one\n", "two\n"}) {
    const OutputCapture capture([&](std::string_view line) { all += line; });
    std::fputs(text, stdout);
  }
  EXPECT_EQ(all, "onetwo");
}
