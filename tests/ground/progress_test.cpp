// The progress channel: what the host's handler is told, and when.
#include "ground/progress.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace tornwalzen;

struct Told {
  double value;
  int32_t kind;
  std::optional<std::string> text;
};

void keep(void* userdata, const TornwalzenProgress* record) {
  std::optional<std::string> text;
  if (record->text != nullptr) text = record->text;
  static_cast<std::vector<Told>*>(userdata)->push_back({record->value, record->kind, text});
}

class Progress : public testing::Test {
 protected:
  void SetUp() override { PlivaneSetProgressHdlr(keep, &told); }
  void TearDown() override { PlivaneSetProgressHdlr(nullptr, nullptr); }
  static void open(double end) { inipgr(&end); }
  static void tell(double x) { progre(&x); }
  std::vector<Told> told;
};

TEST_F(Progress, FractionsRunFromTheFirstValueToTheEnd) {
  open(1.0);
  tell(0.0);
  tell(0.25);
  tell(1.0);
  ASSERT_EQ(told.size(), 3u);
  EXPECT_EQ(told[0].value, 0.0);
  EXPECT_EQ(told[1].value, 0.25);
  EXPECT_EQ(told[2].value, 1.0);
  for (const Told& t : told) {
    EXPECT_EQ(t.kind, 0);
    EXPECT_FALSE(t.text.has_value());
  }
}

TEST_F(Progress, AScaleMayRunDownwards) {  // the development's measure falls from its start to 0.8
  open(0.8);
  tell(2.8);
  tell(1.8);
  ASSERT_EQ(told.size(), 2u);
  EXPECT_DOUBLE_EQ(told[1].value, 0.5);
}

TEST_F(Progress, TheSameValueTwiceIsZeroTwice) {
  open(1.0);
  tell(0.5);
  tell(0.5);
  ASSERT_EQ(told.size(), 2u);
  EXPECT_EQ(told[0].value, 0.0);
  EXPECT_EQ(told[1].value, 0.0);
}

TEST_F(Progress, ANewScaleStartsAgainAtZero) {
  open(1.0);
  tell(0.0);
  tell(1.0);
  open(10.0);
  tell(5.0);
  tell(7.5);
  ASSERT_EQ(told.size(), 4u);
  EXPECT_EQ(told[2].value, 0.0);
  EXPECT_EQ(told[3].value, 0.5);
}

TEST_F(Progress, AScaleThatStartsAtItsEndHasNoFractionAndGoesOn) {
  open(1.0);
  tell(1.0);
  tell(1.0);
  ASSERT_EQ(told.size(), 2u);
  EXPECT_EQ(told[0].value, 0.0);
  EXPECT_TRUE(std::isnan(told[1].value));
}

TEST_F(Progress, WithoutAHandlerNothingIsToldAndTheFirstCallIsStillToCome) {
  open(1.0);
  PlivaneSetProgressHdlr(nullptr, &told);
  tell(0.25);
  proinf("text", 4);
  procpu();
  EXPECT_TRUE(told.empty());
  PlivaneSetProgressHdlr(keep, &told);
  tell(0.5);
  tell(0.75);
  ASSERT_EQ(told.size(), 2u);
  EXPECT_EQ(told[0].value, 0.0);
  EXPECT_EQ(told[1].value, 0.5);
}

TEST_F(Progress, ANewRegistrationTakesTheReportsOver) {
  std::vector<Told> other;
  PlivaneSetProgressHdlr(keep, &other);
  proinf("x", 1);
  EXPECT_TRUE(told.empty());
  EXPECT_EQ(other.size(), 1u);
}

TEST_F(Progress, AnInformationLineIsATextOfKindOne) {
  proinf(" Tornwalzen - Inverse Projektion :    ", 128);
  ASSERT_EQ(told.size(), 1u);
  EXPECT_EQ(told[0].value, 0.0);
  EXPECT_EQ(told[0].kind, 1);
  EXPECT_EQ(told[0].text, " Tornwalzen - Inverse Projektion :    ");
}

TEST_F(Progress, AnInformationLineEndsAtItsZeroByte) {
  proinf("vorne\0hinten", 12);
  proinf("", 0);
  ASSERT_EQ(told.size(), 2u);
  EXPECT_EQ(told[0].text, "vorne");
  EXPECT_EQ(told[1].text, "");
}

TEST_F(Progress, AnInformationLineHasAtMost127Characters) {
  const std::string exact(127, 'a'), longer(300, 'b');
  proinf(exact.c_str(), 128);
  proinf(longer.c_str(), 128);
  ASSERT_EQ(told.size(), 2u);
  EXPECT_EQ(told[0].text, exact);
  EXPECT_EQ(told[1].text, std::string(127, 'b'));
}

TEST_F(Progress, ALineOf128CharactersWithoutAZeroByteIsReadNoFurther) {
  const std::vector<char> bare(128, 'c');  // the address check would see one character more being read
  proinf(bare.data(), 128);
  ASSERT_EQ(told.size(), 1u);
  EXPECT_EQ(told[0].text, std::string(127, 'c'));
}

TEST_F(Progress, TheProcessorTimeIsATextOfKindOne) {
  procpu();
  ASSERT_EQ(told.size(), 1u);
  EXPECT_EQ(told[0].kind, 1);
  EXPECT_EQ(told[0].value, 0.0);
  EXPECT_EQ(told[0].text->rfind("TIME: ", 0), 0u);
}

std::string timeText(Int64 milliseconds) {
  char text[timeTextLength];
  processorTimeText(text, milliseconds);
  return text;
}

TEST(ProcessorTime, BelowAMinuteOnlySecondsAreTold) {
  EXPECT_EQ(timeText(0), "TIME: 0sec");
  EXPECT_EQ(timeText(999), "TIME: 0sec");
  EXPECT_EQ(timeText(59900), "TIME: 59sec");
  EXPECT_EQ(timeText(59999), "TIME: 59sec");
}

TEST(ProcessorTime, FromAMinuteOnMinutesAndSecondsAreTold) {
  EXPECT_EQ(timeText(60000), "TIME: 1min 0s");
  EXPECT_EQ(timeText(61000), "TIME: 1min 1s");
  EXPECT_EQ(timeText(3600000), "TIME: 60min 0s");
}

TEST(ProcessorTime, TheTextHoldsTheLongestTime) {  // 2^63 microseconds: the range of the process clock
  EXPECT_EQ(timeText(9223372036854775), "TIME: 153722867280min 54s");
}

// A degenerate part's development measures what is no number; a host that draws a bar must not see it.
TEST(ProgressMonitor, IsToldFractionsFromZeroToOneAndNothingElse) {
  std::vector<double> heard;
  ProgressChannel channel;
  channel.monitorData = &heard;
  channel.monitor = [](void* data, const ProgressPoint& point) -> Int {
    static_cast<std::vector<double>*>(data)->push_back(point.fraction);
    return 0;
  };
  for (const double fraction : {std::nan(""), -0.5, 0.0, 0.25, 1.0, 1.5})
    EXPECT_TRUE(hostContinues(channel, {RunPhase::development, fraction}));
  EXPECT_EQ(heard, (std::vector<double>{0.0, 0.0, 0.0, 0.25, 1.0, 1.0}));
}

}  // namespace
