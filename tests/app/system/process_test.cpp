#include "system/process.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "result/result_files.hpp"
#include "app/scratch_folder.hpp"

using namespace host;

namespace {

// Writes two results, is hit by the signal before (or after) they are put into place, and does not return.
void beHit(const std::string& folder, int signal, bool inPlace) {
  prepareProcess();
  ResultFiles files(folder);
  files.add("a.txt", [](FileWriter& file) { file.write("whole"); });
  files.add("b.txt", [&](FileWriter& file) {
    file.write(std::string(100000, 'x'));
    if (!inPlace) ::raise(signal);
  });
  files.putIntoPlace();
  ::raise(signal);
}

}  // namespace

TEST(SignalDeathTest, RemovesFilesThatAreBeingWritten) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const ScratchFolder folder;
    EXPECT_EXIT(beHit(folder.path(), signal, false), testing::KilledBySignal(signal),
                "tornwalzen: interrupted; no result file was written");
    EXPECT_TRUE(folder.names().empty()) << signal;
  }
}

TEST(SignalDeathTest, LeavesFilesThatAreInPlaceAndSaysNothing) {
  const ScratchFolder folder;
  EXPECT_EXIT(beHit(folder.path(), SIGTERM, true), testing::KilledBySignal(SIGTERM), "^$");
  EXPECT_THAT(folder.names(), testing::ElementsAre("a.txt", "b.txt"));
}

TEST(SignalDeathTest, StaysIgnoredWhereItWasIgnored) {
  EXPECT_EXIT(
      {
        std::signal(SIGHUP, SIG_IGN);
        prepareProcess();
        ::raise(SIGHUP);
        std::exit(7);
      },
      testing::ExitedWithCode(7), "^$");
}

TEST(UnfinishedFiles, AreCountedAndTheirPathsMeasured) {
  EXPECT_FALSE(removeOnSignal(std::string(4096, 'x')));
  for (int k = 0; k < 16; ++k) EXPECT_TRUE(removeOnSignal("/nonexistent/" + std::to_string(k)));
  EXPECT_FALSE(removeOnSignal("/nonexistent/16"));
  for (int k = 0; k < 16; ++k) keepOnSignal("/nonexistent/" + std::to_string(k));
  EXPECT_TRUE(removeOnSignal("/nonexistent/16"));
  keepOnSignal("/nonexistent/16");
}
