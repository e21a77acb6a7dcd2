#include "run_log.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include "refusal.hpp"
#include "scratch_folder.hpp"

using namespace host;

TEST(RunLog, CountsIncrementsRepeatsAndNewtonIterations) {
  const ScratchFolder folder;
  RunLog log(folder.file("log"));
  for (const char* line :
       {"IZ,EN,EN1,L-FAK     1 0.100000E+01@", " @", " START INKRMEMENT      1",
        "MAX.GRAD, LS-FAK, EN   0.123000E+02   1.0", "MAX.GRAD, LS-FAK, EN   0.500000E-01   1.0",
        " START INKRMEMENT      2", "INKREMENT WIRD WIEDERHOLT @", " START INKRMEMENT      2",
        " MAX.GRAD, LS-FAK, EN  0.250000E-02  1.0"})
    log.take(line, -1);
  EXPECT_EQ(log.counts().attempts, 3);
  EXPECT_EQ(log.counts().repeats, 1);
  EXPECT_EQ(log.counts().increments(), 2);
  EXPECT_EQ(log.counts().newtonIterations, 3);
  EXPECT_EQ(log.counts().lastGradient, 0.0025);
  EXPECT_FALSE(log.counts().stepTooSmall);
}

TEST(RunLog, NoticesThatTheStepBecameTooSmall) {
  const ScratchFolder folder;
  RunLog log(folder.file("log"));
  log.take(" KEINE KONVERGENZ, MINIMLAE SCHRITTWEITE @", -1);
  EXPECT_TRUE(log.counts().stepTooSmall);
}

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

TEST(RunLog, RemembersThatTheDiskIsFullAndGoesOnCounting) {
  if (::access("/dev/full", W_OK) != 0) GTEST_SKIP() << "skipped: no /dev/full here";
  RunLog log("/dev/full");
  log.take(" START INKRMEMENT      1", -1);
  EXPECT_EQ(log.problem(), "cannot write /dev/full: No space left on device");
  EXPECT_EQ(log.counts().attempts, 1);
}

TEST(RunLog, SaysWhyItCannotBeginItsFile) {
  EXPECT_EQ(refusal([] { RunLog("/nonexistent/log"); }),
            "cannot write /nonexistent/log: No such file or directory");
}
