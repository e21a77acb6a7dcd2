#include "system/background.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <stdexcept>
#include <thread>

using namespace host;

TEST(Background, BringsWhatTheWorkReturnsOrThrows) {
  EXPECT_EQ(inBackground([] { return 7; }).get(), 7);
  auto failing = inBackground([]() -> int { throw std::runtime_error("no"); });
  EXPECT_THROW(failing.get(), std::runtime_error);
}

TEST(Background, WhereItIsNotWantedTheCallerWorks) {
  const std::thread::id caller = std::this_thread::get_id();
  const auto whose = [] { return std::this_thread::get_id(); };
  EXPECT_EQ(inBackgroundIf(false, whose).get(), caller);
  EXPECT_NE(inBackgroundIf(true, whose).get(), caller);
}

TEST(Background, EndingSignalsAreForTheCallerAlone) {
  const auto blocked = [] {
    sigset_t set;
    pthread_sigmask(SIG_BLOCK, nullptr, &set);
    int count = 0;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) count += sigismember(&set, signal);
    return count;
  };
  EXPECT_EQ(inBackground(blocked).get(), 3);
  EXPECT_EQ(blocked(), 0);
}
