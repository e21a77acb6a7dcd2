// Mesh decks and the flat-blank file on the command line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/mesh/sample_meshes.hpp"
#include "app/program/program.hpp"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

// A tile of two triangles, one corner raised, and its held unknowns.
const std::string tileHead =
    "GEOMETRIE DEFORMIERBARER KOERPER\nBEGINN TORNWALZEN_E\nKNOTENGEOMETRIE\n4\nLUECKENLOS\nLISTENGESTEUERT\n"
    "1 0 0 0\n2 10 0 0\n3 10 10 2\n4 0 10 0\nINZIDENZTAFEL\n2\nLUECKENLOS\nLISTENGESTEUERT\n"
    "1 81 1 2 3\n2 81 1 3 4\nENDE\n";
const std::string tile = tileHead + "3\n1\n2\n4\n";

std::size_t linesOf(const std::string& text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace

TEST(Deck, IsSolvedWithItsHeldUnknowns) {
  const ScratchFolder folder;
  folder.write("tile.t51", tile);
  const Outcome outcome = tornwalzen(folder, "solve tile.t51");
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const auto json = nlohmann::json::parse(folder.read("tile_blank/summary.json"));
  EXPECT_EQ(json["hold"], "deck");
  EXPECT_EQ(json["held_unknowns"], 3);
  EXPECT_EQ(json["nodes"], 4);
  EXPECT_EQ(json["triangles"], 2);
}

TEST(Deck, AnotherRuleMayReplaceItsHeldUnknowns) {
  const ScratchFolder folder;
  folder.write("tile.t51", tile);
  const Outcome outcome = tornwalzen(folder, "solve tile.t51 --hold auto");
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(nlohmann::json::parse(folder.read("tile_blank/summary.json"))["hold"], "auto");
}

TEST(Deck, ThatHoldsTooLittleIsRefused) {
  const ScratchFolder folder;
  folder.write("tile.t51", tileHead + "0\n");
  const Outcome outcome = tornwalzen(folder, "solve tile.t51");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "tornwalzen: --hold deck: the blank can still move in x; no u is held\n");
}

TEST(Deck, OnlyADeckHoldsItsOwn) {
  const ScratchFolder folder;
  folder.write("part.obj", plateObj(2, 2));
  const Outcome outcome = tornwalzen(folder, "solve part.obj --hold deck");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "tornwalzen: --hold deck: part.obj is not a mesh deck\n");
}

TEST(Deck, GivesTheSameBlankAsTheMeshItWasMadeFrom) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(8, 4));
  const Outcome made = tornwalzen(folder, "deck pipe.obj -o pipe.t51");
  ASSERT_EQ(made.status, 0) << made.err;
  EXPECT_EQ(made.out, "");
  EXPECT_EQ(made.err, "pipe.obj: 45 nodes, 64 triangles, 3 held unknowns\n");
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --out a").status, 0);
  ASSERT_EQ(tornwalzen(folder, "solve pipe.t51 --out b").status, 0);
  const auto vertices = [&](const std::string& name) {  // without the comment that names the part
    std::istringstream text(folder.read(name));
    std::string kept;
    for (std::string line; std::getline(text, line);)
      if (!line.starts_with("#")) kept += line + "\n";
    return kept;
  };
  EXPECT_EQ(vertices("a/blank.obj"), vertices("b/blank.obj"));
  EXPECT_EQ(tornwalzen(folder, "deck pipe.t51 -o again.t51").status, 0);
  EXPECT_EQ(folder.read("pipe.t51"), folder.read("again.t51"));
}

TEST(Deck, WithoutArgumentsItsNameIsAskedFor) {
  const ScratchFolder folder;
  folder.write("tile.t51", tile);
  const Outcome outcome = shell(folder, "echo 'tile.t51     ' | \"$TORNWALZEN\" deck");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, " EINGABEDATEI \ntile.t51: 4 nodes, 2 triangles, 3 held unknowns\n");
  EXPECT_EQ(outcome.err, "");
}

TEST(Deck, AnAskedNameThatIsMissingEndsTheProgram) {
  const ScratchFolder folder;
  Outcome outcome = shell(folder, "echo none | \"$TORNWALZEN\" deck -o out.t51");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, " EINGABEDATEI \n");
  EXPECT_EQ(outcome.err, "tornwalzen: cannot read none: No such file or directory\n");
  outcome = tornwalzen(folder, "deck -o out.t51");  // standard input is empty
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "tornwalzen: no name of a deck on standard input\n");
  EXPECT_THAT(folder.names(), ElementsAre());
}

