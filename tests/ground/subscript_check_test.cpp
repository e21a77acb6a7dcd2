// Host indices that are out of range: the line on standard error to the letter, the error word, and what
// passes.
#include "ground/subscript_check.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <vector>

#include "ground/ended_process.hpp"
#include "ground/subscript_message.hpp"
#include "host_kit/default_run.hpp"

namespace {

using namespace tornwalzen;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

class SubscriptCheck : public testing::Test {
 protected:
  void SetUp() override { run.ierrso = 0; }
  void TearDown() override { run.ierrso = 0; }

  // Runs `check`; its result, and whether the error word says the same.
  template <class Check>
  bool passes(Check check) {
    CaptureStderr();
    const bool result = check();
    line = GetCapturedStderr();
    EXPECT_EQ(run.ierrso, result ? 0 : -1);
    EXPECT_EQ(line.empty(), result);
    return result;
  }
  bool pattern(std::vector<Int> COLS, std::vector<Int> ROWI) {
    const Int neq = static_cast<Int>(COLS.size()) - 1;
    return passes([&] {
      return patternInside(run, {"COLS", COLS.data(), static_cast<Int64>(COLS.size())},
                           {"ROWI", ROWI.data(), static_cast<Int64>(ROWI.size())}, neq);
    });
  }
  std::string line;
};

TEST_F(SubscriptCheck, AboveTheUpperBound) {
  CaptureStderr();
  reportSubscript("KNG", 1, 5, 4);
  EXPECT_EQ(
      GetCapturedStderr(),
      "fort: (2): Subscript #1 of the array KNG has value 5 which is greater than the upper bound of 4\n");
}

TEST_F(SubscriptCheck, BelowTheLowerBound) {
  CaptureStderr();
  reportSubscript("INTA", 2, 0, 4);
  EXPECT_EQ(
      GetCapturedStderr(),
      "fort: (3): Subscript #2 of the array INTA has value 0 which is less than the lower bound of 1\n");
}

#ifdef __unix__
TEST(SubscriptCheckDeathTest, ASubscriptOfOurOwnEndsTheProcessAfterItsLine) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_DEATH(
      {
        std::signal(SIGABRT, [](int) { keepCounts(); });
        subscriptAbort("KNG", 2, 4, 3);
      },
      "^fort: \\(2\\): Subscript #2 of the array KNG has value 4 which is greater than the upper bound of "
      "3\n");
}
#endif

TEST_F(SubscriptCheck, ValuesAreSixtyFourBitsWide) {
  CaptureStderr();
  reportSubscript("ROWI", 1, 6442450941, 6442450940);
  EXPECT_EQ(GetCapturedStderr(),
            "fort: (2): Subscript #1 of the array ROWI has value 6442450941 which is greater than the upper "
            "bound of "
            "6442450940\n");
  CaptureStderr();
  reportSubscript("ROWI", 1, -6442450941, 1);
  EXPECT_EQ(
      GetCapturedStderr(),
      "fort: (3): Subscript #1 of the array ROWI has value -6442450941 which is less than the lower bound of "
      "1\n");
}

TEST_F(SubscriptCheck, IncidencesInsideTheMeshPassInSilence) {
  const std::vector<Int> INTA = {1, 2, 2, 3, 3, 4};
  EXPECT_TRUE(passes([&] { return incidencesInside(run, {"INTA", INTA.data(), 2, 3}, 4); }));
}

TEST_F(SubscriptCheck, AnEmptyMeshPasses) {
  EXPECT_TRUE(passes([] { return incidencesInside(run, {"INTA", nullptr, 0, 3}, 0); }));
}

TEST_F(SubscriptCheck, AnIncidenceAboveTheLastNodeIsNamed) {
  const std::vector<Int> INTA = {1, 2, 2, 3, 3, 5};
  EXPECT_FALSE(passes([&] { return incidencesInside(run, {"INTA", INTA.data(), 2, 3}, 4); }));
  EXPECT_EQ(
      line,
      "fort: (2): Subscript #1 of the array KNG has value 5 which is greater than the upper bound of 4\n");
}

