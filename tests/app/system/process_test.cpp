#include "system/process.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <string>

#include "app/scratch_folder.hpp"
#include "result/result_files.hpp"

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

const char* nameOf(int signal) {
  return signal == SIGINT ? "SIGINT" : signal == SIGTERM ? "SIGTERM" : "SIGHUP";
}

// Is hit by the first signal and goes on, and perhaps by the second.
void stopInOrder(int first, int second) {
  prepareProcess();
  {
    const OrderlyStop orderly;
    ::raise(first);
    if (second != 0) ::raise(second);
    std::fprintf(stderr, "noted %d, goes on\n", notedSignal());
  }
  endBySignal(notedSignal());
}

}  // namespace

TEST(SignalDeathTest, RemovesFilesThatAreBeingWritten) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const ScratchFolder folder;
    EXPECT_EXIT(beHit(folder.path(), signal, false), testing::KilledBySignal(signal),
                std::string("tornwalzen: stopped by ") + nameOf(signal) + "; no result file was written");
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

TEST(SignalDeathTest, IsNotedWhileAComputationEndsInOrder) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP})
    EXPECT_EXIT(stopInOrder(signal, 0), testing::KilledBySignal(signal),
                "^noted " + std::to_string(signal) + ", goes on\ntornwalzen: stopped by " + nameOf(signal) +
                    "; no result file was written\n$");
}

TEST(SignalDeathTest, ASecondOneEndsAtOnce) {
  EXPECT_EXIT(stopInOrder(SIGINT, SIGTERM), testing::KilledBySignal(SIGTERM),
              "^\ntornwalzen: stopped by SIGTERM; no result file was written\n$");
}

TEST(SignalDeathTest, EndsAtOnceAgainBehindTheComputation) {
  EXPECT_EXIT(
      {
        prepareProcess();
        { const OrderlyStop orderly; }
        ::raise(SIGINT);
        std::exit(7);
      },
      testing::KilledBySignal(SIGINT), "stopped by SIGINT");
}

TEST(UnfinishedFiles, AreCountedAndTheirPathsMeasured) {
  EXPECT_FALSE(removeOnSignal(std::string(4096, 'x')));
  for (int k = 0; k < 16; ++k) EXPECT_TRUE(removeOnSignal("/nonexistent/" + std::to_string(k)));
  EXPECT_FALSE(removeOnSignal("/nonexistent/16"));
  for (int k = 0; k < 16; ++k) keepOnSignal("/nonexistent/" + std::to_string(k));
  EXPECT_TRUE(removeOnSignal("/nonexistent/16"));
  keepOnSignal("/nonexistent/16");
}
