#include "system/file.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "app/scratch_folder.hpp"
#include "system/path.hpp"

using namespace host;

namespace {

// Blanks, umlauts, and signs that no one code page has together.
const std::string strangeName = "N\xC3\xA4pfchen \xE6\x97\xA5\xD0\x96 1.obj";

bool writeAndClose(int file, const std::string& bytes) {
  return file >= 0 && writeBytes(file, bytes) && bringOntoDisk(file) && closeFile(file);
}

std::string readWhole(const std::string& path) {
  const int file = openToRead(path);
  if (file < 0) return "cannot be opened";
  std::string content(1000, 0);
  std::size_t filled = 0;
  for (std::int64_t got; (got = readBytes(file, content.data() + filled, 7)) > 0;)
    filled += static_cast<std::size_t>(got);
  closeFile(file);
  content.resize(filled);
  return content;
}

}  // namespace

TEST(Files, KeepEveryByteUnderAnyName) {
  const ScratchFolder folder;
  const std::string path = folder.file("") + strangeName, bytes = std::string("a\r\nb\n\0\x1A end", 12);
  ASSERT_TRUE(writeAndClose(createFile(path), bytes));
  EXPECT_EQ(readWhole(path), bytes);
  EXPECT_TRUE(std::filesystem::exists(pathOf(path)));
  EXPECT_TRUE(removeFile(path));
  EXPECT_TRUE(folder.names().empty());
}

TEST(Files, ACreatedOneReplacesNothing) {
  const ScratchFolder folder;
  const std::string path = folder.write("a", "old");
  EXPECT_LT(createFile(path), 0);
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(folder.read("a"), "old");
  ASSERT_TRUE(writeAndClose(replaceFile(path), "n"));
  EXPECT_EQ(folder.read("a"), "n");
}

TEST(Files, MoveIntoThePlaceOfAnother) {
  const ScratchFolder folder;
  const std::string from = folder.write("from", "new"), to = folder.file("") + strangeName;
  ASSERT_TRUE(writeAndClose(createFile(to), "old"));
  ASSERT_TRUE(moveFile(from, to));
  EXPECT_EQ(readWhole(to), "new");
  EXPECT_EQ(folder.names().size(), 1u);
  EXPECT_FALSE(moveFile(from, to));
  EXPECT_EQ(errno, ENOENT);
}

TEST(Files, AnUnfinishedOneGoesWhileItIsWritten) {
  const ScratchFolder folder;
  const int file = createFile(folder.file("a"));
  ASSERT_GE(file, 0);
  EXPECT_TRUE(writeBytes(file, "half"));
  EXPECT_TRUE(removeFile(folder.file("a")));
  EXPECT_TRUE(closeFile(file));
  EXPECT_TRUE(folder.names().empty());
}

TEST(Files, WhatIsNotThereIsSaid) {
  const ScratchFolder folder;
  FileStatus status;
  for (const std::string& path : {folder.file("none"), folder.file("none/none")}) {
    EXPECT_LT(openToRead(path), 0);
    EXPECT_EQ(errno, ENOENT) << path;
    errno = 0;
    EXPECT_FALSE(statusOf(path, status));
    EXPECT_EQ(errno, ENOENT) << path;
    EXPECT_FALSE(removeFile(path));
    EXPECT_EQ(errno, ENOENT) << path;
    EXPECT_FALSE(isProgram(path));
  }
}

TEST(FileStatus, TellsKindLengthAndPlace) {
  const ScratchFolder folder;
  const std::string a = folder.write("a", "four"), b = folder.write("b", "");
  FileStatus ofFolder, ofA, again, ofB;
  ASSERT_TRUE(statusOf(folder.path(), ofFolder));
  EXPECT_EQ(ofFolder.kind, FileKind::folder);
  ASSERT_TRUE(statusOf(a, ofA));
  EXPECT_EQ(ofA.kind, FileKind::plain);
  EXPECT_EQ(ofA.length, 4);
  ASSERT_TRUE(statusOf(b, ofB));
  EXPECT_TRUE(ofA.device == ofB.device && ofA.number != ofB.number);
  const int file = openToRead(a);
  ASSERT_TRUE(statusOf(file, again));
  closeFile(file);
  EXPECT_TRUE(again.device == ofA.device && again.number == ofA.number && again.seconds == ofA.seconds &&
              again.nanoseconds == ofA.nanoseconds);
}

TEST(FileStatus, SeesAChangeOfTheSameLength) {
#ifdef _WIN32
  constexpr std::chrono::nanoseconds step = std::chrono::seconds(2);  // the library sets whole seconds
#else
  constexpr std::chrono::nanoseconds step = std::chrono::milliseconds(20);
#endif
  const ScratchFolder folder;
  const std::string path = folder.write("a", "four");
  const auto time = std::chrono::floor<std::chrono::seconds>(std::filesystem::last_write_time(path));
  FileStatus before, after;
  std::filesystem::last_write_time(path, time);
  ASSERT_TRUE(statusOf(path, before));
  std::filesystem::last_write_time(path, time - step);
  ASSERT_TRUE(statusOf(path, after));
  EXPECT_EQ((before.seconds - after.seconds) * 1'000'000'000 + before.nanoseconds - after.nanoseconds,
            step.count());
}

TEST(OwnFolder, IsNewEachTime) {
  const ScratchFolder folder;
  std::string first = folder.file("") + strangeName, second = first;
  ASSERT_TRUE(makeOwnFolder(first));
  ASSERT_TRUE(makeOwnFolder(second));
  EXPECT_NE(first, second);
  EXPECT_EQ(folder.names().size(), 2u);
  std::string nowhere = folder.file("none/none");
  EXPECT_FALSE(makeOwnFolder(nowhere));
}

TEST(Paths, AreTakenApartAndPutTogetherUnderAnyName) {
  EXPECT_EQ(pathText(pathOf(strangeName)), strangeName);
  EXPECT_EQ(pathText(pathOf(strangeName).stem()) + ".obj", strangeName);
  EXPECT_EQ(pathText(pathOf(placeIn(strangeName, "a")).parent_path()), strangeName);
}

TEST(Terminal, AFileIsNone) {
  const ScratchFolder folder;
  const int file = openToRead(folder.write("a", "a"));
  EXPECT_FALSE(isTerminal(file));
  closeFile(file);
}
