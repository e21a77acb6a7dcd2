#include "command/study_table.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/refusal.hpp"

using namespace host;
using testing::ElementsAre;

namespace {

std::string refused(const std::string& content) {
  return refusal([&] { readStudyTable(content, "s.csv"); });
}

}  // namespace

TEST(StudyTable, ReadsCellsWithTheirLines) {
  const StudyTable table = readStudyTable("PART, thickness \n a.obj ,1.5\n\n,\nb.obj\n", "s.csv");
  EXPECT_THAT(table.headings, ElementsAre("PART", "thickness"));
  ASSERT_EQ(table.rows.size(), 2u);
  EXPECT_THAT(table.rows[0].cells, ElementsAre("a.obj", "1.5"));
  EXPECT_EQ(table.rows[0].line, 2);
  EXPECT_THAT(table.rows[1].cells, ElementsAre("b.obj", ""));
  EXPECT_EQ(table.rows[1].line, 5);
}

TEST(StudyTable, QuotesHoldSeparatorsQuotesAndLineEnds) {
  const StudyTable table = readStudyTable("PART,law\n\"a,\"\"b\"\".obj\" ,\"x\ny\"\nc,d\n", "s.csv");
  EXPECT_THAT(table.rows[0].cells, ElementsAre("a,\"b\".obj", "x\ny"));
  EXPECT_THAT(table.rows[1].cells, ElementsAre("c", "d"));
  EXPECT_EQ(table.rows[1].line, 4);
}

TEST(StudyTable, TakesSemicolonsTabsLineEndsAndMarksOfOtherSystems) {
  for (const std::string& content :
       {std::string("\xEF\xBB\xBFPART;mu\r\na.obj;0.1,0.2\r\n"), std::string("PART\tmu\na.obj\t0.1,0.2")}) {
    const StudyTable table = readStudyTable(content, "s.csv");
    EXPECT_THAT(table.headings, ElementsAre("PART", "mu"));
    EXPECT_THAT(table.rows.at(0).cells, ElementsAre("a.obj", "0.1,0.2"));
  }
}

TEST(StudyTable, RefusesByLine) {
  EXPECT_EQ(refused(""), "s.csv: no line of headings");
  EXPECT_EQ(refused("PART\n"), "s.csv: no row below the headings");
  EXPECT_EQ(refused("PART,,r\na,b,c\n"), "s.csv: column 2 has no heading");
  EXPECT_EQ(refused("PART,r,r\na,b,c\n"), "s.csv: two columns are headed r");
  EXPECT_EQ(refused("PART,r\na,1\nb,1,2\n"), "s.csv, line 3: 3 cells, but 2 headings");
  EXPECT_EQ(refused("PART,r\n\"a\"b,1\n"), "s.csv, line 2: text behind a closing quote");
  EXPECT_EQ(refused("PART,r\na,1\n\"b,1\nc,2\n"), "s.csv, line 3: a quote that does not end");
  EXPECT_EQ(refused(std::string("PART\0,r\na,b\n", 12)), "s.csv: not a table of text");
}
