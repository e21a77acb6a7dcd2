// Studies: from a table through the shell to one table and one page.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "app/mesh/sample_meshes.hpp"
#include "app/program/program.hpp"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

// Two runs that end, one that is refused by its mesh and one whose file is not there.
void writeStudy(const ScratchFolder& folder) {
  folder.write("pipe.obj", halfPipeObj(20, 8));
  folder.write("it's $two.obj",
               "v 0 0 0\nv 9 0 0\nv 9 9 0\nv 99 0 0\nv 99 9 0\nv 88 9 0\nf 1 2 3\nf 4 5 6\n");
  folder.write("s.csv",
               "PART,name,r,square,report\n"
               "pipe.obj,weak,0.8,yes,no\n"
               "pipe.obj,strong,2,no,\n"
               "it's $two.obj,\"a \"\"two\"\"\",,,\n"
               "none.obj,,,,\n");
}

std::int64_t lines(const std::string& text) {
  return std::count(text.begin(), text.end(), '\n');
}

}  // namespace

TEST(ProgramStudy, RunsThroughAShellAndIsCollected) {
  const ScratchFolder folder;
  writeStudy(folder);
  const Outcome run = shell(folder, "\"$TORNWALZEN\" study s.csv --print >lines; sh lines");
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(lines(folder.read("lines")), 4);
  const Outcome collected = tornwalzen(folder, "collect s_study");
  ASSERT_EQ(collected.status, 0) << collected.err;
  EXPECT_THAT(collected.out, HasSubstr("4 runs: 2 good, 2 refused\n"));
  const std::string table = folder.read("s_study/collected.csv");
  EXPECT_EQ(lines(table), 5);
  EXPECT_THAT(
      table,
      HasSubstr("folder,verdict,exit_status,reason,option PART,option threads,option r,option square,"));
  EXPECT_THAT(table, HasSubstr("\ns_study/weak,good,0,,pipe.obj,1,0.8,yes,"));
  EXPECT_THAT(table, HasSubstr("\ns_study/strong,good,0,,pipe.obj,1,2,false,"));
  EXPECT_THAT(table, HasSubstr("refused,1,cannot read none.obj: No such file or directory,none.obj,"));
  EXPECT_THAT(table, HasSubstr("pieces that no edge joins"));
  const std::string page = folder.read("s_study/overview.html");
  EXPECT_THAT(page, HasSubstr("<a href=\"./strong/report.html\">"));
  EXPECT_THAT(page, Not(HasSubstr("weak/report.html")));  // it was run without
  EXPECT_THAT(page, HasSubstr("it&#39;s $two.obj"));
}

TEST(ProgramStudy, GoesOnWhereItStopped) {
  const ScratchFolder folder;
  writeStudy(folder);
  const std::string print = "study s.csv --print";
  ASSERT_EQ(lines(tornwalzen(folder, print).out), 4);
  shell(folder, "\"$TORNWALZEN\" study s.csv --print | head -n 1 | sh");  // and then the lights went out
  Outcome left = tornwalzen(folder, print);
  EXPECT_THAT(left.err, HasSubstr("4 rows, 1 of them complete and left out (--again prints them too)\n"));
  EXPECT_EQ(lines(left.out), 3);
  EXPECT_THAT(left.out, Not(HasSubstr("weak")));
  EXPECT_EQ(lines(tornwalzen(folder, print + " --again").out), 4);

  // another value, another part, or results that are gone: the row is to be run again
  std::string table = folder.read("s.csv");
  table.replace(table.find("0.8"), 3, "0.9");
  folder.write("s.csv", table);
  EXPECT_EQ(lines(tornwalzen(folder, print).out), 4);
  writeStudy(folder);
  EXPECT_EQ(lines(tornwalzen(folder, print).out), 3);
  folder.write("pipe.obj", halfPipeObj(22, 8));
  EXPECT_EQ(lines(tornwalzen(folder, print).out), 4);
  writeStudy(folder);
  std::filesystem::remove(folder.file("s_study/weak/summary.json"));
  EXPECT_EQ(lines(tornwalzen(folder, print).out), 4);
}

TEST(ProgramStudy, ARowThatIsRefusedLaterLosesItsOldVerdict) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(20, 8));
  folder.write("s.csv", "PART,name\npipe.obj,a\n");
  shell(folder, "\"$TORNWALZEN\" study s.csv --print | sh");
  std::filesystem::remove(folder.file("pipe.obj"));
  shell(folder, "\"$TORNWALZEN\" study s.csv --print | sh");
  EXPECT_THAT(tornwalzen(folder, "collect s_study").out, HasSubstr("1 run: 1 refused\n"));
}

