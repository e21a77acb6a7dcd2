// Every case runs twice: arrays flush against the page behind them, and against the page before them.
#pragma once

#include <gtest/gtest.h>

#include "errors/hostile_host.hpp"
#include "errors/isolated.hpp"

namespace hostile {

class Hostile : public testing::TestWithParam<Flush> {};

inline std::string flushName(const testing::TestParamInfo<Flush>& info) {
  return info.param == Flush::end ? "End" : "Start";
}

/// One case: `body` sees `flush` and runs isolated.
#define HOSTILE_CASE(suite, name)                                            \
  static void suite##name##Body([[maybe_unused]] ::hostile::Flush flush);    \
  TEST_P(suite, name) {                                                      \
    ::hostile::isolated([flush = GetParam()] { suite##name##Body(flush); }); \
  }                                                                          \
  static void suite##name##Body([[maybe_unused]] ::hostile::Flush flush)

/// A suite of such cases.
#define HOSTILE_SUITE(suite)                                                                              \
  class suite : public ::hostile::Hostile {};                                                             \
  INSTANTIATE_TEST_SUITE_P(Flush, suite, testing::Values(::hostile::Flush::end, ::hostile::Flush::start), \
                           ::hostile::flushName)

}  // namespace hostile
