// The program under stress: no room, no permission, no screen, and signals in the middle of a run.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/mesh/sample_meshes.hpp"
#include "app/program/program.hpp"

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

const std::set<std::string> allResults{"blank.dxf", "blank.obj",   "blank.svg",    "blank.vtu",
                                       "part.vtu",  "report.html", "summary.json", "tornwalzen.log"};

// A run that is long enough to be stopped: the signal is sent when a line of the progress tells of `phase`. The
// shell lets background jobs ignore SIGINT; env sets that right.
std::string stopped(const std::string& signal, const std::string& phase, const std::string& options = "") {
  return "env --default-signal=INT \"$TORNWALZEN\" solve pipe.obj --force --path fixed --out results " +
         options + " 2>progress & run=$!\nuntil grep -q " + phase +
         " progress; do kill -0 $run || exit 99; sleep 0.01; done\nkill -" + signal + " $run; wait $run";
}

class Signal : public testing::TestWithParam<std::pair<const char*, int>> {};

}  // namespace

TEST_P(Signal, LeavesNoHalfWrittenResultsAndTheOldOnesWhole) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(120, 120));
  std::filesystem::create_directory(folder.file("results"));
  folder.write("results/blank.obj", "of an earlier run");
  const std::string name = GetParam().first;
  const Outcome outcome = shell(folder, stopped(name, "increment"));
  EXPECT_EQ(outcome.status, 128 + GetParam().second);
  EXPECT_THAT(folder.read("progress"),
              EndsWith("\ntornwalzen: stopped by SIG" + name + "; no result file was written\n"));
  EXPECT_THAT(folder.names("results"), ElementsAre("blank.obj", "tornwalzen.log"));
  EXPECT_EQ(folder.read("results/blank.obj"), "of an earlier run");
}

TEST_P(Signal, EndsTheSetUpAndTheDevelopmentToo) {
  for (const char* phase : {"ordering", "developing"}) {
    const ScratchFolder folder;
    folder.write("pipe.obj", halfPipeObj(240, 240));
    const Outcome outcome = shell(folder, stopped(GetParam().first, phase));
    EXPECT_EQ(outcome.status, 128 + GetParam().second) << phase;
    EXPECT_THAT(folder.read("progress"), Not(HasSubstr("increment"))) << phase;
    EXPECT_THAT(folder.names("results"), ElementsAre("tornwalzen.log")) << phase;
  }
}

// The log of a run that ends in order is whole: its last line is one of the library's and ends.
TEST(Stress, ARunThatIsStoppedLeavesWholeLinesInItsLog) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(120, 120));
  const Outcome outcome = shell(folder, stopped("INT", "increment", "--verbose"));
  EXPECT_EQ(outcome.status, 130);
  const std::string log = folder.read("results/tornwalzen.log");
  EXPECT_THAT(log, EndsWith("\n"));
  EXPECT_EQ(outcome.out, log) << "what was shown is what was kept, and no table follows";
}

TEST(Stress, ASignalThatIsIgnoredStopsNothing) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(24, 8));
  const Outcome outcome =
      shell(folder,
            "env --ignore-signal=HUP \"$TORNWALZEN\" solve pipe.obj --out results & run=$!\n"
            "until [ -e results/tornwalzen.log ]; do kill -0 $run || exit 99; done\n"
            "kill -HUP $run; wait $run");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(folder.names("results"), allResults);
}

INSTANTIATE_TEST_SUITE_P(Stress, Signal,
                         testing::Values(std::pair("INT", 2), std::pair("TERM", 15), std::pair("HUP", 1)),
                         [](const auto& test) { return std::string(test.param.first); });

TEST(Stress, AFolderThatCannotBeMadeIsToldBeforeTheRun) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(8, 4));
  folder.write("file", "");
  const Outcome outcome = tornwalzen(folder, "solve pipe.obj --out file/below");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "tornwalzen: cannot make the folder file/below: Not a directory\n");
}

TEST(Stress, AFolderWithoutPermissionIsToldBeforeTheRun) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(8, 4));
  const Outcome outcome =
      tornwalzen(folder, "solve pipe.obj --out /proc/results");  // nobody may, not even root
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, StartsWith("tornwalzen: cannot make the folder /proc/results: "));
}

TEST(Stress, AFullDiskIsToldAndLeavesNoHalfWrittenResults) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(24, 8));
  std::filesystem::create_directory(folder.file("results"));
  folder.write("results/summary.json", "of an earlier run");
  // files of at most 16 blocks of 512 bytes: blank.obj does not fit
  const Outcome outcome = shell(folder, "ulimit -f 16; \"$TORNWALZEN\" solve pipe.obj --force --out results");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, HasSubstr("\ntornwalzen: cannot write results/blank.obj: File too large\n"));
  EXPECT_THAT(folder.names("results"), ElementsAre("summary.json", "tornwalzen.log"));
  EXPECT_EQ(folder.read("results/summary.json"), "of an earlier run");
}

TEST(Stress, ClosedStandardStreamsDoNoHarm) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(8, 4));
  for (const char* closed : {">&-", "2>&-", ">&- 2>&- <&-", "--verbose >&-"}) {
    EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --out results " + std::string(closed)).status, 0) << closed;
    EXPECT_EQ(folder.names("results"), allResults) << closed;
    EXPECT_THAT(folder.read("results/blank.obj"), StartsWith("# flat blank")) << closed;
    EXPECT_THAT(folder.read("results/tornwalzen.log"), HasSubstr("SICHERER WEG KONVERGIERT")) << closed;
  }
}

