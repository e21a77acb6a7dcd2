// The deck's layout: what is read, what is ignored, and what is refused with which words.
#include "deckio/mesh_deck.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "deckio/deck_error.hpp"

namespace {

using namespace tornwalzen;

// A deck and the arrays it is read into, filled with values that no deck here holds.
struct Deck {
  TornwalzenDeckSizes sizes{4, 2, 8, -1, -1, -1};
  std::vector<Int> INTA = std::vector<Int>(6, -99), ARFA = std::vector<Int>(8, -99);
  std::vector<double> KNG = std::vector<double>(12, -99.0);
  TornwalzenDeckError error;
  std::string text;

  Int read(const std::string& deck) {
    const std::vector<char> memory(deck.begin(), deck.end());
    clearError(error, "deck.t51");
    const DeckArrays arrays{{"INTA", INTA.data(), sizes.maxele, 3},
                            {"ARFA", ARFA.data(), sizes.maxsys},
                            {"KNG", KNG.data(), sizes.maxkno, 3}};
    readMeshDeck(memory.data(), memory.size(), arrays, sizes, error);
    char line[512];
    tornwalzenDeckErrorText(&error, line, sizeof line);
    text = line;
    return error.kind;
  }
};

const std::string head = "GEOMETRIE DEFORMIERBARER KOERPER\nBEGINN TORNWALZEN_E\nKNOTENGEOMETRIE\n";
const std::string list = "LUECKENLOS\nLISTENGESTEUERT\n";
const std::string square = head + "4\n" + list + "1 0 0 5\n2 10 0 5\n3 10 20 5\n4 0 20 5\n" +
                           "INZIDENZTAFEL\n2\n" + list + "1 81 1 2 3\n2 81 1 3 4\n" + "ENDE\n";

TEST(MeshDeck, FillsCountsMeshAndFlags) {
  Deck d;
  ASSERT_EQ(d.read(square + "0\n"), TORNWALZEN_DECK_OK) << d.text;
  EXPECT_EQ(d.sizes.nkno, 4);
  EXPECT_EQ(d.sizes.nele, 2);
  EXPECT_EQ(d.sizes.neq, 8);
  EXPECT_EQ(d.KNG, (std::vector<double>{0, 10, 10, 0, 0, 0, 20, 20, 5, 5, 5, 5}));
  EXPECT_EQ(d.INTA, (std::vector<Int>{1, 1, 2, 3, 3, 4}));
  EXPECT_EQ(d.ARFA, std::vector<Int>(8, 1));
  EXPECT_EQ(d.text, "");
}

TEST(MeshDeck, KeywordsAreNeverCompared) {
  Deck d;
  ASSERT_EQ(d.read("a\n\n3*x / 'y\n4\n1\n2\n1 0 0 5\n2 10 0 5\n3 10 20 5\n4 0 20 5\n\n2\n,\n,\n1 81 1 2 3\n2 "
                   "81 1 3 4\n\n0"),
            TORNWALZEN_DECK_OK)
      << d.text;
  EXPECT_EQ(d.INTA, (std::vector<Int>{1, 1, 2, 3, 3, 4}));
}

TEST(MeshDeck, NodesGoByTheirPositionNotByTheirNumber) {
  Deck d;
  const std::string deck = head + "3\n" + list + "10 1 2 3\n20 4 5 6\n30 7 8 9\nINZIDENZTAFEL\n1\n" + list +
                           "70 6 1 2 3\nENDE\n0\n";
  ASSERT_EQ(d.read(deck), TORNWALZEN_DECK_OK) << d.text;
  EXPECT_EQ(d.KNG, (std::vector<double>{1, 4, 7, -99, 2, 5, 8, -99, 3, 6, 9, -99}));
  EXPECT_EQ(d.INTA, (std::vector<Int>{1, -99, 2, -99, 3, -99}));
}

TEST(MeshDeck, DeclaredDimensionsMayExceedTheCounts) {
  Deck d;
  d.sizes.maxkno = 5;
  d.sizes.maxele = 3;
  d.sizes.maxsys = 20;
  d.KNG.assign(15, -99.0);
  d.INTA.assign(9, -99);
  d.ARFA.assign(20, -99);
  ASSERT_EQ(d.read(square + "1\n8\n"), TORNWALZEN_DECK_OK) << d.text;
  EXPECT_EQ(d.KNG[4], -99.0);  // row 5 of column 1 is not the deck's
  EXPECT_EQ(d.KNG[5], 0.0);
  EXPECT_EQ(d.INTA[2], -99);
  EXPECT_EQ(d.ARFA[7], 0);
  EXPECT_EQ(d.ARFA[8], -99);
}

TEST(MeshDeck, AnEmptyMeshIsADeckToo) {
  Deck d;
  ASSERT_EQ(d.read(head + "0\n" + list + "INZIDENZTAFEL\n0\n" + list + "ENDE\n0\n"), TORNWALZEN_DECK_OK)
      << d.text;
  EXPECT_EQ(d.sizes.nkno + d.sizes.nele + d.sizes.neq, 0);
}

TEST(MeshDeck, APositiveSelectorHoldsTheUnknownsThatFollow) {
  Deck d;
  ASSERT_EQ(d.read(square + "3\n1\n4 comment\n8"), TORNWALZEN_DECK_OK) << d.text;
  EXPECT_EQ(d.ARFA, (std::vector<Int>{0, 1, 1, 0, 1, 1, 1, 0}));
}

TEST(MeshDeck, SelectorsZeroAndBelowMinusThreeHoldNothing) {
  for (const char* selector : {"0", "-4", "-2147483648", ",", "/"}) {
    Deck d;
    ASSERT_EQ(d.read(square + selector), TORNWALZEN_DECK_OK) << d.text;
    EXPECT_EQ(d.ARFA, std::vector<Int>(8, 1)) << selector;
  }
}

TEST(MeshDeck, ANegativeSelectorHoldsByCoordinates) {
  Deck d;
  ASSERT_EQ(d.read(square + "-3\n"), TORNWALZEN_DECK_OK) << d.text;
  EXPECT_EQ(d.ARFA, (std::vector<Int>{0, 0, 1, 0, 1, 1, 0, 1}));
}

TEST(MeshDeck, ATenthLiesBelowTheLimitOfSelectorMinusThree) {
  Deck d;
  ASSERT_EQ(d.read(head + "1\n" + list + "1 0.1 0.2 0\nI\n0\n" + list + "ENDE\n-3"), TORNWALZEN_DECK_OK)
      << d.text;
  EXPECT_EQ(d.ARFA[0], 0);
  EXPECT_EQ(d.ARFA[1], 1);
}

TEST(MeshDeck, TheCornerOfSelectorMinusTwo) {
  Deck d;
  ASSERT_EQ(d.read(head + "1\n" + list + "1 -700.0 103.0 0\nI\n0\n" + list + "ENDE\n-2"), TORNWALZEN_DECK_OK)
      << d.text;
  EXPECT_EQ(d.ARFA[1], 0);
}

TEST(MeshDeck, NullValuesLeaveTheArraysAsTheyWere) {
  Deck d;
  const std::string deck = head + "1\n" + list + "1,,2.5,\n,3.5\nI\n1\n" + list + "1 81 1,,3\nENDE\n,";
  ASSERT_EQ(d.read(deck), TORNWALZEN_DECK_OK) << d.text;
  EXPECT_EQ(d.KNG[0], -99.0);
  EXPECT_EQ(d.KNG[4], 2.5);
  EXPECT_EQ(d.KNG[8], -99.0);
  EXPECT_EQ(d.INTA, (std::vector<Int>{1, -99, -99, -99, 3, -99}));
}

TEST(MeshDeck, CountsThatAreNotWrittenAreZero) {
  Deck d;
  ASSERT_EQ(d.read(head + ",\n" + list + "I\n/\n" + list + "ENDE\n,\n"), TORNWALZEN_DECK_OK) << d.text;
  EXPECT_EQ(d.sizes.nkno + d.sizes.nele + d.sizes.neq, 0);
}

TEST(MeshDeck, ANullHeldUnknownRepeatsTheOneBefore) {
  Deck d;
  ASSERT_EQ(d.read(square + "2\n3\n,\n"), TORNWALZEN_DECK_OK) << d.text;
  EXPECT_EQ(d.ARFA, (std::vector<Int>{1, 1, 0, 1, 1, 1, 1, 1}));
}

TEST(MeshDeck, CoordinatesThatAreNotFiniteAreRead) {
  Deck d;
  ASSERT_EQ(d.read(head + "1\n" + list + "1 NaN -Infinity 1e999\nI\n0\n" + list + "ENDE\n0"),
            TORNWALZEN_DECK_OK)
      << d.text;
  EXPECT_TRUE(std::isnan(d.KNG[0]));
  EXPECT_EQ(d.KNG[4], -std::numeric_limits<double>::infinity());
  EXPECT_EQ(d.KNG[8], std::numeric_limits<double>::infinity());
}

TEST(MeshDeck, IncidencesAreNotComparedWithTheNodes) {
  Deck d;
  ASSERT_EQ(d.read(head + "1\n" + list + "1 0 0 0\nI\n1\n" + list + "1 81 0 -5 2147483647\nENDE\n0"),
            TORNWALZEN_DECK_OK)
      << d.text;
  EXPECT_EQ(d.INTA[0], 0);
  EXPECT_EQ(d.INTA[2], -5);
  EXPECT_EQ(d.INTA[4], 2147483647);
}

TEST(MeshDeck, CarriageReturnsAtLineEndsDoNotMatter) {
  std::string deck;
  for (char c : square + "1\n2\n") deck += c == '\n' ? std::string("\r\n") : std::string(1, c);
  Deck d;
  ASSERT_EQ(d.read(deck), TORNWALZEN_DECK_OK) << d.text;
  EXPECT_EQ(d.KNG, (std::vector<double>{0, 10, 10, 0, 0, 0, 20, 20, 5, 5, 5, 5}));
  EXPECT_EQ(d.ARFA[1], 0);
}

TEST(MeshDeck, TooManyNodesStop) {
  Deck d;
  d.sizes.maxkno = 3;
  EXPECT_EQ(d.read(square + "0\n"), TORNWALZEN_DECK_MAXKNO);
  EXPECT_EQ(d.text, " maxkno zu klein ");
  EXPECT_EQ(d.error.line, 4);
  EXPECT_EQ(d.error.value, 4);
  EXPECT_EQ(d.KNG, std::vector<double>(12, -99.0));
}

TEST(MeshDeck, TooManyUnknownsStop) {
  Deck d;
  d.sizes.maxsys = 7;
  EXPECT_EQ(d.read(square + "0\n"), TORNWALZEN_DECK_MAXSYS);
  EXPECT_EQ(d.text, " maxsys zu klein ");
  EXPECT_EQ(d.error.value, 8);
}

TEST(MeshDeck, NodesAreComparedBeforeUnknowns) {
  Deck d;
  d.sizes.maxkno = 3;
  d.sizes.maxsys = 0;
  d.sizes.maxele = 0;
  EXPECT_EQ(d.read(square + "0\n"), TORNWALZEN_DECK_MAXKNO);
}

TEST(MeshDeck, TooManyTrianglesStopAfterTheNodesWereTaken) {
  Deck d;
  d.sizes.maxele = 1;
  EXPECT_EQ(d.read(square + "0\n"), TORNWALZEN_DECK_MAXELE);
  EXPECT_EQ(d.text, " maxele zu klein ");
  EXPECT_EQ(d.error.line, 12);
  EXPECT_EQ(d.KNG[3], 0.0);
}

TEST(MeshDeck, TwiceAHugeCountDoesNotWrapAround) {
  Deck d;
  d.sizes.maxkno = std::numeric_limits<Int>::max();
  EXPECT_EQ(d.read(head + "2000000000\n"), TORNWALZEN_DECK_MAXSYS);
  EXPECT_EQ(d.error.value, 4000000000);
}

TEST(MeshDeck, CountsBelowZeroAreRefused) {
  Deck d;
  EXPECT_EQ(d.read(head + " -4\n" + list), TORNWALZEN_DECK_MALFORMED);
  EXPECT_EQ(d.text, "deck.t51:4:2: expected an integer: the number of nodes, 0 or more, found \"-4\"");
  EXPECT_EQ(d.read(head + "0\n" + list + "I\n-1"), TORNWALZEN_DECK_MALFORMED);
  EXPECT_EQ(d.text, "deck.t51:8:1: expected an integer: the number of triangles, 0 or more, found \"-1\"");
}

TEST(MeshDeck, MalformedNumbersAreNamedWithTheirPlace) {
  Deck d;
  EXPECT_EQ(d.read(head + "4.0\n"), TORNWALZEN_DECK_MALFORMED);
  EXPECT_EQ(d.text, "deck.t51:4:1: expected an integer: the number of nodes, found \"4.0\"");
  EXPECT_EQ(d.read(head + "1\n" + list + "one 0 0 0\n"), TORNWALZEN_DECK_MALFORMED);
  EXPECT_EQ(d.text, "deck.t51:7:1: expected an integer: the number of node 1, found \"one\"");
  EXPECT_EQ(d.read(head + "2\n" + list + "1 0 0 0\n2 0 1.5 1..5\n"), TORNWALZEN_DECK_MALFORMED);
  EXPECT_EQ(d.text, "deck.t51:8:9: expected a real number: z of node 2, found \"1..5\"");
  EXPECT_EQ(d.read(head + "0\n" + list + "I\n1\n" + list + "1 T3 1 2 3\n"), TORNWALZEN_DECK_MALFORMED);
  EXPECT_EQ(d.text, "deck.t51:11:3: expected an integer: the type of triangle 1, found \"T3\"");
  EXPECT_EQ(d.read(head + "0\n" + list + "I\n1\n" + list + "1 81 1 2 3.\n"), TORNWALZEN_DECK_MALFORMED);
  EXPECT_EQ(d.text, "deck.t51:11:10: expected an integer: node 3 of triangle 1, found \"3.\"");
  EXPECT_EQ(d.read(square + "x\n"), TORNWALZEN_DECK_MALFORMED);
  EXPECT_EQ(d.text, "deck.t51:18:1: expected an integer: the selector of held unknowns, found \"x\"");
  EXPECT_EQ(d.read(square + "1\n1.5\n"), TORNWALZEN_DECK_MALFORMED);
  EXPECT_EQ(d.text, "deck.t51:19:1: expected an integer: held unknown 1, found \"1.5\"");
}

TEST(MeshDeck, NumbersThatRanTogetherAreMalformed) {
  Deck d;
  EXPECT_EQ(d.read(head + "*****\n"), TORNWALZEN_DECK_MALFORMED);
  EXPECT_EQ(d.read(head + "0\n" + list + "I\n1\n" + list + "     1    81100000100001100002\nENDE\n0\n"),
            TORNWALZEN_DECK_MALFORMED);
  EXPECT_EQ(d.text,
            "deck.t51:11:11: expected an integer: the type of triangle 1, found \"81100000100001100002\"");
}

TEST(MeshDeck, AShortDeckNamesWhatIsMissing) {
  Deck d;
  EXPECT_EQ(d.read(""), TORNWALZEN_DECK_ENDED);
  EXPECT_EQ(d.text, "deck.t51:1:1: expected a keyword record, found the end of the file");
  EXPECT_EQ(d.read(head), TORNWALZEN_DECK_ENDED);
  EXPECT_EQ(d.text, "deck.t51:4:1: expected an integer: the number of nodes, found the end of the file");
  EXPECT_EQ(d.read(head + "2\n" + list + "1 0 0 0\n2 0 0"), TORNWALZEN_DECK_ENDED);
  EXPECT_EQ(d.text, "deck.t51:8:6: expected a real number: z of node 2, found the end of the file");
  EXPECT_EQ(d.read(square), TORNWALZEN_DECK_ENDED);
  EXPECT_EQ(d.text,
            "deck.t51:18:1: expected an integer: the selector of held unknowns, found the end of the file");
  EXPECT_EQ(d.read(square + "3\n1\n2\n"), TORNWALZEN_DECK_ENDED);
  EXPECT_EQ(d.text, "deck.t51:21:1: expected an integer: held unknown 3, found the end of the file");
}

TEST(MeshDeck, EveryShorterDeckIsRefused) {
  const std::string deck = square + "2\n3\n8\n";  // only its last line end may be missing
  for (std::size_t length = 0; length < deck.size() - 1; ++length) {
    Deck d;
    EXPECT_NE(d.read(deck.substr(0, length)), TORNWALZEN_DECK_OK) << length;
  }
}

TEST(MeshDeck, AHeldUnknownMustExist) {
  Deck d;
  for (const char* unknown : {"0", "9", "-1", ","}) {
    EXPECT_EQ(d.read(square + "2\n" + unknown + "\n1\n"), TORNWALZEN_DECK_SUBSCRIPT) << unknown;
    EXPECT_EQ(d.error.line, 19);
  }
  EXPECT_EQ(d.read(square + "2\n8\n 9\n"), TORNWALZEN_DECK_SUBSCRIPT);
  EXPECT_EQ(d.text, "deck.t51:20:2: expected held unknown 2 in 1..8, found 9");
}

TEST(MeshDeck, BinaryRubbishIsShownInPrintingCharacters) {
  Deck d;
  EXPECT_EQ(d.read(std::string("\x7f\x45\n\n\n\x01\xff\0x\x7f 4\n", 13)), TORNWALZEN_DECK_MALFORMED);
  EXPECT_EQ(d.text, "deck.t51:4:1: expected an integer: the number of nodes, found \"???x?\"");
}

TEST(MeshDeck, ALongItemIsCutInTheText) {
  Deck d;
  EXPECT_EQ(d.read(head + std::string(5000, '7')), TORNWALZEN_DECK_MALFORMED);
  EXPECT_EQ(std::string(d.error.found), std::string(63, '7'));
}

TEST(MeshDeck, AnErrorTextIsCutToItsRoom) {
  Deck d;
  d.read("");
  char room[12];
  tornwalzenDeckErrorText(&d.error, room, sizeof room);
  EXPECT_STREQ(room, "deck.t51:1:");
  tornwalzenDeckErrorText(&d.error, room, 0);
  EXPECT_STREQ(room, "deck.t51:1:");
}

TEST(MeshDeck, MemoryThatIsNotThereIsToldWithTheFile) {
  TornwalzenDeckError error{};
  error.kind = TORNWALZEN_DECK_NO_MEMORY;
  std::snprintf(error.file, sizeof error.file, "deck.t51");
  char line[64];
  tornwalzenDeckErrorText(&error, line, sizeof line);
  EXPECT_STREQ(line, "deck.t51: not enough memory");
}

TEST(MeshDeck, ADeckIsRecognisedByItsTitleOrItsCount) {
  const auto looks = [](const std::string& text) { return looksLikeDeck(text.data(), text.size()); };
  EXPECT_TRUE(looks(square));
  EXPECT_TRUE(looks("GEOMETRIE"));
  EXPECT_TRUE(looks("  GEOMETRIE DEFORMIERBARER KOERPER\r\n"));
  EXPECT_TRUE(looks("a\nb\nc\n 12\nd\n"));
  EXPECT_FALSE(looks(""));
  EXPECT_FALSE(looks("GEOMETRI"));
  EXPECT_FALSE(looks("a\nb\nc\n-1\nd\n"));
  EXPECT_FALSE(looks("# cup\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"));
  EXPECT_FALSE(looks("solid cup\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\n"));
  EXPECT_FALSE(looks(std::string(84, '\0')));
  EXPECT_FALSE(looks(std::string("\n\n\n\0\0", 5)));
}

}  // namespace
