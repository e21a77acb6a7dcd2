// Fixed-width fields: known spellings to the letter, then thousands of random and extreme values against what
// this machine's Fortran runtime prints.
#include "ground/fixed_fields.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace tornwalzen;

std::string I(std::int64_t value, int width) {
  std::string out(static_cast<std::size_t>(width), '?');
  integerField(out.data(), value, width);
  return out;
}
std::string F(double value, int width, int decimals) {
  std::string out(static_cast<std::size_t>(width), '?');
  fixedField(out.data(), value, width, decimals);
  return out;
}
std::string E(double value, int width, int digits) {
  std::string out(static_cast<std::size_t>(width), '?');
  exponentField(out.data(), value, width, digits);
  return out;
}

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(FixedFields, IntegersAreRightJustified) {
  EXPECT_EQ(I(0, 5), "    0");
  EXPECT_EQ(I(42, 6), "    42");
  EXPECT_EQ(I(-42, 6), "   -42");
  EXPECT_EQ(I(99999, 5), "99999");
  EXPECT_EQ(I(-9999, 5), "-9999");
}

TEST(FixedFields, IntegersThatDoNotFitBecomeAsterisks) {
  EXPECT_EQ(I(100000, 5), "*****");
  EXPECT_EQ(I(-10000, 5), "*****");
  EXPECT_EQ(I(1000000, 6), "******");
  EXPECT_EQ(I(std::numeric_limits<std::int64_t>::min(), 20), "-9223372036854775808");
  EXPECT_EQ(I(std::numeric_limits<std::int64_t>::min(), 19), std::string(19, '*'));
}

TEST(FixedFields, FixedPointRoundsTheExactBinaryValue) {
  EXPECT_EQ(F(12.345, 7, 2), "  12.35");  // the double lies above the tie: 12.3450000000000006
  EXPECT_EQ(F(0.125, 7, 2), "   0.12");   // a true tie goes to even
  EXPECT_EQ(F(0.375, 7, 2), "   0.38");
  EXPECT_EQ(F(100.0, 7, 2), " 100.00");
  EXPECT_EQ(F(9999.999, 7, 2), "*******");
  EXPECT_EQ(F(-999.994, 7, 2), "-999.99");
}

TEST(FixedFields, FixedPointKeepsTheSignOfWhatRoundsToZero) {
  EXPECT_EQ(F(-0.001, 7, 2), "  -0.00");
  EXPECT_EQ(F(-0.0, 7, 2), "  -0.00");
  EXPECT_EQ(F(0.0, 7, 2), "   0.00");
}

TEST(FixedFields, FixedPointDropsTheZeroBeforeThePointOnlyForRoom) {
  EXPECT_EQ(F(0.25, 4, 2), "0.25");
  EXPECT_EQ(F(0.25, 3, 2), ".25");
  EXPECT_EQ(F(-0.25, 4, 2), "-.25");
  EXPECT_EQ(F(-0.25, 3, 2), "***");
  EXPECT_EQ(F(1.25, 3, 2), "***");
}

TEST(FixedFields, FixedPointWithoutDecimalsStillHasItsPoint) {
  EXPECT_EQ(F(7.0, 4, 0), "  7.");
  EXPECT_EQ(F(-0.001, 5, 0), "  -0.");
  EXPECT_EQ(F(0.0, 1, 0), "*");
}

TEST(FixedFields, ExponentFormHasItsMantissaBelowOne) {
  EXPECT_EQ(E(12.3456789, 13, 6), " 0.123457E+02");
  EXPECT_EQ(E(-12.3456789, 15, 6), "  -0.123457E+02");
  EXPECT_EQ(E(0.0, 15, 6), "   0.000000E+00");
  EXPECT_EQ(E(-0.0, 15, 6), "  -0.000000E+00");
  EXPECT_EQ(E(0.99999996, 13, 6), " 0.100000E+01");
  EXPECT_EQ(E(1e-5, 13, 6), " 0.100000E-04");
}

TEST(FixedFields, ThreeDigitExponentsTakeThePlaceOfTheLetter) {
  EXPECT_EQ(E(1.23456789e99, 13, 6), " 0.123457+100");
  EXPECT_EQ(E(1.23456789e-101, 13, 6), " 0.123457-100");
  EXPECT_EQ(E(9.9999999e98, 13, 6), " 0.100000+100");
  EXPECT_EQ(E(5e-324, 13, 6), " 0.494066-323");
}

TEST(FixedFields, NonFiniteNumbersAreWords) {
  EXPECT_EQ(F(nan, 7, 2), "    NaN");
  EXPECT_EQ(E(-nan, 13, 6), "          NaN");
  EXPECT_EQ(E(infinity, 13, 6), "     Infinity");
  EXPECT_EQ(E(-infinity, 13, 6), "    -Infinity");
  EXPECT_EQ(F(infinity, 7, 2), "    Inf");
  EXPECT_EQ(F(-infinity, 7, 2), "   -Inf");
  EXPECT_EQ(F(nan, 2, 1), "**");
  EXPECT_EQ(F(-infinity, 3, 1), "***");
}

