// List-directed reading: separators, records, repeat counts, null values, faults and their places; then
// random texts against what this machine's Fortran runtime reads.
#include "deckio/list_directed.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace tornwalzen;

// What one read of an integer and three reals and then one read of an integer leave behind.
struct Reads {
  bool first = false, second = false;
  Int i = -7, j = -5;
  double v[3] = {-1.0, -2.0, -3.0};
  ListFault fault = ListFault::none;
  Int64 line = 0, column = 0;
  std::string token;
};

Reads readAll(const std::string& text) {
  // Exactly as much memory as text: the address check sees one character too many being read.
  const std::vector<char> memory(text.begin(), text.end());
  ListReader reader(memory.data(), memory.size());
  Reads r;
  reader.begin();
  r.first = reader.integer(r.i) && reader.real(r.v[0]) && reader.real(r.v[1]) && reader.real(r.v[2]);
  if (r.first) {
    reader.finish();
    reader.begin();
    r.second = reader.integer(r.j);
  }
  r.fault = reader.fault();
  r.line = reader.line();
  r.column = reader.column();
  r.token.assign(reader.token(), reader.tokenLength());
  return r;
}

void expectReads(const std::string& text, Int i, double a, double b, double c, Int j) {
  const Reads r = readAll(text);
  EXPECT_TRUE(r.first && r.second) << text;
  EXPECT_EQ(r.i, i) << text;
  EXPECT_EQ(r.v[0], a) << text;
  EXPECT_EQ(r.v[1], b) << text;
  EXPECT_EQ(r.v[2], c) << text;
  EXPECT_EQ(r.j, j) << text;
}

void expectFault(const std::string& text, ListFault fault, Int64 line, Int64 column,
                 const std::string& token) {
  const Reads r = readAll(text);
  EXPECT_FALSE(r.first && r.second) << text;
  EXPECT_EQ(r.fault, fault) << text;
  EXPECT_EQ(r.line, line) << text;
  EXPECT_EQ(r.column, column) << text;
  EXPECT_EQ(r.token, token) << text;
}

TEST(ListDirected, BlanksTabsAndCommasSeparate) {
  expectReads("1 2 3 4\n9\n", 1, 2, 3, 4, 9);
  expectReads("  1\t2\t\t3   4  \n 9\n", 1, 2, 3, 4, 9);
  expectReads("1,2,3,4\n9\n", 1, 2, 3, 4, 9);
  expectReads("1 , 2 ,3, 4\n9\n", 1, 2, 3, 4, 9);
}

TEST(ListDirected, ARecordThatEndsEarlyGoesOnInTheNext) {
  expectReads("1\n2 3\n\n  \n4\n9\n", 1, 2, 3, 4, 9);
  expectReads("1,\n2,3,4\n9\n", 1, 2, 3, 4, 9);
  expectReads("1\n,2,3,4\n9\n", 1, 2, 3, 4, 9);  // the comma is still the separator behind 1
}

TEST(ListDirected, EntriesBehindTheLastItemAreIgnored) {
  expectReads("1 2 3 4 5 abc 'x'\n9 8\n", 1, 2, 3, 4, 9);
  expectReads("1 2 3 4,\n9\n", 1, 2, 3, 4, 9);
  expectReads("1 2*7\n8 6\n9\n", 1, 7, 7, 8, 9);
  expectReads("1 9*5\n9\n", 1, 5, 5, 5, 9);
}

TEST(ListDirected, RepeatCountsRepeat) {
  expectReads("1 3*0.5\n9\n", 1, 0.5, 0.5, 0.5, 9);
  expectReads("1*1 1*2 2*3\n2*9\n", 1, 2, 3, 3, 9);
  expectReads("4*2\n9\n", 2, 2, 2, 2, 9);  // an integer's form is a real's too
}

TEST(ListDirected, NullValuesKeepTheVariable) {
  expectReads("1,,3,4\n9\n", 1, -1, 3, 4, 9);
  expectReads(",2,3,4\n9\n", -7, 2, 3, 4, 9);
  expectReads("1,\n,3,4\n9\n", 1, -1, 3, 4, 9);
  expectReads("1,\t, ,4\n9\n", 1, -1, -2, 4, 9);
  expectReads("1 2 3 4\n,\n9\n", 1, 2, 3, 4, -5);
  expectReads("1 2 3 4\n,9\n", 1, 2, 3, 4, -5);
}

