// A refusal has its code, its two texts, and leaves everything as it was.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "host_kit/default_run.hpp"
#include "tornwalzen_ext.h"

namespace extension {

/// Starts and ends in the state after loading.
class ExtensionTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(tornwalzen_reset(), 0); }
  void TearDown() override { EXPECT_EQ(tornwalzen_reset(), 0); }
};

/// All that the library keeps but the refusal itself, as bytes.
inline std::string libraryState() {
  std::string bytes;
  const auto add = [&bytes](const auto& object) {
    bytes.append(reinterpret_cast<const char*>(&object), sizeof object);
  };
  const tornwalzen::Analysis& run = tornwalzen::run;
  add(static_cast<const tornwalzen::MeshState&>(run));
  add(static_cast<const tornwalzen::RunState&>(run));
  add(run.options);
  add(run.messages);
  add(run.progress);
  add(run.npkt);
  add(run.FC);
  return bytes;
}

template <class Call>
void expectRefused(Call call, int code, const std::string& german, const std::string& english) {
  const std::string before = libraryState();
  EXPECT_EQ(call(), code) << english;
  EXPECT_EQ(tornwalzen_error_text(code, 0), german);
  EXPECT_EQ(tornwalzen_error_text(code, 1), english);
  EXPECT_EQ(libraryState(), before) << english;
}

}  // namespace extension
