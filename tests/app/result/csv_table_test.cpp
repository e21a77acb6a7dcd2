#include "result/csv_table.hpp"

#include <gtest/gtest.h>

#include <limits>

#include "app/scratch_folder.hpp"

using namespace host;

TEST(CsvTable, HasALineOfHeadingsAndALinePerRow) {
  const ScratchFolder folder;
  const std::vector<double> values{0.1, std::numeric_limits<double>::quiet_NaN(), -1e-300,
                                   7,   std::numeric_limits<double>::infinity(),  2};
  const std::vector<std::int64_t> ids{5, 9000000000};
  FileWriter file(folder.file("t.csv"), "t.csv");
  writeCsv(file,
           {integerColumn("id", ids), realColumn("a_mm", values, 3, 0), realColumn("b_mm", values, 3, 1)}, 2);
  file.finish();
  EXPECT_EQ(folder.read("t.csv"), "id,a_mm,b_mm\n5,0.1,\n9000000000,7,\n");
}

TEST(CsvTable, CellsAreQuotedAndNeverFormulas) {
  EXPECT_EQ(csvCell("plain"), "plain");
  EXPECT_EQ(csvCell("a,b"), "\"a,b\"");
  EXPECT_EQ(csvCell("say \"no\"\n"), "\"say \"\"no\"\"\n\"");
  EXPECT_EQ(csvCell("-1.5e3"), "-1.5e3");
  EXPECT_EQ(csvCell("=cmd|'/C calc'!A0"), " =cmd|'/C calc'!A0");
  EXPECT_EQ(csvCell("@x"), " @x");
}
