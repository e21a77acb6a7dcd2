#include "system/same_file.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "app/refusal.hpp"
#include "app/scratch_folder.hpp"

using namespace host;
namespace fs = std::filesystem;

TEST(SameFile, SeesThroughLinks) {
  const ScratchFolder folder;
  const std::string a = folder.write("a", "x"), other = folder.write("other", "x");
  fs::create_symlink("a", folder.file("link"));
  fs::create_symlink("link", folder.file("second"));
  fs::create_hard_link(a, folder.file("hard"));
  for (const char* name : {"a", "link", "second", "hard"})
    EXPECT_TRUE(sameFile(a, folder.file(name))) << name;
  EXPECT_TRUE(sameFile(folder.path() + "/./a", a));
  EXPECT_FALSE(sameFile(a, other));
}

TEST(SameFile, NothingReplacesWhatIsNotThereNorAPipe) {
  const ScratchFolder folder;
  ASSERT_EQ(::mkfifo(folder.file("pipe").c_str(), 0600), 0);
  EXPECT_FALSE(sameFile(folder.file("none"), folder.file("none")));
  EXPECT_FALSE(sameFile(folder.file("pipe"), folder.file("pipe")));
  EXPECT_FALSE(sameFile("/dev/null", "/dev/null"));
}

TEST(SameFile, OutputsAreComparedWithEveryInput) {
  const ScratchFolder folder;
  const std::string a = folder.write("a", ""), b = folder.write("b", "");
  EXPECT_EQ(refusal([&] {
              checkOutputsSpareInputs({a, ""}, {"", b, folder.file("c")}, "cure");
            }),
            "(not refused)");
  EXPECT_EQ(refusal([&] {
              checkOutputsSpareInputs({"", a, b}, {folder.file("c"), b}, "cure");
            }),
            b + " would be replaced, but it is read as " + b + "; cure");
}
