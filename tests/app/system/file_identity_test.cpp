#include "system/file_identity.hpp"

#include <gtest/gtest.h>

#include <filesystem>

#include "app/scratch_folder.hpp"

using namespace host;

// The vectors that the authors of the hash publish.
TEST(FileIdentity, HashAgreesWithPublishedVectors) {
  EXPECT_EQ(contentHash(""), "fnv1a64:cbf29ce484222325");
  EXPECT_EQ(contentHash("a"), "fnv1a64:af63dc4c8601ec8c");
  EXPECT_EQ(contentHash("foobar"), "fnv1a64:85944171f73967e8");
}

TEST(FileIdentity, APlaceIsKnownBehindLinks) {
  const ScratchFolder folder;
  folder.write("a", "x");
  std::error_code error;
  std::filesystem::create_symlink("a", folder.file("link"), error);
  if (error) GTEST_SKIP() << "skipped: no symbolic links here";
  EXPECT_EQ(identityOf(folder.file("link"), "x").path, std::filesystem::canonical(folder.file("a")).string());
  EXPECT_EQ(identityOf("/dev/null", "").path, "");
  EXPECT_EQ(identityOf(folder.file("gone"), "x").path, "");
}

TEST(FileIdentity, PlaceOrBytesMakeTheSame) {
  EXPECT_TRUE(sameIdentity({"/a", "1"}, {"/a", "2"}));
  EXPECT_TRUE(sameIdentity({"/a", "1"}, {"/b", "1"}));
  EXPECT_FALSE(sameIdentity({"/a", "1"}, {"/b", "2"}));
  EXPECT_FALSE(sameIdentity({"", "1"}, {"", "2"}));
  EXPECT_FALSE(sameIdentity({"", ""}, {"", ""}));
}
