// The flat-blank file: its layout to the letter, its limits, and its way back through the reader.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "deckio/deck_records.hpp"
#include "deckio/temporary_folder.hpp"
#include "tornwalzen_deck.h"

namespace {

using namespace tornwalzen;

class FlatBlank : public TemporaryFolder {
 protected:
  int32_t writeBlank(int32_t nkno, int32_t nele, const std::vector<int32_t>& INTA,
                     const std::vector<double>& RX) {
    return tornwalzenFlatBlankWrite(path("eben.t51").c_str(), nkno, nele, INTA.data(), RX.data(), &error);
  }
  std::string errorText() const {
    char line[512];
    tornwalzenDeckErrorText(&error, line, sizeof line);
    return line;
  }
  TornwalzenDeckError error{};
};

const std::string head =
    "GEOMETRIE DEFORMIERBARER KOERPER\n"
    "BEGINN TORNWALZEN_E        \n"
    "KNOTENGEOMETRIE            \n";
const std::string list =
    "LUECKENLOS           \n"
    "LISTENGESTEUERT            \n";

TEST_F(FlatBlank, EveryRecordHasItsFields) {
  ASSERT_EQ(writeBlank(3, 1, {1, 2, 3}, {0.0, -0.0, 123.4567891, -1e-5, 1e120, 2.5}), TORNWALZEN_DECK_OK)
      << errorText();
  EXPECT_EQ(content("eben.t51"), head + "    3\n" + list +
                                     "     1   0.000000E+00  -0.000000E+00   0.000000E+00\n"
                                     "     2   0.123457E+03  -0.100000E-04   0.000000E+00\n"
                                     "     3   0.100000+121   0.250000E+01   0.000000E+00\n"
                                     "INZIDENZTAFEL\n"
                                     "    1\n" +
                                     list +
                                     "     1    81     1     2     3\n"
                                     "ENDE\n");
  EXPECT_EQ(files(), 1u);
}

TEST_F(FlatBlank, WithoutNodesTheIncidencePartFollowsTheHead) {
  ASSERT_EQ(writeBlank(0, 0, {}, {}), TORNWALZEN_DECK_OK);
  EXPECT_EQ(content("eben.t51"), head + "    0\n" + list + "INZIDENZTAFEL\n    0\n" + list + "ENDE\n");
}

TEST_F(FlatBlank, AnExistingFileIsReplaced) {
  write("eben.t51", std::string(5000, 'x'));
  ASSERT_EQ(writeBlank(0, 0, {}, {}), TORNWALZEN_DECK_OK);
  EXPECT_EQ(content("eben.t51").substr(0, 9), "GEOMETRIE");
  EXPECT_EQ(content("eben.t51").size(),
            (head + "    0\n" + list + "INZIDENZTAFEL\n    0\n" + list + "ENDE\n").size());
}

TEST_F(FlatBlank, CountsAbove99999AreRefusedBeforeTheFileIsTouched) {
  write("eben.t51", "old");
  EXPECT_EQ(tornwalzenFlatBlankFits(99999, 99999), 1);
  EXPECT_EQ(tornwalzenFlatBlankFits(100000, 1), 0);
  EXPECT_EQ(tornwalzenFlatBlankFits(1, 100000), 0);
  EXPECT_EQ(writeBlank(100000, 0, {}, std::vector<double>(200000)), TORNWALZEN_DECK_TOO_WIDE);
  EXPECT_EQ(errorText(), path("eben.t51") + ": expected a number of nodes up to 99999, found 100000");
  EXPECT_EQ(writeBlank(3, 100000, std::vector<int32_t>(300000, 1), std::vector<double>(6)),
            TORNWALZEN_DECK_TOO_WIDE);
  EXPECT_EQ(errorText(), path("eben.t51") + ": expected a number of triangles up to 99999, found 100000");
  EXPECT_EQ(content("eben.t51"), "old");
  EXPECT_EQ(files(), 1u);
}

TEST_F(FlatBlank, NodeNumbersOutsideTheMeshAreRefused) {
  for (int32_t node : {0, -1, 4, 100000, 2147483647})
    EXPECT_EQ(writeBlank(3, 1, {1, 2, node}, std::vector<double>(6)), TORNWALZEN_DECK_TOO_WIDE) << node;
  EXPECT_EQ(errorText(), path("eben.t51") + ": expected node numbers from 1 up to 3, found 2147483647");
  EXPECT_EQ(files(), 0u);
}

TEST_F(FlatBlank, TheLargestCountsStayApart) {
  const int32_t n = 99999;
  std::vector<int32_t> INTA(3 * static_cast<std::size_t>(n), n);
  ASSERT_EQ(writeBlank(n, n, INTA, std::vector<double>(2 * static_cast<std::size_t>(n), -1e-100)),
            TORNWALZEN_DECK_OK);
  std::ofstream(folder / "eben.t51", std::ios::app) << "0\n";
  TornwalzenDeckSizes sizes{};
  ASSERT_EQ(tornwalzenDeckCounts(path("eben.t51").c_str(), &sizes, &error), TORNWALZEN_DECK_OK)
      << errorText();
  EXPECT_EQ(sizes.nkno, n);
  EXPECT_EQ(sizes.nele, n);
}

TEST_F(FlatBlank, NumbersBeyondTheirFieldsAreAsterisksOfTheSameWidth) {
  std::vector<std::string> records;
  const auto keep = [](void* taker, const char* record, std::size_t length) {
    static_cast<std::vector<std::string>*>(taker)->emplace_back(record, length);
  };
  const Int n = 100000;
  const std::vector<Int> INTA = {999999, 1000000, 1};
  const std::vector<double> RX(2 * static_cast<std::size_t>(n), 0.0);
  flatBlankRecords(n, 1, {"INTA", INTA.data(), 1, 3}, {"RX", RX.data(), 2 * n}, keep, &records);
  EXPECT_EQ(records[3], "*****");
  EXPECT_EQ(records[6 + 99999], "100000   0.000000E+00   0.000000E+00   0.000000E+00");
  EXPECT_EQ(records[records.size() - 2], "     1    81999999******     1");
}

TEST_F(FlatBlank, WithOneMoreRecordItReadsBackAsTheSameMeshAllFree) {
  std::mt19937_64 random(11);
  const int32_t nkno = 200, nele = 150;
  std::vector<double> RX(2 * nkno);
  for (std::size_t i = 0; i < RX.size(); ++i) {
    RX[i] = (static_cast<double>(random() % 2000000) - 1e6) / 1000.0;
    if (i % 2 == 0)
      RX[i] = (static_cast<double>(random() % 2000) - 1000) / 16.0;  // at most six digits: exact
  }
  std::vector<int32_t> INTA(3 * nele);
  for (int32_t& i : INTA) i = 1 + static_cast<int32_t>(random() % nkno);
  ASSERT_EQ(writeBlank(nkno, nele, INTA, RX), TORNWALZEN_DECK_OK) << errorText();
  std::ofstream(folder / "eben.t51", std::ios::app) << "0\n";

  TornwalzenDeckSizes sizes{nkno, nele, 2 * nkno, 0, 0, 0};
  std::vector<double> KNG(3 * nkno, -1.0);
  std::vector<int32_t> readINTA(3 * nele), ARFA(2 * nkno);
  ASSERT_EQ(
      tornwalzenDeckRead(path("eben.t51").c_str(), &sizes, readINTA.data(), ARFA.data(), KNG.data(), &error),
      TORNWALZEN_DECK_OK)
      << errorText();
  EXPECT_EQ(sizes.nkno, nkno);
  EXPECT_EQ(sizes.nele, nele);
  EXPECT_EQ(readINTA, INTA);
  EXPECT_EQ(ARFA, std::vector<int32_t>(2 * nkno, 1));
  for (std::size_t n = 0; n < static_cast<std::size_t>(nkno); ++n) {
    EXPECT_EQ(KNG[n], RX[2 * n]);
    // Six digits of a mantissa in [0.1, 1): half a unit of the sixth is at most 5e-6 of the number.
    EXPECT_NEAR(KNG[nkno + n], RX[2 * n + 1], 5e-6 * std::fabs(RX[2 * n + 1]));
    EXPECT_EQ(KNG[2 * nkno + n], 0.0);
  }
}

TEST_F(FlatBlank, WithoutTheSectionOfHeldUnknownsItIsNoWholeDeck) {
  ASSERT_EQ(writeBlank(1, 0, {}, {1.0, 2.0}), TORNWALZEN_DECK_OK);
  TornwalzenDeckSizes sizes{};
  EXPECT_EQ(tornwalzenDeckCounts(path("eben.t51").c_str(), &sizes, &error), TORNWALZEN_DECK_ENDED);
}

TEST_F(FlatBlank, AFolderThatIsNotThereCannotBeWrittenTo) {
  EXPECT_EQ(tornwalzenFlatBlankWrite(path("none/eben.t51").c_str(), 0, 0, nullptr, nullptr, &error),
            TORNWALZEN_DECK_UNWRITABLE);
}

}  // namespace
