#include "run/run_log.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include "app/refusal.hpp"
#include "app/scratch_folder.hpp"

using namespace host;

TEST(RunLog, WritesEachLineAtOnceToFileAndScreen) {
  const ScratchFolder folder;
  folder.write("log", "of an earlier run");
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  RunLog log(folder.file("log"));
  log.take("one", ends[1]);
  log.take("two", -1);
  EXPECT_EQ(folder.read("log"), "one\ntwo\n");
  char screen[16] = {};
  EXPECT_EQ(::read(ends[0], screen, sizeof screen), 4);
  EXPECT_STREQ(screen, "one\n");
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST(RunLog, RemembersThatTheDiskIsFull) {
  if (::access("/dev/full", W_OK) != 0) GTEST_SKIP() << "skipped: no /dev/full here";
  RunLog log("/dev/full");
  log.take(" START INKRMEMENT      1", -1);
  EXPECT_EQ(log.problem(), "cannot write /dev/full: No space left on device");
}

TEST(RunLog, SaysWhyItCannotBeginItsFile) {
  EXPECT_EQ(refusal([] { RunLog("/nonexistent/log"); }),
            "cannot write /nonexistent/log: No such file or directory");
}
