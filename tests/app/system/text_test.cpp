#include "system/text.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

using namespace host;

namespace {

double real(std::string_view word) {
  double value = -77.0;
  EXPECT_TRUE(readReal(word, value)) << word;
  return value;
}

bool isReal(std::string_view word) {
  double value = 0.0;
  return readReal(word, value);
}

}  // namespace

TEST(Decimal, RandomBitPatternsReadBackToTheSameBits) {
  std::mt19937_64 random(20240229);
  for (int k = 0; k < 100000; ++k) {
    const double value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) continue;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(real(decimal(value))), std::bit_cast<std::uint64_t>(value));
  }
}

TEST(Decimal, IsShort) {
  EXPECT_EQ(decimal(0.1), "0.1");
  EXPECT_EQ(decimal(1149.35902), "1149.35902");
  EXPECT_EQ(decimal(-0.0), "-0");
}

TEST(ShortDecimal, EndsWithoutZeros) {
  EXPECT_EQ(shortDecimal(1.5, 4), "1.5");
  EXPECT_EQ(shortDecimal(1.00000000002, 4), "1");
  EXPECT_EQ(shortDecimal(100.0, 1), "100");
  EXPECT_EQ(shortDecimal(0.12345, 4), "0.1235");
  EXPECT_EQ(shortDecimal(-1e-9, 6), "0");
}

TEST(ReadReal, TakesSignsPointsAndExponents) {
  EXPECT_EQ(real("+1.5e+2"), 150.0);
  EXPECT_EQ(real("-.5"), -0.5);
  EXPECT_EQ(real("5."), 5.0);
}

TEST(ReadReal, BeyondTheRangeIsInfiniteOrZero) {
  EXPECT_EQ(real("1e999"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(real("-1e999"), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(real("1e-999"), 0.0);
}

TEST(ReadReal, ReadsNanAndInfinityForTheCallerToRefuse) {
  EXPECT_TRUE(std::isnan(real("nan")));
  EXPECT_TRUE(std::isinf(real("-inf")));
}

TEST(ReadReal, RefusesWhatIsOnlyPartlyANumber) {
  for (const char* word : {"", "+", "-", "1.5x", "1,5", "+-1", "++1", "x", "0x10", "1e"})
    EXPECT_FALSE(isReal(word)) << word;
}

TEST(ReadInteger, TakesTheWholeWordOnly) {
  std::int64_t value = 0;
  EXPECT_TRUE(readInteger("+12", value));
  EXPECT_EQ(value, 12);
  EXPECT_TRUE(readInteger("-3", value));
  EXPECT_EQ(value, -3);
  for (const char* word : {"", "1.0", "1/2", "+-1", "99999999999999999999"})
    EXPECT_FALSE(readInteger(word, value)) << word;
  EXPECT_EQ(value, -3);
}

TEST(NextLine, KeepsTheLastLineWithoutAnEnd) {
  std::size_t position = 0;
  std::string_view line;
  std::string lines;
  while (nextLine("a\n\nb", position, line)) lines += "<" + std::string(line) + ">";
  EXPECT_EQ(lines, "<a><><b>");
}

TEST(NextWord, SeparatesAtBlanksTabsAndCarriageReturns) {
  std::size_t position = 0;
  std::string words;
  for (std::string_view word = nextWord(" a\tbc \r", position); !word.empty();
       word = nextWord(" a\tbc \r", position))
    words += "<" + std::string(word) + ">";
  EXPECT_EQ(words, "<a><bc>");
}

TEST(Shown, HidesUnprintableBytesAndCutsLongWords) {
  EXPECT_EQ(shown("a\x01\xff"), "a??");
  EXPECT_EQ(shown(std::string(50, 'x')), std::string(40, 'x') + "...");
}

TEST(Counted, KnowsThePlural) {
  EXPECT_EQ(counted(1, "node"), "1 node");
  EXPECT_EQ(counted(0, "node"), "0 nodes");
}