TEST(ListDirected, ARepeatCountAloneIsSoManyNullValues) {
  expectReads("1 3*\n9\n", 1, -1, -2, -3, 9);
  expectReads("1 2*,4\n9\n", 1, -1, -2, 4, 9);
  expectReads("1 2* 4\n9\n", 1, -1, -2, 4, 9);
  expectReads("1* 2 3 4\n1*\n", -7, 2, 3, 4, -5);
}

TEST(ListDirected, ASlashEndsTheRead) {
  expectReads("1 2 /\n9\n", 1, 2, -2, -3, 9);
  expectReads("1 2/3 4\n9\n", 1, 2, -2, -3, 9);
  expectReads("/\n9\n", -7, -1, -2, -3, 9);
  expectReads("3*/\n9\n", -7, -1, -2, -3, 9);
  expectReads("1 2 3 4\n/ 9\n8\n", 1, 2, 3, 4, -5);
}

TEST(ListDirected, LinesMayEndInCarriageReturnAndLineFeed) {
  expectReads("1 2 3 4\r\n9\r\n", 1, 2, 3, 4, 9);
  expectReads("1,\r\n2,3\r\n\r\n4\r\n9\r\n", 1, 2, 3, 4, 9);
  expectReads("1,,3,\r\n4\r\n9\r\n", 1, -1, 3, 4, 9);
}

TEST(ListDirected, TheLastLineNeedsNoEnd) {
  expectReads("1 2 3 4\n9", 1, 2, 3, 4, 9);
  expectReads("1 2 3 4\n9,", 1, 2, 3, 4, 9);
}

TEST(ListDirected, AnIntegerServesAsAReal) {
  expectReads("1 2 -3 +4\n9\n", 1, 2, -3, 4, 9);
}

TEST(ListDirected, ARealOrAWordIsNoInteger) {
  expectFault("1.0 2 3 4\n", ListFault::notAnInteger, 1, 1, "1.0");
  expectFault("1 2 3 4\n 9e0\n", ListFault::notAnInteger, 2, 2, "9e0");
  expectFault(" abc 2 3 4\n", ListFault::notAnInteger, 1, 2, "abc");
  expectFault("2*1.0 3 4\n", ListFault::notAnInteger, 1, 3, "1.0");
  expectFault("+ 2 3 4\n", ListFault::notAnInteger, 1, 1, "+");
  expectFault("nan 2 3 4\n", ListFault::notAnInteger, 1, 1, "nan");
}

TEST(ListDirected, AnIntegerMustFit) {
  expectReads("2147483647 2 3 4\n-2147483648\n", 2147483647, 2, 3, 4, -2147483647 - 1);
  expectFault("2147483648 2 3 4\n", ListFault::integerTooLarge, 1, 1, "2147483648");
  expectFault("1 2 3 4\n-2147483649", ListFault::integerTooLarge, 2, 1, "-2147483649");
}

TEST(ListDirected, AWordIsNoReal) {
  expectFault("1 2 3 abc\n", ListFault::notAReal, 1, 7, "abc");
  expectFault("1\n2\n  x3 4\n", ListFault::notAReal, 3, 3, "x3");
  expectFault("1 '2' 3 4\n", ListFault::notAReal, 1, 3, "'2'");
  expectFault("1 2;3 4\n", ListFault::notAReal, 1, 3, "2;3");
}

TEST(ListDirected, ARepeatCountIsOneOrMore) {
  expectFault("1 0*5 2 3\n", ListFault::badRepeatCount, 1, 3, "0*5");
  expectFault("1 99999999999999999999*5\n", ListFault::badRepeatCount, 1, 3, "99999999999999999999*5");
  expectFault("1 -3*5 2 3\n", ListFault::notAReal, 1, 3, "-3*5");
  expectFault("1 3*4*5 2 3\n", ListFault::notAReal, 1, 5, "4*5");
}

TEST(ListDirected, TheEndOfTheTextIsAFault) {
  expectFault("", ListFault::textEnded, 1, 1, "");
  expectFault("1 2 3", ListFault::textEnded, 1, 6, "");
  expectFault("1 2 3,\n\n", ListFault::textEnded, 3, 1, "");
  expectFault("1 2 3 4\n", ListFault::textEnded, 2, 1, "");
}

TEST(ListDirected, BytesOtherThanTextAreNoNumbers) {
  expectFault(std::string("1\0002 3 4\n", 9), ListFault::notAnInteger, 1, 1, std::string("1\0002", 3));
  expectFault("\xff\xfe 2 3 4\n", ListFault::notAnInteger, 1, 1, "\xff\xfe");
  expectFault("1\v2 3 4\n", ListFault::notAnInteger, 1, 1, "1\v2");
}

