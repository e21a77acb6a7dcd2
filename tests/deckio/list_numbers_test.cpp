// The number forms of list-directed input.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include "deckio/list_directed.hpp"

namespace {

using namespace tornwalzen;

constexpr double infinity = std::numeric_limits<double>::infinity();

double real(const std::string& item) {
  double value = -77.0;
  EXPECT_TRUE(parseReal(item.data(), item.size(), value)) << item;
  return value;
}
bool isReal(const std::string& item) {
  double value = 0.0;
  return parseReal(item.data(), item.size(), value);
}
bool isInteger(const std::string& item) {
  Int value = 0;
  bool tooLarge = false;
  return parseInteger(item.data(), item.size(), value, tooLarge);
}

TEST(ListNumbers, ExponentLettersAndTheSignAlone) {
  for (const char* item :
       {"1.5D+02", "1.5d2", "1.5E2", "1.5e+002", "1.5+2", "15+1", "1.5q2", "+150", "150.", ".15e3"})
    EXPECT_EQ(real(item), 150.0) << item;
  EXPECT_EQ(real("1.5-2"), 0.015);
  EXPECT_EQ(real("-1.5D-02"), -0.015);
}

TEST(ListNumbers, ThePointMayStandFirstOrLast) {
  EXPECT_EQ(real(".5"), 0.5);
  EXPECT_EQ(real("5."), 5.0);
  EXPECT_EQ(real("-.5"), -0.5);
  EXPECT_EQ(real("5.e1"), 50.0);
}

TEST(ListNumbers, NegativeZeroKeepsItsSign) {
  EXPECT_TRUE(std::signbit(real("-0")));
  EXPECT_TRUE(std::signbit(real("-0.0E+00")));
  EXPECT_FALSE(std::signbit(real("0")));
}

TEST(ListNumbers, WordsForWhatIsNotFinite) {
  for (const char* item : {"inf", "INF", "+Inf", "Infinity", "infinity"})
    EXPECT_EQ(real(item), infinity) << item;
  for (const char* item : {"-inf", "-INFINITY"}) EXPECT_EQ(real(item), -infinity) << item;
  for (const char* item : {"nan", "NaN", "-NAN", "+nan", "nan()", "NaN(0x12)"})
    EXPECT_TRUE(std::isnan(real(item))) << item;
}

TEST(ListNumbers, MagnitudesBeyondTheRangeBecomeInfinityOrZero) {
  EXPECT_EQ(real("1e400"), infinity);
  EXPECT_EQ(real("-1e309"), -infinity);
  EXPECT_EQ(real("1.7976931348623159e308"), infinity);
  EXPECT_EQ(real("1.7976931348623157e308"), std::numeric_limits<double>::max());
  EXPECT_EQ(real("1e-400"), 0.0);
  EXPECT_TRUE(std::signbit(real("-1e-400")));
  EXPECT_EQ(real("5e-324"), 5e-324);
  EXPECT_EQ(real("2e-324"), 0.0);
  EXPECT_EQ(real("3e-324"), 5e-324);
  EXPECT_EQ(real("1e99999999999999999999"), infinity);
  EXPECT_EQ(real("1e-99999999999999999999"), 0.0);
  EXPECT_EQ(real("0e99999999999999999999"), 0.0);
}

TEST(ListNumbers, LongMantissasCountEveryDigit) {
  EXPECT_EQ(real(std::string(400, '0') + "7"), 7.0);
  EXPECT_EQ(real("1" + std::string(400, '0') + "e-400"), 1.0);
  EXPECT_EQ(real("0." + std::string(400, '0') + "1e401"), 1.0);
  EXPECT_EQ(real("1" + std::string(400, '0')), infinity);
  EXPECT_EQ(real("9007199254740993" + std::string(100, '0') + "e-100"), 9007199254740992.0);  // tie to even
  EXPECT_EQ(real("9007199254740993" + std::string(99, '0') + "1e-100"), 9007199254740994.0);  // just above it
}

TEST(ListNumbers, EveryDoubleReadsBackFromSeventeenDigits) {
  std::mt19937_64 random(7);
  char item[40];
  for (int k = 0; k < 20000; ++k) {
    const double value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) continue;
    std::snprintf(item, sizeof item, k % 2 == 0 ? "%.16e" : "%.17g", value);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(real(item)), std::bit_cast<std::uint64_t>(value)) << item;
  }
}

TEST(ListNumbers, WhatIsNoReal) {
  for (const char* item : {"",      "+",    "-",    ".",  "-.",  "e5",    ".e5", "1e", "1e+",  "1.5e2.5",
                           "1.2.3", "--1",  "+-1",  "1x", "x1",  "0x10",  "1_8", "in", "infx", "infinit",
                           "nanx",  "nan(", "nan)", "n",  "1,5", "1e5e5", "1+",  "T"})
    EXPECT_FALSE(isReal(item)) << item;
}

TEST(ListNumbers, WhatIsAnInteger) {
  for (const char* item : {"0", "-0", "+5", "007", "2147483647", "-2147483648"})
    EXPECT_TRUE(isInteger(item)) << item;
  for (const char* item :
       {"", "+", "-", "1.", "1.0", "1e2", "0x1", "1a", "--1", "+-1", "-+1", "2147483648", "*****"})
    EXPECT_FALSE(isInteger(item)) << item;
}

}  // namespace
