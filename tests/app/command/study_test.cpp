#include "command/study.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/refusal.hpp"

using namespace host;
using testing::ElementsAre;

namespace {

std::vector<StudyRow> rowsOf(const std::string& content) {
  return studyRows(readStudyTable(content, "s.csv"), "s.csv", "out");
}

std::string refused(const std::string& content) {
  return refusal([&] { rowsOf(content); });
}

}  // namespace

TEST(Study, ARowBecomesTheArgumentsOfSolve) {
  const auto rows = rowsOf("PART,thickness,--mu,csv,name\na.obj,1.5,0.1,yes,first\n-b.obj,,,no,\n");
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].folder, "out/first");
  EXPECT_THAT(rows[0].words, ElementsAre("a.obj", "--thickness=1.5", "--mu=0.1", "--csv", "--threads=1",
                                         "--out=out/first", "--outcome=out/first/outcome.json", "--quiet"));
  EXPECT_EQ(rows[1].folder, "out/2_-b");
  EXPECT_THAT(rows[1].words, ElementsAre("./-b.obj", "--csv=false", "--threads=1", "--out=out/2_-b",
                                         "--outcome=out/2_-b/outcome.json", "--quiet"));
}

// Rows run side by side: one thread each, unless the row says otherwise.
TEST(Study, ARowTakesOneThreadUnlessItSaysOtherwise) {
  const auto threadsOf = [](const StudyRow& row) {
    std::vector<std::string> threads;
    for (const std::string& word : row.words)
      if (word.starts_with("--threads")) threads.push_back(word);
    return threads;
  };
  for (const char* heading : {"threads", "--threads"}) {
    const auto rows = rowsOf(std::string("PART,") + heading + "\na.obj,4\na.obj,\na.obj,1\n");
    EXPECT_THAT(threadsOf(rows[0]), ElementsAre("--threads=4"));
    EXPECT_THAT(threadsOf(rows[1]), ElementsAre("--threads=1"));
    EXPECT_THAT(threadsOf(rows[2]), ElementsAre("--threads=1"));
  }
  EXPECT_EQ(refused("PART,threads\na,0\n").substr(0, 15), "s.csv, line 2: ");
}

TEST(Study, RefusesByLineAndColumn) {
  EXPECT_EQ(refused("thickness\n1\n"), "s.csv: no column PART with the mesh file of each row");
  EXPECT_EQ(refused("PART,colour\na,red\n"),
            "s.csv: column \"colour\" is no option of solve, see tornwalzen solve --help");
  EXPECT_EQ(refused("PART,out\na,b\n"), "s.csv: column \"out\": the study sets that itself");
  EXPECT_EQ(refused("PART,r,--r\na,1,2\n"), "s.csv: two columns for --r");
  EXPECT_EQ(refused("PART,r\na,1\n,2\n"), "s.csv, line 3: no mesh file in the column PART");
  EXPECT_EQ(refused("PART,csv\na,perhaps\n"), "s.csv, line 2: --csv is yes or no, not \"perhaps\"");
  EXPECT_EQ(refused("PART,name\na,x\nb,x\n"), "s.csv, line 3: the name \"x\" occurs twice");
  EXPECT_EQ(refused("PART,name\na,../x\n"), "s.csv, line 2: \"../x\" is no name for a folder");
  EXPECT_EQ(refused("PART,name\na,..\n"), "s.csv, line 2: \"..\" is no name for a folder");
  EXPECT_THAT(refused("PART,name\n\"a\nb\",x\n"),
              testing::StartsWith("s.csv, line 2: a cell with a line end"));
  EXPECT_THAT(refused("PART,path\na,sideways\n"), testing::StartsWith("s.csv, line 2: --path: "));
  EXPECT_THAT(refused("PART,r\na,much\n"), testing::StartsWith("s.csv, line 2: "));
}

TEST(Study, QuotesWhatAShellWouldTakeForItsOwn) {
  EXPECT_EQ(shellWord("a/b-1_2.obj"), "a/b-1_2.obj");
  EXPECT_EQ(shellWord(""), "''");
  EXPECT_EQ(shellWord("two words"), "'two words'");
  EXPECT_EQ(shellWord("$(rm -rf x);`y`"), "'$(rm -rf x);`y`'");
  EXPECT_EQ(shellWord("o'hara"), "'o'\\''hara'");
  EXPECT_EQ(shellWord("~"), "'~'");
}
