// Reading whole files: what changes, ends early or does not end while it is read.
#include "system/input_file.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <thread>

#include "app/refusal.hpp"
#include "app/scratch_folder.hpp"

using namespace host;

namespace {

const std::string longText(200000, 'x');  // longer than the first bytes that are looked at

std::string changedWhileRead(const std::function<void(const std::string& path)>& change) {
  const ScratchFolder folder;
  const std::string path = folder.write("part", longText);
  const std::string sentence =
      refusal([&] { readInputFile(path, [&](const std::string&, std::int64_t) { change(path); }); });
  return sentence.substr(0, sentence.find(path)) + "FILE" +
         sentence.substr(sentence.find(path) + path.size());
}

// What a reader gets of a pipe whose writer writes `text` and goes away.
std::string throughPipe(const std::string& text) {
  const ScratchFolder folder;
  const std::string path = folder.file("pipe");
  EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
  std::thread writer([&] { std::ofstream(path, std::ios::binary) << text; });
  const std::string content = readInputFile(path);
  writer.join();
  return content;
}

}  // namespace

TEST(InputFile, GivesTheBytesOfAFileOfAnyLength) {
  const ScratchFolder folder;
  for (const std::size_t length : {0, 1, 65535, 65536, 65537, 200000}) {
    const std::string text = longText.substr(0, length);
    EXPECT_EQ(readInputFile(folder.write("file", text)), text) << length;
  }
}

TEST(InputFile, GivesTheBytesOfAPipeOfAnyLength) {
  for (const std::size_t length : {0, 1, 65535, 65536, 65537, 131072, 200000})
    EXPECT_EQ(throughPipe(longText.substr(0, length)), longText.substr(0, length)) << length;
}

TEST(InputFile, ShowsTheFirstBytesAndTheLengthBeforeItReadsOn) {
  const ScratchFolder folder;
  std::string seen;
  std::int64_t length = 0;
  const HeadCheck look = [&](const std::string& head, std::int64_t all) {
    seen = head;
    length = all;
  };
  readInputFile(folder.write("long", longText), look);
  EXPECT_EQ(seen, longText.substr(0, 65536));
  EXPECT_EQ(length, 200000);
  readInputFile(folder.write("short", "abc"), look);
  EXPECT_EQ(seen, "abc");
  EXPECT_EQ(length, 3);
  readInputFile("/dev/null", look);
  EXPECT_EQ(seen, "");
  EXPECT_EQ(length, -1);
}

TEST(InputFile, RemovedWhileItIsReadIsStillReadWhole) {
  const ScratchFolder folder;
  const std::string path = folder.write("part", longText);
  EXPECT_EQ(readInputFile(path, [&](const std::string&, std::int64_t) { std::filesystem::remove(path); }),
            longText);
}

TEST(InputFile, ChangedWhileItIsReadIsRefused) {
  const std::string sentence = "cannot read FILE: it changed while it was read";
  for (const std::uintmax_t length : {0, 70000, 199999, 200001, 3000000})
    EXPECT_EQ(changedWhileRead([&](const std::string& path) { std::filesystem::resize_file(path, length); }),
              sentence)
        << length;
  EXPECT_EQ(changedWhileRead([](const std::string& path) {  // the same length, written anew
              const auto before = std::filesystem::last_write_time(path);
              std::ofstream(path, std::ios::binary) << std::string(200000, 'y');
              std::filesystem::last_write_time(path, before + std::chrono::seconds(1));
            }),
            sentence);
}

TEST(InputFile, AnEndlessInputIsGivenUp) {
  EXPECT_EQ(refusal([] { readInputFile("/dev/zero"); }),
            "cannot read /dev/zero: no end within 268435456 bytes; a longer part must be a file");
}

TEST(RecordFile, IsReadIfItIsPlainAndShort) {
  const ScratchFolder folder;
  const std::string most(1 << 20, 'x');
  EXPECT_EQ(readRecordFile(folder.write("summary", "{}")), "{}");
  EXPECT_TRUE(readRecordFile(folder.write("longest", most)) == most);  // no megabyte of a message
  EXPECT_TRUE(readRecordFile(folder.write("longer", most + "x")).empty());
  EXPECT_EQ(readRecordFile(folder.file("none")), "");
  EXPECT_EQ(readRecordFile(folder.path()), "");
  EXPECT_EQ(readRecordFile("/dev/zero"), "");
}