TEST_F(SubscriptCheck, AnIncidenceBelowOneIsNamedAndOnlyTheFirstOfMany) {
  const std::vector<Int> INTA = {1, -7, 0, 3, 99, 4};
  EXPECT_FALSE(passes([&] { return incidencesInside(run, {"INTA", INTA.data(), 2, 3}, 4); }));
  EXPECT_EQ(
      line,
      "fort: (3): Subscript #1 of the array KNG has value -7 which is less than the lower bound of 1\n");
}

TEST_F(SubscriptCheck, ALowerTriangleByColumnsPasses) {
  EXPECT_TRUE(pattern({1, 3, 4}, {1, 2, 2}));
}

TEST_F(SubscriptCheck, RowCapacityMayExceedWhatIsUsed) {
  EXPECT_TRUE(pattern({1, 3, 4}, {1, 2, 2, 99, -1}));
}

TEST_F(SubscriptCheck, APatternMustStartAtOne) {
  EXPECT_FALSE(pattern({0, 3, 4}, {1, 2, 2}));
  EXPECT_EQ(
      line,
      "fort: (3): Subscript #1 of the array ROWI has value 0 which is less than the lower bound of 1\n");
  run.ierrso = 0;
  EXPECT_FALSE(pattern({2, 3, 4}, {1, 1, 2}));
  EXPECT_EQ(
      line,
      "fort: (2): Subscript #1 of the array ROWI has value 2 which is greater than the upper bound of 1\n");
}

TEST_F(SubscriptCheck, AColumnPointerPastTheCapacityIsNamed) {
  EXPECT_FALSE(pattern({1, 3, 5}, {1, 2, 2}));
  EXPECT_EQ(
      line,
      "fort: (2): Subscript #1 of the array ROWI has value 4 which is greater than the upper bound of 3\n");
}

TEST_F(SubscriptCheck, ThePointerAfterTheLastMayBeTheLargestInteger) {
  EXPECT_FALSE(pattern({1, 2147483647}, {1}));
  EXPECT_EQ(line,
            "fort: (2): Subscript #1 of the array ROWI has value 2147483646 which is greater than the upper "
            "bound of "
            "1\n");
}

TEST_F(SubscriptCheck, AColumnMustEndBehindItsFirstEntry) {
  EXPECT_FALSE(pattern({1, 1, 2}, {2}));
  EXPECT_EQ(
      line,
      "fort: (3): Subscript #1 of the array ROWI has value 0 which is less than the lower bound of 1\n");
  run.ierrso = 0;
  EXPECT_FALSE(pattern({1, 3, 2}, {1, 2, 2}));
  EXPECT_EQ(
      line,
      "fort: (3): Subscript #1 of the array ROWI has value 1 which is less than the lower bound of 3\n");
  run.ierrso = 0;
  EXPECT_FALSE(pattern({1, 3, -2147483647 - 1}, {1, 2, 2}));
  EXPECT_EQ(line,
            "fort: (3): Subscript #1 of the array ROWI has value -2147483649 which is less than the lower "
            "bound of 3"
            "\n");
}

TEST_F(SubscriptCheck, ARowIndexPastTheLastEquationIsNamed) {
  EXPECT_FALSE(pattern({1, 3, 4}, {1, 3, 2}));
  EXPECT_EQ(
      line,
      "fort: (2): Subscript #1 of the array TEMP has value 3 which is greater than the upper bound of 2\n");
}

TEST_F(SubscriptCheck, ARowIndexAboveTheDiagonalIsRefused) {
  EXPECT_FALSE(pattern({1, 3, 4}, {1, 2, 1}));
  EXPECT_EQ(
      line,
      "fort: (3): Subscript #1 of the array TEMP has value 1 which is less than the lower bound of 2\n");
  run.ierrso = 0;
  EXPECT_FALSE(pattern({1, 3, 4}, {1, -5, 2}));
  EXPECT_EQ(
      line,
      "fort: (3): Subscript #1 of the array TEMP has value -5 which is less than the lower bound of 1\n");
}

TEST_F(SubscriptCheck, OfALongListTheFirstOffenderIsNamed) {
  const std::vector<Int> indices = {1, 2, 3, 11, -1};
  EXPECT_FALSE(passes([&] { return subscriptsInside(run, {"INZI", indices.data(), 5}, "KNOTS", 10); }));
  EXPECT_EQ(line,
            "fort: (2): Subscript #1 of the array KNOTS has value 11 which is greater than the upper bound "
            "of 10\n");
}

}  // namespace