TEST(Stress, AReaderThatGoesAwayDoesNoHarm) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(8, 4));
  const Outcome outcome =
      shell(folder, "{ \"$TORNWALZEN\" solve pipe.obj --verbose --out results; echo $? >status; } | true");
  EXPECT_EQ(folder.read("status"), "0\n") << outcome.err;
  EXPECT_EQ(folder.names("results"), allResults);
}

TEST(Stress, AFullDiskBehindStandardOutputIsTold) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(8, 4));
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "skipped: no /dev/full here";
  const Outcome outcome = tornwalzen(folder, "solve pipe.obj --out results >/dev/full");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, HasSubstr("tornwalzen: No space left on device\n"));
  EXPECT_EQ(folder.names("results"), allResults);
}

// Runs the program with 400 MB of memory; the sanitizer itself needs more.
Outcome withLittleMemory(const ScratchFolder& folder, const std::string& arguments) {
#ifdef __SANITIZE_ADDRESS__
  const std::string limit;
#else
  const std::string limit = "ulimit -v 400000; ";  // KiB
#endif
  return shell(folder, limit + "\"$TORNWALZEN\" " + arguments);
}

// Lengthens a file with zeros that take no room on the disk.
void lengthen(const ScratchFolder& folder, const std::string& name, std::uintmax_t length) {
  std::filesystem::resize_file(folder.file(name), length);
}

constexpr std::uintmax_t twoGigabytes = 2200000000;  // more than 31 bits count

TEST(Stress, AnnouncedSizesAreNotBelieved) {
  const ScratchFolder folder;
  folder.write("part.stl", std::string(80, ' ') + "\xff\xff\xff\xff and no more");
  const Outcome outcome = withLittleMemory(folder, "solve part.stl");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err,
            "tornwalzen: part.stl: announces 4294967295 triangles, that is 214748364834 bytes, but has 96\n");
}

TEST(Stress, GigabytesThatAreNoPartAreRefusedUnread) {
  const ScratchFolder folder;
  const std::string triangle = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";
  const std::pair<std::string, std::string> files[] = {
      {"part.obj", triangle}, {"empty.obj", ""}, {"named", "solid part\n"}};
  for (const auto& [name, head] : files) {
    folder.write(name, head);
    lengthen(folder, name, twoGigabytes);
    const Outcome outcome = withLittleMemory(folder, "solve " + name);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err,
                testing::StartsWith("tornwalzen: " + name + ": the content is of no format that is read ("));
  }
}

TEST(Stress, GigabytesOfAnotherLengthThanAnnouncedAreRefusedUnread) {
  const ScratchFolder folder;
  for (const auto& [count, bytes] :
       {std::pair("\xff\xff\xff\xff", "4294967295 triangles, that is 214748364834"),
        std::pair("\x01\x02\x03\x02", "33751553 triangles, that is 1687577734")}) {
    folder.write("part.stl", std::string(80, ' ') + count);
    lengthen(folder, "part.stl", twoGigabytes);
    const Outcome outcome = withLittleMemory(folder, "solve part.stl");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err,
              "tornwalzen: part.stl: announces " + std::string(bytes) + " bytes, but has 2200000000\n");
  }
}

TEST(Stress, APartBeyondTheMemoryIsToldWithItsSize) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "skipped: the memory of this build cannot be limited";
#endif
  const ScratchFolder folder;
  folder.write("part.stl", std::string(80, ' ') + std::string("\0\x3b\x9f\x02", 4));  // 43 989 760 triangles
  lengthen(folder, "part.stl", 84 + 50 * std::uintmax_t{43989760});
  const Outcome outcome = withLittleMemory(folder, "solve part.stl");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "tornwalzen: cannot read part.stl: not enough memory for 2199488084 bytes\n");
}

TEST(Stress, AnInputThatDoesNotEndIsGivenUp) {
  const ScratchFolder folder;
  const Outcome outcome = shell(folder, "yes 'v 1 2 3' | \"$TORNWALZEN\" solve /dev/stdin");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(
      outcome.err,
      "tornwalzen: cannot read /dev/stdin: no end within 268435456 bytes; a longer part must be a file\n");
}

TEST(Stress, APipeWhoseWriterGoesAwayIsReadAsFarAsItCame) {
  const ScratchFolder folder;
  folder.write("part.stl", "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\n");
  const Outcome outcome =
      shell(folder, "mkfifo pipe; (cat part.stl >pipe) & \"$TORNWALZEN\" solve pipe --out results");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "tornwalzen: pipe, line 5: \"vertex\" expected, found the end of the file\n");
  EXPECT_EQ(folder.names("results"), std::set<std::string>{});
}

TEST(Stress, AnInputRemovedWhileItIsReadDoesNoHarm) {
  const ScratchFolder folder;
  folder.write("part.obj", halfPipeObj(8, 4));
  // the pipe is open on both sides before its name goes, and filled afterwards
  const Outcome outcome = shell(folder,
                                "mkfifo pipe; \"$TORNWALZEN\" solve pipe --out results & run=$!\n"
                                "exec 3>pipe; rm pipe; cat part.obj >&3; exec 3>&-; wait $run");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(folder.names("results"), allResults);
}
