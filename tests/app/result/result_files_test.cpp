#include "result/result_files.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>

#include "app/refusal.hpp"
#include "app/scratch_folder.hpp"

using namespace host;
using testing::ElementsAre;

namespace {

// Files of the process cannot grow beyond `bytes` while it lives: a full disk for those that write.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_{};
};

}  // namespace

TEST(ResultFiles, AppearOnlyWhenPutIntoPlace) {
  const ScratchFolder folder;
  folder.write("a.txt", "old");
  ResultFiles files(folder.path());
  files.add("a.txt", [](FileWriter& file) { file.write("new"); });
  EXPECT_EQ(folder.read("a.txt"), "old");
  files.putIntoPlace();
  EXPECT_EQ(folder.read("a.txt"), "new");
  EXPECT_THAT(folder.names(), ElementsAre("a.txt"));
}

TEST(ResultFiles, WithdrawnOnesGoWithTheNewOnesInPlace) {
  const ScratchFolder folder;
  folder.write("old.txt", "old");
  folder.write("kept.txt", "old");
  {
    ResultFiles files(folder.path());
    files.withdraw("old.txt");
  }
  EXPECT_EQ(folder.read("old.txt"), "old");  // never put into place
  ResultFiles files(folder.path());
  for (const char* name : {"old.txt", "kept.txt", "absent.txt"}) files.withdraw(name);
  files.add("kept.txt", [](FileWriter& file) { file.write("new"); });
  files.putIntoPlace();
  EXPECT_THAT(folder.names(), ElementsAre("kept.txt"));
  EXPECT_EQ(folder.read("kept.txt"), "new");
}

TEST(ResultFiles, AFolderInTheWayOfAWithdrawalIsNamed) {
  const ScratchFolder folder;
  std::filesystem::create_directory(folder.file("old.txt"));
  ResultFiles files(folder.path());
  files.withdraw("old.txt");
  EXPECT_THAT(
      refusal([&] { files.putIntoPlace(); }),
      testing::StartsWith("cannot remove " + folder.file("old.txt") + ", which is of an earlier run: "));
}

TEST(ResultFiles, LeaveNothingWhenNotPutIntoPlace) {
  const ScratchFolder folder;
  {
    ResultFiles files(folder.path());
    files.add("a.txt", [](FileWriter& file) { file.write("new"); });
    EXPECT_EQ(folder.names().size(), 1u);
  }
  EXPECT_TRUE(folder.names().empty());
}

TEST(ResultFiles, AFullDiskLeavesTheOldFilesAndNothingElse) {
  const ScratchFolder folder;
  folder.write("small.txt", "old small");
  folder.write("large.txt", "old large");
  const std::string said = refusal([&] {
    const FileSizeLimit limit(100000);
    ResultFiles files(folder.path());
    files.add("small.txt", [](FileWriter& file) { file.write("new"); });
    files.add("large.txt", [](FileWriter& file) {
      for (int k = 0; k < 1000; ++k) file.write(std::string(1000, 'x'));
    });
    files.putIntoPlace();
  });
  EXPECT_EQ(said, "cannot write " + folder.file("large.txt") + ": File too large");
  EXPECT_EQ(folder.read("small.txt"), "old small");
  EXPECT_EQ(folder.read("large.txt"), "old large");
  EXPECT_THAT(folder.names(), ElementsAre("large.txt", "small.txt"));
}

// They go onto the disk while others are made.
TEST(ResultFiles, WhatFailsAtTheEndOfAFileIsToldBeforeAnyIsPutIntoPlace) {
  const ScratchFolder folder;
  folder.write("first.txt", "old first");
  const std::string said = refusal([&] {
    const FileSizeLimit limit(100);
    ResultFiles files(folder.path());
    files.add("first.txt", [](FileWriter& file) { file.write("new"); });
    files.add("second.txt", [](FileWriter& file) { file.write(std::string(1000, 'x')); });
    files.add("third.txt", [](FileWriter& file) { file.write(std::string(1000, 'x')); });
    files.putIntoPlace();
  });
  EXPECT_EQ(said, "cannot write " + folder.file("second.txt") + ": File too large");
  EXPECT_EQ(folder.read("first.txt"), "old first");
  EXPECT_THAT(folder.names(), ElementsAre("first.txt"));
}

TEST(ResultFiles, TheFileThatFailedFirstIsNamed) {
  const ScratchFolder folder;
  const std::string said = refusal([&] {
    const FileSizeLimit limit(100);
    ResultFiles files(folder.path());
    files.add("small.txt", [](FileWriter& file) { file.write(std::string(1000, 'x')); });  // fails at its end
    files.add("large.txt", [](FileWriter& file) { file.write(std::string(100000, 'x')); });  // at once
  });
  EXPECT_EQ(said, "cannot write " + folder.file("small.txt") + ": File too large");
  EXPECT_THAT(folder.names(), testing::IsEmpty());
}

TEST(ResultFiles, NameTheFileInAFolderThatIsGone) {
  ResultFiles files("/nonexistent/folder");
  EXPECT_EQ(refusal([&] { files.add("a.txt", [](FileWriter&) {}); }),
            "cannot write /nonexistent/folder/a.txt: No such file or directory");
}

TEST(ResultFiles, WriteMoreThanOneBufferWhole) {
  const ScratchFolder folder;
  std::string all;
  ResultFiles files(folder.path());
  files.add("a.txt", [&](FileWriter& file) {
    for (int k = 0; k < 30000; ++k) {
      const std::string line = std::to_string(k) + "\n";
      file.write(line);
      all += line;
    }
  });
  files.putIntoPlace();
  EXPECT_TRUE(folder.read("a.txt") == all);
}

TEST(MakeFolder, MakesTheFoldersAboveToo) {
  const ScratchFolder folder;
  makeFolder(folder.file("a/b/c"));
  EXPECT_THAT(folder.names("a/b"), ElementsAre("c"));
  makeFolder(folder.file("a/b/c"));  // there already
}

TEST(MakeFolder, SaysWhyItCannot) {
  const ScratchFolder folder;
  folder.write("file", "");
  EXPECT_EQ(refusal([&] { makeFolder(folder.file("file/below")); }),
            "cannot make the folder " + folder.file("file/below") + ": Not a directory");
  EXPECT_EQ(refusal([&] { makeFolder(folder.file("file")); }),
            "cannot make the folder " + folder.file("file") + ": Not a directory");
}
