#include "result/overview.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/scratch_folder.hpp"

using namespace host;
using testing::HasSubstr;
using testing::Not;

namespace {

Overview sample() {
  Overview overview;
  overview.rows.push_back({"r/one",
                           "one/report.html",
                           "good",
                           "0",
                           "",
                           {{"PART", "a.obj"}, {"r", "1.5"}},
                           {{"verdict", "good"}, {"blank_area_mm2", "123.456"}, {"triangles", "40"}}});
  overview.rows.push_back({"r/<script>alert(1)</script>",
                           "a b#%\"/report.html",
                           "refused",
                           "1",
                           "it says \"no\" & <b>",
                           {{"PART", "=1+1"}},
                           {}});
  return overview;
}

template <class Write>
std::string written(Write write) {
  const ScratchFolder folder;
  ResultFiles files(folder.path());
  files.add("file", [&](FileWriter& file) { write(file, sample()); });
  files.putIntoPlace();
  return folder.read("file");
}

}  // namespace

TEST(Overview, TheTableHasAColumnPerOptionAndFigureOfAnyRun) {
  EXPECT_EQ(written(writeOverviewTable),
            "folder,verdict,exit_status,reason,option PART,option r,blank_area_mm2,triangles\n"
            "r/one,good,0,,a.obj,1.5,123.456,40\n"
            "r/<script>alert(1)</script>,refused,1,\"it says \"\"no\"\" & <b>\", =1+1,,,\n");
}

TEST(Overview, ThePageEscapesWhatComesFromFiles) {
  const std::string page = written(writeOverviewPage);
  EXPECT_THAT(page, testing::StartsWith(overviewPageBeginning));
  EXPECT_THAT(page, Not(HasSubstr("<script")));
  EXPECT_THAT(page, Not(HasSubstr("<b>")));
  EXPECT_THAT(page, HasSubstr("r/&lt;script&gt;alert(1)&lt;/script&gt;"));
  EXPECT_THAT(page, HasSubstr("href=\"./a%20b%23%25%22/report.html\""));
  EXPECT_THAT(page, HasSubstr("<td class=\"n\">123.5 mm2</td>"));
  EXPECT_THAT(page,
              HasSubstr("2 runs: <span class=\"good\">1 good</span> <span class=\"bad\">1 refused</span>"));
  EXPECT_THAT(page, Not(HasSubstr("http://")));
  EXPECT_THAT(page, Not(HasSubstr("https://")));
}
