#include "system/child_process.hpp"

#include <gtest/gtest.h>

#include <chrono>

#include "app/refusal.hpp"
#include "app/scratch_folder.hpp"

using namespace host;

TEST(ChildProcess, ReturnsTheStatusAndKeepsWhatWasPrinted) {
  const ScratchFolder folder;
  const ChildEnd end =
      runChild({"/bin/sh", "-c", "echo out; echo err >&2; cat; exit 7"}, folder.file("output"), 60.0);
  EXPECT_EQ(end.status, 7);
  EXPECT_EQ(end.signal, 0);
  EXPECT_FALSE(end.overdue);
  EXPECT_EQ(folder.read("output"), "out\nerr\n");
}

TEST(ChildProcess, TellsTheSignalThatEndedIt) {
  const ScratchFolder folder;
  EXPECT_EQ(runChild({"/bin/sh", "-c", "kill -SEGV $$"}, folder.file("output"), 60.0).signal, 11);
}

TEST(ChildProcess, EndsWhatTakesTooLongWithAllThatItStarted) {
  const ScratchFolder folder;
  const auto start = std::chrono::steady_clock::now();
  const ChildEnd end =
      runChild({"/bin/sh", "-c", "(sleep 3; echo late >" + folder.file("late") + ") & sleep 60"},
               folder.file("output"), 0.2);
  EXPECT_TRUE(end.overdue);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(40));
  runChild({"/bin/sleep", "4"}, folder.file("output"), 60.0);
  EXPECT_EQ(folder.names().count("late"), 0u);
}

TEST(ChildProcess, SaysWhatCannotBeStarted) {
  const ScratchFolder folder;
  EXPECT_EQ(refusal([&] { runChild({"/nowhere/program"}, folder.file("output"), 1.0); }),
            "cannot run /nowhere/program: No such file or directory");
}