TEST(ProgramStudy, IsAnArrayOfJobsToo) {
  const ScratchFolder folder;
  writeStudy(folder);
  const Outcome script = tornwalzen(folder, "study s.csv --print --slurm");
  ASSERT_EQ(script.status, 0);
  EXPECT_THAT(script.out, HasSubstr("#SBATCH --array=1-4\n"));
  folder.write("job.sh", script.out);
  EXPECT_EQ(shell(folder, "SLURM_ARRAY_TASK_ID=2 sh job.sh").status, 0);
  EXPECT_EQ(shell(folder, "SLURM_ARRAY_TASK_ID=3 sh job.sh").status, 1);
  EXPECT_EQ(shell(folder, "SLURM_ARRAY_TASK_ID=5 sh job.sh").status, 1);
  EXPECT_EQ(folder.names("s_study"), (std::set<std::string>{"strong", "a \"two\""}));
}

TEST(ProgramStudy, RunsInParallel) {
  const ScratchFolder folder;
  if (shell(folder, "command -v parallel").status != 0) GTEST_SKIP() << "no GNU parallel";
  writeStudy(folder);
  shell(folder, "\"$TORNWALZEN\" study s.csv --print | parallel -j 2");
  EXPECT_THAT(tornwalzen(folder, "collect s_study").out, HasSubstr("4 runs: 2 good, 2 refused\n"));
}

TEST(ProgramStudy, WithoutPrintItOnlyLooks) {
  const ScratchFolder folder;
  writeStudy(folder);
  const Outcome outcome = tornwalzen(folder, "study s.csv");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, IsEmpty());
  EXPECT_THAT(outcome.err, HasSubstr("4 rows, 0 of them complete; --print prints the command lines\n"));
}

TEST(ProgramStudy, RefusesWhatIsNoStudyAndWhatHoldsNoResults) {
  const ScratchFolder folder;
  folder.write("bad.csv", "PART,colour\na,red\n");
  std::filesystem::create_directory(folder.file("empty"));
  for (const char* wrong : {"study none.csv", "study bad.csv --print", "study bad.csv --slurm", "study",
                            "collect", "collect empty", "collect none", "collect bad.csv"}) {
    const Outcome outcome = tornwalzen(folder, wrong);
    EXPECT_EQ(outcome.status, 1) << wrong;
    EXPECT_THAT(outcome.out, IsEmpty()) << wrong;
    EXPECT_THAT(outcome.err, Not(IsEmpty())) << wrong;
  }
}

TEST(ProgramStudy, CollectTakesRunsMadeByHandAndSparesFilesOfOthers) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(10, 4));
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --out byhand --r 1.5").status, 0);
  std::filesystem::create_directories(folder.file("cut"));
  folder.write("cut/tornwalzen.log", "");
  folder.write("cut/summary.json", "{\"verdict\": ");
  ASSERT_EQ(tornwalzen(folder, "collect byhand cut --out all").status, 0);
  const std::string table = folder.read("all/collected.csv");
  EXPECT_THAT(table, HasSubstr("\nbyhand,good,,,"));
  EXPECT_THAT(table, HasSubstr("\ncut,not finished,,"));
  EXPECT_THAT(folder.read("all/overview.html"), HasSubstr("href=\"./../byhand/report.html\""));
  EXPECT_EQ(tornwalzen(folder, "collect byhand --out all").status, 0);  // its own files
  folder.write("all/overview.html", "<p>mine</p>");
  const Outcome refused = tornwalzen(folder, "collect byhand --out all");
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.err, HasSubstr("all/overview.html is not of this command"));
  EXPECT_EQ(folder.read("all/overview.html"), "<p>mine</p>");
  EXPECT_EQ(tornwalzen(folder, "collect byhand --out all --force").status, 0);
}

// Files in a folder of results are anybody's: objects without end, numbers without measure.
TEST(ProgramStudy, CollectDoesNotBelieveWhatLiesInAFolder) {
  const ScratchFolder folder;
  std::filesystem::create_directories(folder.file("deep"));
  std::filesystem::create_directories(folder.file("wild"));
  std::string objects, ends;
  for (int k = 0; k < 150000; ++k) {
    objects += "{\"a\":";
    ends += "}";
  }
  folder.write("deep/summary.json",
               R"({"converged": true, "verdict": "good", "a": )" + objects + "1" + ends + "}");
  folder.write("wild/summary.json",
               R"({"converged": 1e300, "verdict": {"a": "<script>"}, "verdict_reasons": 3})");
  folder.write(
      "wild/outcome.json",
      R"({"format": "tornwalzen outcome 1", "status": 1e300, "reason": null, "arguments": [], "folder": ""})");
  const Outcome run = tornwalzen(folder, "collect deep wild --out all");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(folder.read("all/collected.csv"), HasSubstr("\ndeep,good,,,"));
  EXPECT_THAT(folder.read("all/overview.html"), Not(HasSubstr("<script>")));
}

TEST(ProgramStudy, AnOutcomeReplacesNoInput) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(10, 4));
  const Outcome outcome = tornwalzen(folder, "solve pipe.obj --outcome pipe.obj");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(folder.read("pipe.obj"), halfPipeObj(10, 4));
}
