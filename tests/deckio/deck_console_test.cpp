// The console forms as a user sees them: prompt, stop texts, exit status, and what is left on the disk.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "deckio/temporary_folder.hpp"

namespace {

class DeckConsole : public TemporaryFolder {
 protected:
  // Runs the C host in the test's folder; its exit status.
  int run(const std::string& words, const std::string& input = "") {
    write(".in", input);
    const std::string command =
        "cd " + folder.string() + " && " TORNWALZEN_CONSOLE_HOST " " + words + " < .in > .out 2> .err";
    const int status = std::system(command.c_str());
    out = content(".out");
    err = content(".err");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  std::string out, err;
};

const std::string prompt = " EINGABEDATEI \n";
const std::string triangle =
    "GEOMETRIE DEFORMIERBARER KOERPER\nBEGINN TORNWALZEN_E\nKNOTENGEOMETRIE\n3\nLUECKENLOS\nLISTENGESTEUERT\n"
    "10 0 0 5\n20 1 0 5\n30 0 1.5D0 5\nINZIDENZTAFEL\n1\nLUECKENLOS\nLISTENGESTEUERT\n1 81 1 2 "
    "3\nENDE\n2\n1\n4\n";

TEST_F(DeckConsole, AsksForTheDeckAndReadsIt) {
  write("part.deck", triangle);
  EXPECT_EQ(run("read 3 1 6", "part.deck\n"), 0);
  EXPECT_EQ(out, prompt + "3 1 6\n1 2 3\n011011\n0 0 5\n1 0 5\n0 1.5 5\n");
  EXPECT_EQ(err, "");
}

TEST_F(DeckConsole, DeclaredDimensionsMayBeLarger) {
  write("part.deck", triangle);
  EXPECT_EQ(run("read 10 20 30", "part.deck\n"), 0);
  EXPECT_EQ(out, prompt + "3 1 6\n1 2 3\n011011\n0 0 5\n1 0 5\n0 1.5 5\n");
}

TEST_F(DeckConsole, TheNameIsAFieldOfTwentyCharacters) {
  write("a23456789 123456789b", triangle);
  EXPECT_EQ(run("read 3 1 6", "a23456789 123456789bcdef\n"), 0);
  EXPECT_EQ(run("read 3 1 6", "a23456789 123456789b\n"), 0);
}

TEST_F(DeckConsole, BlanksBehindTheNameAreTrimmed) {
  write("deck", triangle);
  EXPECT_EQ(run("read 3 1 6", "deck          \n"), 0);
  EXPECT_EQ(run("read 3 1 6", "deck                         x\n"), 0);  // x stands behind the field
  EXPECT_EQ(run("read 3 1 6", "deck\r\n"), 0);
  EXPECT_EQ(run("read 3 1 6", "deck"), 0);
}

TEST_F(DeckConsole, WithoutANameItStops) {
  EXPECT_EQ(run("read 3 1 6", ""), 1);
  EXPECT_EQ(out, prompt);
  EXPECT_EQ(err, "standard input:1:1: expected the name of the deck, found the end of the file\n");
  EXPECT_EQ(run("read 3 1 6", "   \n"), 1);
  EXPECT_EQ(err, ": cannot be read: No such file or directory\n");
}

TEST_F(DeckConsole, AMissingFileStops) {
  EXPECT_EQ(run("read 3 1 6", "none\n"), 1);
  EXPECT_EQ(out, prompt);
  EXPECT_EQ(err, "none: cannot be read: No such file or directory\n");
}

TEST_F(DeckConsole, ExceededCapacitiesStopInTheirOrder) {
  write("deck", triangle);
  EXPECT_EQ(run("read 2 0 0", "deck\n"), 1);
  EXPECT_EQ(out, prompt + " maxkno zu klein \n");
  EXPECT_EQ(run("read 3 0 5", "deck\n"), 1);
  EXPECT_EQ(out, prompt + " maxsys zu klein \n");
  EXPECT_EQ(run("read 3 0 6", "deck\n"), 1);
  EXPECT_EQ(out, prompt + " maxele zu klein \n");
  EXPECT_EQ(err, "");
}

TEST_F(DeckConsole, AShortDeckStops) {
  write("deck", triangle.substr(0, triangle.size() - 2));
  EXPECT_EQ(run("read 3 1 6", "deck\n"), 1);
  EXPECT_EQ(out, prompt);
  EXPECT_EQ(err, "deck:18:1: expected an integer: held unknown 2, found the end of the file\n");
}

TEST_F(DeckConsole, AMalformedNumberStops) {
  write("deck", "a\nb\nc\nvier\n");
  EXPECT_EQ(run("read 3 1 6", "deck\n"), 1);
  EXPECT_EQ(err, "deck:4:1: expected an integer: the number of nodes, found \"vier\"\n");
}

TEST_F(DeckConsole, AHeldUnknownThatDoesNotExistIsASubscriptOfTheFlags) {
  write("deck", triangle + "7\n");
  std::string deck = triangle;
  deck.replace(deck.size() - 2, 1, "7");
  write("deck", deck);
  EXPECT_EQ(run("read 3 1 6", "deck\n"), 1);
  EXPECT_EQ(
      err,
      "fort: (2): Subscript #1 of the array ARFA has value 7 which is greater than the upper bound of 6\n"
      "deck:18:1: expected held unknown 2 in 1..6, found 7\n");
}

TEST_F(DeckConsole, WritesTheFlatBlankUnderItsName) {
  write("eben.t51", std::string(9999, 'x'));
  EXPECT_EQ(run("write 12.5"), 0);
  EXPECT_EQ(out + err, "");
  EXPECT_EQ(content("eben.t51"),
            "GEOMETRIE DEFORMIERBARER KOERPER\n"
            "BEGINN TORNWALZEN_E        \n"
            "KNOTENGEOMETRIE            \n"
            "    3\n"
            "LUECKENLOS           \n"
            "LISTENGESTEUERT            \n"
            "     1   0.125000E+02   0.000000E+00   0.000000E+00\n"
            "     2   0.100000E+01   0.000000E+00   0.000000E+00\n"
            "     3   0.000000E+00   0.100000E+01   0.000000E+00\n"
            "INZIDENZTAFEL\n"
            "    1\n"
            "LUECKENLOS           \n"
            "LISTENGESTEUERT            \n"
            "     1    81     1     2     3\n"
            "ENDE\n");
}

TEST_F(DeckConsole, ABlankThatIsNoNumberIsWrittenAsAWord) {
  EXPECT_EQ(run("write nan"), 0);
  EXPECT_NE(content("eben.t51").find("     1            NaN   0.000000E+00   0.000000E+00\n"),
            std::string::npos);
}

TEST_F(DeckConsole, AFlatBlankThatCannotBeWrittenStops) {
  std::filesystem::create_directory(folder / "eben.t51");
  EXPECT_EQ(run("write 1"), 1);
  EXPECT_EQ(err, "eben.t51: cannot be written: Is a directory\n");
}

}  // namespace