namespace {

struct Damage {
  const char* name;
  std::string content;
  const char* out;
  const char* sentence;
};
void PrintTo(const Damage& damage, std::ostream* stream) {
  *stream << damage.name;
}

const std::string start = "GEOMETRIE\nb\nc\n";
const Damage damages[] = {
    {"Short", tileHead, "",
     "part.t51:18:1: expected an integer: the selector of held unknowns, found the end of the file"},
    {"MalformedNumber", start + "4\ne\nf\n1 0 0,O 0\n", "",
     "part.t51:7:7: expected a real number: z of node 1, found \"O\""},
    {"RealCount", start + "4.0\n", "",
     "part.t51:4:1: expected an integer: the number of nodes, found \"4.0\""},
    {"NegativeCount", start + "-4\n", "",
     "part.t51:4:1: expected an integer: the number of nodes, 0 or more, found \"-4\""},
    {"HugeCount", "\n\n\n2000000000", " maxsys zu klein \n",
     "part.t51: the deck announces 4000000000 unknowns; more than 2147483647 are not taken"},
    {"AbsurdCount", "\n\n\n999999999", "",
     "part.t51:4:10: expected a keyword record, found the end of the file"},
    {"NoTriangles", start + "0\n\n\n\n0\n\n\n\n0\n", "", "part.t51: the deck holds no triangles"},
    {"HeldUnknownOutside", tileHead + "1\n9\n", "",
     "part.t51:19:1: expected held unknown 1 in 1..8, found 9"},
    {"IncidenceOutside", start + "3\n\n\n1 0 0 0\n2 1 0 0\n3 0 1 0\n\n1\n\n\n1 81 1 2 4\n\n0\n", "",
     "part.t51: element 1 names node 4, but the nodes run from 1 to 3"},
    {"NotFinite", start + "3\n\n\n1 0 0 0\n2 NaN 0 0\n3 0 1 0\n\n1\n\n\n1 81 1 2 3\n\n0\n", "",
     "part.t51: node 2 (nan, 0, 0) has a coordinate that is not finite"},
    {"Binary", start + "\x01\xff\x7f", "",
     "part.t51:4:1: expected an integer: the number of nodes, found \"???\""},
};

class DamagedDeck : public testing::TestWithParam<Damage> {};

}  // namespace

TEST_P(DamagedDeck, IsRefusedByPlaceAndLeavesNoFiles) {
  const ScratchFolder folder;
  folder.write("part.t51", GetParam().content);
  for (const char* command : {"solve part.t51 --out results", "deck part.t51 -o out.t51"}) {
    const Outcome outcome = tornwalzen(folder, command);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, GetParam().out);
    EXPECT_EQ(outcome.err, "tornwalzen: " + std::string(GetParam().sentence) + "\n");
    EXPECT_THAT(folder.names(), ElementsAre("part.t51"));
  }
}

INSTANTIATE_TEST_SUITE_P(Refusals, DamagedDeck, testing::ValuesIn(damages),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Deck, AnOutputThatCannotBeWrittenIsTold) {
  const ScratchFolder folder;
  folder.write("tile.t51", tile);
  const Outcome outcome = tornwalzen(folder, "deck tile.t51 -o none/out.t51");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "tornwalzen: none/out.t51: cannot be written: No such file or directory\n");
}

TEST(Deck, MayGoThroughPipes) {
  const ScratchFolder folder;
  folder.write("tile.t51", tile);
  const Outcome outcome =
      shell(folder, "cat tile.t51 | \"$TORNWALZEN\" deck /dev/stdin -o /dev/stdout | cat");
  EXPECT_THAT(outcome.out, StartsWith("GEOMETRIE DEFORMIERBARER KOERPER\n"));
  EXPECT_THAT(outcome.out, HasSubstr("\nENDE\n3\n1\n2\n4\n"));
  EXPECT_EQ(outcome.err, "/dev/stdin: 4 nodes, 2 triangles, 3 held unknowns\n");
}

TEST(Deck, APipeIntoWhichNobodyWritesDoesNotBlock) {
  const ScratchFolder folder;
  for (const char* arguments : {"solve pipe", "deck"}) {
    const Outcome outcome =
        shell(folder, "mkfifo pipe 2>&-; echo pipe | timeout 20 \"$TORNWALZEN\" " + std::string(arguments));
    EXPECT_EQ(outcome.status, 1) << arguments;
    EXPECT_EQ(outcome.err,
              "tornwalzen: cannot read pipe: it is a pipe, and for 3 s nobody has opened it to write\n");
  }
}

