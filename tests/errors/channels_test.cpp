// The message and progress functions with what a careless host hands them, and handlers that misbehave.
#include <gmock/gmock.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "errors/hostile_case.hpp"

namespace {

using namespace hostile;

HOSTILE_SUITE(HostileChannels);

GuardedArray<char>& textOf(std::size_t length, Flush flush) {
  static GuardedArray<char> text("text", flush);
  text.resize(static_cast<std::int64_t>(length));
  std::memset(text.data(), 'x', length);
  return text;
}

HOSTILE_CASE(HostileChannels, ATextWithoutEndIsReadForEightyCharacters) {
  prttxt(textOf(80, flush).data(), 80);
  EXPECT_EQ(printedOut(), std::string(80, 'x') + "\n");
}

HOSTILE_CASE(HostileChannels, AnInformationLineWithoutEndIsReadForItsLength) {
  std::string received;
  PlivaneSetProgressHdlr(
      [](void* text, const TornwalzenProgress* record) { *static_cast<std::string*>(text) = record->text; },
      &received);
  proinf(textOf(127, flush).data(), 127);
  EXPECT_EQ(received, std::string(127, 'x'));
}

HOSTILE_CASE(HostileChannels, NullTextsAndValues) {
  for (const bool handler : {false, true}) {
    int calls = 0;
    if (handler)
      PlivaneSetProgressHdlr([](void* count, const TornwalzenProgress*) { ++*static_cast<int*>(count); },
                             &calls);
    prttxt(nullptr, 5);
    proinf(nullptr, 5);
    inipgr(nullptr);
    progre(nullptr);
    prterr();
    EXPECT_EQ(calls, 0) << "nothing to report";
  }
  EXPECT_EQ(printedOut(), "");
}

HOSTILE_CASE(HostileChannels, LengthsAreNotBelieved) {
  for (const std::int32_t length : {0, -1, std::numeric_limits<std::int32_t>::max()}) prttxt("text", length);
  EXPECT_EQ(printedOut(), "text\ntext\ntext\n");
}

HOSTILE_CASE(HostileChannels, ProgressScalesThatAreNone) {
  std::vector<double> values;
  PlivaneSetProgressHdlr(
      [](void* list, const TornwalzenProgress* record) {
        static_cast<std::vector<double>*>(list)->push_back(record->value);
      },
      &values);
  const double nan = std::numeric_limits<double>::quiet_NaN(), one = 1.0;
  progre(&one);  // before any scale was opened
  inipgr(&nan);
  progre(&one);
  progre(&nan);
  inipgr(&one);
  progre(&one);  // a scale of length zero
  progre(&one);
  EXPECT_EQ(values.size(), 5u);
}

HOSTILE_CASE(HostileChannels, NoHandlerAtAll) {
  Host host(dome(), flush);
  PlivaneSetProgressHdlr(nullptr, &host);
  host.setUp();
  EXPECT_EQ(host.analyse(), 1);
  EXPECT_TRUE(host.progress.events.empty());
}

HOSTILE_CASE(HostileChannels, AHandlerThatPrintsAndUnregistersItself) {
  Host host(dome(), flush);
  PlivaneSetProgressHdlr(
      [](void* calls, const TornwalzenProgress* record) {
        prttxt(record->text != nullptr ? record->text : "fraction", 0);
        prttxt("own line", 8);
        if (++*static_cast<int*>(calls) == 5) PlivaneSetProgressHdlr(nullptr, nullptr);
      },
      [] {
        static int calls = 0;
        return &calls;
      }());
  host.setUp();
  EXPECT_EQ(host.analyse(), 1);
  host.expectTruth();
  EXPECT_THAT(printedOut(), testing::HasSubstr("own line\n"));
}

HOSTILE_CASE(HostileChannels, AHandlerThatOpensScalesOfItsOwn) {
  Host host(dome(), flush);
  static int depth = 0;
  PlivaneSetProgressHdlr(
      [](void*, const TornwalzenProgress*) {
        if (depth > 2) return;
        ++depth;
        const double end = 3.0;
        inipgr(&end);
        progre(&end);
        procpu();
        proinf("inner", 5);
        --depth;
      },
      nullptr);
  host.setUp();
  EXPECT_EQ(host.analyse(), 1);
  host.expectTruth();
}

HOSTILE_CASE(HostileChannels, ClosedStandardStreams) {
  Host host(dome(), flush);
  close(STDOUT_FILENO);
  close(STDERR_FILENO);
  host.INZI[0] = 0;
  EXPECT_EQ(host.init(1), -1);
  host.INZI[0] = 1;
  host.setUp();
  EXPECT_EQ(host.analyse(), 1);
  EXPECT_TRUE(host.converged());
}

}  // namespace
