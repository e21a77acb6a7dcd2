#include "system/work_folder.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using namespace host;

TEST(WorkFolder, IsGoneWithItsFilesAtItsEnd) {
  std::string path;
  {
    WorkFolder folder;
    path = folder.path();
    EXPECT_TRUE(std::filesystem::is_directory(path));
    std::ofstream(folder.file("a")) << "a";
    std::ofstream(path + "/unforeseen") << "b";
  }
  EXPECT_FALSE(std::filesystem::exists(path));
}