struct Sample {
  char kind;
  int width, digits;
  std::uint64_t bits;
};

std::string ours(const Sample& s) {
  if (s.kind == 'I') return I(std::bit_cast<std::int64_t>(s.bits), s.width);
  const double value = std::bit_cast<double>(s.bits);
  return s.kind == 'F' ? F(value, s.width, s.digits) : E(value, s.width, s.digits);
}

// The fields that files and messages use, then every narrow field and a spread of wide ones.
std::vector<Sample> fieldsOf(std::mt19937_64& random, std::uint64_t bits) {
  std::vector<Sample> samples = {{'F', 7, 2, bits}, {'E', 13, 6, bits}, {'E', 15, 6, bits}};
  const int width = 1 + static_cast<int>(random() % 30);
  samples.push_back({'F', width, static_cast<int>(random() % static_cast<unsigned>(width)), bits});
  samples.push_back({'E', width, 1 + static_cast<int>(random() % 17), bits});
  return samples;
}

std::vector<Sample> allSamples() {
  std::mt19937_64 random(20240611);
  std::vector<Sample> samples;
  std::vector<double> values = {0.0,
                                -0.0,
                                nan,
                                infinity,
                                -infinity,
                                5e-324,
                                2.2250738585072014e-308,
                                1.7976931348623157e308,
                                -1.7976931348623157e308,
                                0.5,
                                1.5,
                                2.5,
                                0.05,
                                0.005,
                                -0.001,
                                -0.005,
                                -0.5,
                                0.999999,
                                0.9999995,
                                0.99999949999,
                                99.995,
                                999.995,
                                9999.995,
                                -99.995,
                                0.1f,
                                1e22,
                                1e23};
  for (int e = -323; e <= 308; ++e) {  // each power of ten and its neighbours: carries into the next digit
    const double p = std::strtod(("1e" + std::to_string(e)).c_str(), nullptr);
    for (double v : {p, std::nextafter(p, 0.0), std::nextafter(p, infinity)})
      values.insert(values.end(), {v, -v});
  }
  for (int i = 0; i < 2000; ++i) {
    values.push_back(std::bit_cast<double>(random()));                                      // any bits
    values.push_back(std::ldexp(static_cast<double>(random() % 2000001) - 1000000.0, -3));  // ties
    values.push_back((static_cast<double>(random() % 20000001) - 10000000.0) / 1000.0);     // coordinates
  }
  for (double v : values)
    for (const Sample& s : fieldsOf(random, std::bit_cast<std::uint64_t>(v))) samples.push_back(s);
  for (int width = 1; width <= 12; ++width)  // every width at which a spelling changes
    for (double v :
         {nan, infinity, -infinity, 0.0, -0.0, 0.25, -0.25, 0.04, -0.04, 7.5, -7.5, 1e120, -1e-120})
      for (int digits = 0; digits < width; ++digits) {
        samples.push_back({'F', width, digits, std::bit_cast<std::uint64_t>(v)});
        if (digits > 0) samples.push_back({'E', width, digits, std::bit_cast<std::uint64_t>(v)});
      }
  for (int i = 0; i < 3000; ++i) {
    const auto value = static_cast<std::int64_t>(random()) >> (random() % 64);
    for (int width : {5, 6, 1 + static_cast<int>(random() % 24)})
      samples.push_back({'I', width, 0, std::bit_cast<std::uint64_t>(value)});
  }
  return samples;
}

TEST(FixedFields, AgreeWithTheFortranRuntime) {
  const std::string oracle = TORNWALZEN_FIELD_ORACLE;
  if (oracle.empty()) GTEST_SKIP() << "skipped: no Fortran compiler (gfortran) on this machine";
  const std::vector<Sample> samples = allSamples();
  const std::string stem = testing::TempDir() + "tornwalzen_fields_" + std::to_string(getpid());
  {
    std::ofstream in(stem + ".in");
    char record[40];
    for (const Sample& s : samples) {
      std::snprintf(record, sizeof record, "%c %2d %2d %016llX\n", s.kind, s.width, s.digits,
                    static_cast<unsigned long long>(s.bits));
      in << record;
    }
  }
  ASSERT_EQ(std::system((oracle + " < " + stem + ".in > " + stem + ".out").c_str()), 0);
  std::ifstream out(stem + ".out");
  std::string line;
  int differing = 0;
  for (const Sample& s : samples) {
    ASSERT_TRUE(std::getline(out, line));
    ASSERT_GE(line.size(), 2u);
    const std::string field = line.substr(1, line.size() - 2);
    if (field == ours(s)) continue;
    if (++differing <= 20)
      ADD_FAILURE() << s.kind << s.width << '.' << s.digits << " of bits " << std::hex << s.bits << " ("
                    << std::bit_cast<double>(s.bits) << "): runtime [" << field << "], ours [" << ours(s)
                    << "]";
  }
  EXPECT_EQ(differing, 0) << "of " << samples.size();
  std::remove((stem + ".in").c_str());
  std::remove((stem + ".out").c_str());
}

}  // namespace