TEST(FlatBlankFile, HoldsTheBlankThatTheRunFound) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(8, 4));
  const Outcome outcome = tornwalzen(folder, "solve pipe.obj --eben --eben-start --out r");
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(folder.names("r"),
              ElementsAre("blank.dxf", "blank.obj", "blank.svg", "blank.vtu", "eben.t51", "eben_start.t51",
                          "part.vtu", "report.html", "summary.json", "tornwalzen.log"));
  const std::string eben = folder.read("r/eben.t51"), begin = folder.read("r/eben_start.t51");
  EXPECT_EQ(linesOf(eben), 6u + 45u + 4u + 64u + 1u);
  EXPECT_EQ(linesOf(begin), linesOf(eben));
  EXPECT_NE(begin, eben);
  // node by node the blank of the OBJ file, to the six digits of the fields
  std::istringstream nodes(eben), vertices(folder.read("r/blank.obj"));
  std::string line;
  for (int skipped = 0; skipped < 6; ++skipped) std::getline(nodes, line);
  int compared = 0;
  for (std::string vertex; std::getline(vertices, vertex);) {
    if (!vertex.starts_with("v ")) continue;
    double x = 0.0, y = 0.0, nodeX = 0.0, nodeY = 0.0, nodeZ = -1.0;
    int number = 0;
    std::istringstream(vertex.substr(2)) >> x >> y;
    ASSERT_TRUE(std::getline(nodes, line));
    EXPECT_EQ(line.size(), 51u);
    std::istringstream(line) >> number >> nodeX >> nodeY >> nodeZ;
    EXPECT_EQ(number, ++compared);
    EXPECT_NEAR(nodeX, x, 5e-6 * std::abs(x));  // half a unit of the sixth digit
    EXPECT_NEAR(nodeY, y, 5e-6 * std::abs(y));
    EXPECT_EQ(nodeZ, 0.0);
  }
  EXPECT_EQ(compared, 45);
}

// The format is in millimetres. A part of 1/25.4 of the size, given in inches, is the same part.
TEST(FlatBlankFile, IsInMillimetresWhateverTheUnitOfThePart) {
  const ScratchFolder folder;
  const std::string millimetres = halfPipeObj(8, 4);
  folder.write("mm.obj", millimetres);
  std::ostringstream inches;
  inches.precision(17);
  std::istringstream lines(millimetres);
  for (std::string line; std::getline(lines, line);) {
    double x = 0.0, y = 0.0, z = 0.0;
    if (line[0] == 'v' && std::istringstream(line.substr(1)) >> x >> y >> z)
      inches << "v " << x / 25.4 << " " << y / 25.4 << " " << z / 25.4 << "\n";
    else
      inches << line << "\n";
  }
  folder.write("inch.obj", inches.str());
  ASSERT_EQ(tornwalzen(folder, "solve mm.obj --eben --eben-start --out mm").status, 0);
  ASSERT_EQ(tornwalzen(folder, "solve inch.obj --unit inch --eben --eben-start --out inch").status, 0);
  for (const char* name : {"eben.t51", "eben_start.t51"}) {
    std::istringstream wanted(folder.read(std::string("mm/") + name)),
        found(folder.read(std::string("inch/") + name));
    std::string word, other;
    while (wanted >> word) {
      ASSERT_TRUE(found >> other);
      char* end = nullptr;
      const double value = std::strtod(word.c_str(), &end);
      if (*end != '\0')
        EXPECT_EQ(other, word);
      else  // coordinates are rounded once more on their way through inches, then to six digits
        EXPECT_NEAR(std::strtod(other.c_str(), nullptr), value, 2e-6 * std::max(1.0, std::abs(value)))
            << name;
    }
  }
}

TEST(FlatBlankFile, ReadsBackAsADeck) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(8, 4));
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --eben --out r").status, 0);
  const Outcome outcome =
      shell(folder, "(cat r/eben.t51; echo 0) > e.t51 && \"$TORNWALZEN\" deck e.t51 --hold auto");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "e.t51: 45 nodes, 64 triangles, 3 held unknowns\n");
}

TEST(FlatBlankFile, OfATooLargePartIsRefusedBeforeTheRun) {
  const ScratchFolder folder;
  folder.write("plate.obj", plateObj(250, 200));
  for (const char* option : {"--eben", "--eben-start"}) {
    const Outcome outcome = tornwalzen(folder, "solve plate.obj --out r " + std::string(option));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err,
              "tornwalzen: plate.obj: 50451 nodes and 100000 triangles do not fit the fields of eben.t51, "
              "which hold "
              "99999 of each\n");
    EXPECT_THAT(folder.names(), ElementsAre("plate.obj"));
  }
}