TEST(ListDirected, RecordsAreSkippedUnread) {
  const std::string text = "KNOTEN, 3*x /\r\n\n5\nlast";
  ListReader reader(text.data(), text.size());
  EXPECT_TRUE(reader.skipRecord());
  EXPECT_TRUE(reader.skipRecord());
  Int value = 0;
  reader.begin();
  EXPECT_TRUE(reader.integer(value));
  reader.finish();
  EXPECT_EQ(value, 5);
  EXPECT_TRUE(reader.skipRecord());  // a last record without its end counts
  EXPECT_FALSE(reader.skipRecord());
  EXPECT_EQ(reader.fault(), ListFault::textEnded);
}

// A random text out of the pieces that decks and their accidents are made of.
std::string randomText(std::mt19937_64& random) {
  static const std::vector<std::string> items = {
      "1",   "-2",    "+3",    "4.5", "-.5", "5.",        "1.5E2", "1.5D+02", "1.5+2",
      "2-1", "0",     "-0.0",  "nan", "Inf", "-INFINITY", "1e400", "1e-400",  "12345678901",
      "abc", "1.2.3", "1e",    "--1", "*",   "3*",        "2*7",   "3*0.5",   "1*",
      "0*1", "2*x",   "1.5q1", ".",   "+",   "/",         "9",     "77",      "2147483647"};
  static const std::vector<std::string> separators = {
      " ", " ", " ", " ", ",", ", ", " ,", ",,", "\n", "\n", "\r\n", "\t", " \n ", ",\n", "\n,", "  ", "/"};
  std::string text;
  const int count = 1 + static_cast<int>(random() % 9);
  for (int k = 0; k < count; ++k) {
    // Mostly sound numbers, so that most texts come through.
    text += random() % 3 != 0 ? std::to_string(static_cast<int>(random() % 200) - 100)
                              : items[random() % items.size()];
    text += separators[random() % separators.size()];
  }
  // A slash as the file's very last character is the end of the file to that runtime, and the end of a read to us.
  if (random() % 2 == 0 || text.back() == '/') text += "\n";
  return text;
}

TEST(ListDirected, AgreesWithTheFortranRuntime) {
  const std::string oracle = TORNWALZEN_LIST_ORACLE;
  if (oracle.empty()) GTEST_SKIP() << "skipped: no Fortran compiler (gfortran) on this machine";
  namespace fs = std::filesystem;
  const fs::path folder = fs::path(testing::TempDir()) / ("tornwalzen_lists_" + std::to_string(getpid()));
  fs::create_directories(folder);
  std::mt19937_64 random(19991231);
  std::vector<std::string> texts;
  for (int k = 0; k < 3000; ++k) texts.push_back(randomText(random));
  for (std::size_t k = 0; k < texts.size(); ++k)
    std::ofstream(folder / ("t" + std::to_string(k + 1)), std::ios::binary) << texts[k];
  std::ofstream(folder / "in") << (folder / "t").string() << "\n" << texts.size() << "\n";
  const std::string run = oracle + " < " + (folder / "in").string() + " > " + (folder / "out").string();
  ASSERT_EQ(std::system(run.c_str()), 0);

  std::ifstream out(folder / "out");
  std::string line;
  int compared = 0, readable = 0;
  for (const std::string& text : texts) {
    ASSERT_TRUE(std::getline(out, line));
    std::istringstream answer(line);
    std::string mark, bits[3];
    int first = 0, second = 0;
    Int i = 0, j = 0;
    answer >> mark >> first >> i >> bits[0] >> bits[1] >> bits[2] >> second >> j;
    ASSERT_TRUE(answer) << line;
    if (mark == "T") continue;  // this runtime wants a repeated value to be of one type
    ++compared;
    const Reads r = readAll(text);
    EXPECT_EQ(r.first, first == 0) << text << "|" << line;
    if (!r.first || first != 0) continue;
    EXPECT_EQ(r.second, second == 0) << text << "|" << line;
    ++readable;
    EXPECT_EQ(r.i, i) << text;
    for (int c = 0; c < 3; ++c) {
      const double theirs = std::bit_cast<double>(std::strtoull(bits[c].c_str(), nullptr, 16));
      if (std::isnan(theirs)) {
        EXPECT_TRUE(std::isnan(r.v[c])) << text;
      } else {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(r.v[c]), std::bit_cast<std::uint64_t>(theirs)) << text;
      }
    }
    if (r.second) {
      EXPECT_EQ(r.j, j) << text;
    }
  }
  EXPECT_GE(compared, 2500);
  EXPECT_GE(readable, 800);
  fs::remove_all(folder);
}

}  // namespace
