// On Windows a child of the test is the test's own program, which acts as its environment says.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <cstdio>
#include <thread>

#include "app/refusal.hpp"
#include "app/scratch_folder.hpp"
#include "system/child_process.hpp"
#include "system/process.hpp"

using namespace host;

namespace {

constexpr const char* act = "TORNWALZEN_ACT";
const std::vector<std::string> strangeWords = {"two words",     "",     "\"quoted\"",
                                               "back\\slash\\", "\\\"", "N\xC3\xA4pfchen \xE6\x97\xA5"};

// Runs this program as an actor.
ChildEnd runActor(const char* what, const std::string& output, double seconds) {
  std::vector<std::string> words = {programArguments(0, nullptr)[0], "--gtest_filter=Actor.Acts"};
  words.insert(words.end(), strangeWords.begin(), strangeWords.end());
  SetEnvironmentVariableA(act, what);
  const ChildEnd end = runChild(words, output, seconds);
  SetEnvironmentVariableA(act, nullptr);
  return end;
}

}  // namespace

TEST(Actor, Acts) {
  const std::string what = environmentValue(act);
  if (what.empty()) GTEST_SKIP() << "skipped: acts where another test starts it";
  if (what == "tell") {
    const std::vector<std::string> words = programArguments(0, nullptr);
    for (std::size_t k = 2; k < words.size(); ++k) std::fprintf(stderr, "word %s\n", words[k].c_str());
    std::fprintf(stderr, "input %d\n", std::getchar());
    std::fflush(nullptr);
    TerminateProcess(GetCurrentProcess(), 7);
  }
  if (what == "start another") runActor("sleep and write", "late", 60.0);
  std::this_thread::sleep_for(std::chrono::seconds(3));
  std::printf("late\n");
}

TEST(ChildProcessOnWindows, ReturnsTheStatusAndGetsEveryWordAsItIs) {
  const ScratchFolder folder;
  const ChildEnd end = runActor("tell", folder.file("output"), 60.0);
  EXPECT_EQ(end.status, 7);
  EXPECT_FALSE(end.overdue);
  std::string said;
  for (const std::string& word : strangeWords) said += "word " + word + "\n";
  std::string output = folder.read("output");
  std::erase(output, '\r');
  EXPECT_THAT(output, testing::HasSubstr(said + "input -1\n"));  // nothing to read
}

TEST(ChildProcessOnWindows, EndsWhatTakesTooLongWithAllThatItStarted) {
  const ScratchFolder folder;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(runActor("start another", folder.file("output"), 1.5).overdue);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  std::this_thread::sleep_for(std::chrono::seconds(4));
  std::FILE* const late = std::fopen("late", "r");
  ASSERT_NE(late, nullptr) << "the other was not started";
  std::string text(4000, 0);
  text.resize(std::fread(text.data(), 1, text.size(), late));
  std::fclose(late);
  std::remove("late");
  EXPECT_EQ(text.find("late"), std::string::npos) << text;
}

TEST(ChildProcessOnWindows, SaysWhatCannotBeStarted) {
  const ScratchFolder folder;
  EXPECT_EQ(refusal([&] { runChild({"C:\\nowhere\\program.exe"}, folder.file("output"), 1.0); }),
            "cannot run C:\\nowhere\\program.exe: No such file or directory");
}
