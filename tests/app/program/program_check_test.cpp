// `tornwalzen check`: what it says, and that a part that solve refuses is refused in the same words.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "app/mesh/sample_meshes.hpp"
#include "app/program/program.hpp"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

nlohmann::json checked(const ScratchFolder& folder, const std::string& arguments, int status = 0) {
  const Outcome outcome = tornwalzen(folder, "check --json " + arguments);
  EXPECT_EQ(outcome.status, status) << outcome.err;
  EXPECT_THAT(outcome.err, IsEmpty());
  return nlohmann::json::parse(outcome.out);
}

std::set<std::string> kindsOf(const nlohmann::json& json) {
  std::set<std::string> kinds;
  for (const auto& finding : json["findings"]) kinds.insert(finding["kind"]);
  return kinds;
}

std::string refusalIn(const nlohmann::json& json) {
  for (const auto& finding : json["findings"])
    if (finding["kind"] == "refused") return finding["sentence"];
  return "";
}

// Squares of 10 mm with a gap of 5e-4 mm between two halves that no node joins.
std::string seamedObj() {
  std::ostringstream text;
  for (const double x : {0.0, 10.0, 10.0005, 20.0})
    for (const double y : {0.0, 10.0}) text << "v " << x << " " << y << " 0\n";
  text << "f 1 3 4\nf 1 4 2\nf 5 7 8\nf 5 8 6\n";
  return text.str();
}

}  // namespace

TEST(ProgramCheck, TellsOfAGoodPartOnOnePage) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(20, 8));
  const Outcome outcome = tornwalzen(folder, "check pipe.obj");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.err, IsEmpty());
  EXPECT_THAT(outcome.out, HasSubstr("size                57.956 x 40 x 22.235 mm\n"));
  EXPECT_THAT(outcome.out, HasSubstr("border              outline of"));
  EXPECT_THAT(outcome.out, HasSubstr("no holes\n"));
  EXPECT_THAT(outcome.out, HasSubstr("draw direction      0, 0, 1: undercut 0 %, steep"));
  EXPECT_THAT(outcome.out,
              HasSubstr("note                with the lengths in mm the part is 57.956 mm across; 1472.1 "
                        "mm if they are inch (--unit inch)\n"));
  EXPECT_THAT(outcome.out, HasSubstr("verdict             good\n"));
  EXPECT_THAT(folder.names(), testing::ElementsAre("pipe.obj"));  // nothing is written
}

TEST(ProgramCheck, ShowsInchesInMillimetresToo) {
  const ScratchFolder folder;
  folder.write("plate.obj", plateObj(3, 2));
  EXPECT_THAT(tornwalzen(folder, "check plate.obj --unit inch").out,
              HasSubstr("size                30 x 20 x 0 inch = 762 x 508 x 0 mm\n"));
}

TEST(ProgramCheck, ARefusedPartIsExplainedInTheWordsOfSolve) {
  const ScratchFolder folder;
  folder.write("seam.obj", seamedObj());
  folder.write("flat.obj", "v 0 0 0\nv 100 0 0\nv 0 100 0\nv 50 0 0\nf 1 2 3\nf 2 1 4\n");
  folder.write("crowd.obj",
               "v 0 0 0\nv 100 0 0\nv 0 100 0\nv 0 -100 0\nv 0 0 100\nf 1 2 3\nf 2 1 4\nf 1 2 5\n");
  folder.write("wild.obj", "v 0 0 0\nv 100 0 0\nv 0 100 0\nf 1 2 3\nv nan 0 0\n");
  for (const char* part : {"seam.obj", "flat.obj", "crowd.obj", "wild.obj"}) {
    const Outcome solve = tornwalzen(folder, std::string("solve ") + part);
    ASSERT_EQ(solve.status, 1) << part;
    const Outcome page = tornwalzen(folder, std::string("check ") + part);
    EXPECT_EQ(page.status, 2) << part;
    const std::string refused = refusalIn(checked(folder, part, 2));
    EXPECT_THAT(refused, Not(IsEmpty())) << part;
    EXPECT_THAT(solve.err, HasSubstr("tornwalzen: " + refused + "\n")) << part;
    EXPECT_THAT(page.out, HasSubstr("refused             " + refused + "\n")) << part;
    EXPECT_THAT(page.out, HasSubstr("verdict             refused\n")) << part;
  }
}

TEST(ProgramCheck, TheLibrarysRefusalIsTold) {
  const ScratchFolder folder;
  // a torus of 6 by 4 squares with one triangle left out: one border, one handle
  std::ostringstream text;
  for (int i = 0; i < 6; ++i)
    for (int j = 0; j < 4; ++j) {
      const double a = 2 * pi * i / 6, b = 2 * pi * j / 4, r = 100 + 30 * std::cos(b);
      text << "v " << r * std::cos(a) << " " << r * std::sin(a) << " " << 30 * std::sin(b) << "\n";
    }
  for (int i = 0; i < 6; ++i)
    for (int j = 0; j < 4; ++j) {
      const int a = 4 * i + j + 1, b = 4 * i + (j + 1) % 4 + 1, c = 4 * ((i + 1) % 6) + j + 1,
                d = 4 * ((i + 1) % 6) + (j + 1) % 4 + 1;
      if (i + j > 0) text << "f " << a << " " << c << " " << d << "\n";
      text << "f " << a << " " << d << " " << b << "\n";
    }
  folder.write("torus.obj", text.str());
  const Outcome solve = tornwalzen(folder, "solve torus.obj");
  EXPECT_EQ(solve.status, 1);
  const std::string refused = refusalIn(checked(folder, "torus.obj", 2));
  EXPECT_EQ(refused, "the part has handles (1): it cannot be laid into the plane");
  EXPECT_THAT(solve.err, HasSubstr(refused));
}

TEST(ProgramCheck, FindsAndSelectsUndercutFoldsAndNeedles) {
  const ScratchFolder folder;
  // a pipe of 240 degrees: 60 of them look down
  folder.write("pipe.obj", gridObj(40, 4, [](int i, int j) {
                 const double a = (2.0 * i / 40 - 1.0) * 120.0 * pi / 180.0;
                 std::ostringstream xyz;
                 xyz << 300 * std::sin(a) << " " << 100 * j << " " << 300 * std::cos(a);
                 return xyz.str();
               }));
  const auto json = checked(folder, "pipe.obj --draw 0,0,-2 --out found.vtu");
  EXPECT_EQ(json["verdict"], "doubtful");
  EXPECT_EQ(json["draw"]["direction"], (std::vector<double>{0, 0, 1}));
  EXPECT_NEAR(json["draw"]["undercut_share_of_area"], 0.25, 1e-6);
  EXPECT_THAT(kindsOf(json), testing::Contains("undercut"));
  const std::string grid = folder.read("found.vtu");
  EXPECT_THAT(grid, HasSubstr("NumberOfCells=\"320\""));
  EXPECT_THAT(grid, HasSubstr("Name=\"undercut\""));
  EXPECT_THAT(grid, HasSubstr("Name=\"any_finding\""));

  folder.write("needle.obj", "v 0 0 0\nv 100 0 0\nv 100 100 0\nv 50 -1 0\nf 1 2 3\nf 2 1 4\n");
  const auto needle = checked(folder, "needle.obj");
  EXPECT_THAT(kindsOf(needle), testing::ElementsAre("needle"));
  EXPECT_EQ(needle["findings"][0]["first_elements_in_file"], (std::vector<int>{2}));
}

TEST(ProgramCheck, ProposesSymmetryAndAssumesNone) {
  const ScratchFolder folder;
  folder.write("half.obj", gridObj(20, 8, [](int i, int j) {  // half of a pipe with a curved crown line
                 const double a = 1.2 * i / 20, r = 300 + 20.0 * j + 10.0 * j * j;
                 std::ostringstream xyz;
                 xyz << r * std::sin(a) << " " << 100 * j << " " << r * std::cos(a);
                 return xyz.str();
               }));
  const auto json = checked(folder, "half.obj");
  ASSERT_EQ(json["proposed_symmetry"].size(), 1u);
  EXPECT_EQ(json["proposed_symmetry"][0]["plane"], "x");
  EXPECT_EQ(json["verdict"], "good");
  EXPECT_THAT(tornwalzen(folder, "check half.obj").out,
              HasSubstr("hold it with --hold x0; a cut profile looks the same\n"));
}

TEST(ProgramCheck, WhatCannotBeReadOrWrittenIsRefusedWithStatusOne) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(4, 2));
  for (const char* wrong :
       {"check nothing.obj", "check pipe.obj --draw up", "check pipe.obj --draw 0,0,0",
        "check pipe.obj --draw 1,2", "check pipe.obj --draw 1,2,3,4", "check pipe.obj --draw 1,nan,0",
        "check pipe.obj --out nowhere/found.vtu", "check pipe.obj --out pipe.obj", "check"}) {
    const Outcome outcome = tornwalzen(folder, wrong);
    EXPECT_EQ(outcome.status, 1) << wrong;
    EXPECT_THAT(outcome.out, IsEmpty()) << wrong;
    EXPECT_THAT(outcome.err, Not(IsEmpty())) << wrong;
  }
  EXPECT_EQ(folder.read("pipe.obj"), halfPipeObj(4, 2));
}

TEST(ProgramCheck, ASecondToolReadsTheSelection) {
  const ScratchFolder folder;
  if (shell(folder, "/usr/bin/python3 -c 'import meshio'").status != 0)
    GTEST_SKIP() << "no meshio (python3-meshio)";
  folder.write("needle.obj", "v 0 0 0\nv 100 0 0\nv 100 100 0\nv 50 -1 0\nf 1 2 3\nf 2 1 4\n");
  ASSERT_EQ(tornwalzen(folder, "check needle.obj --quiet --out found.vtu").status, 0);
  const Outcome read =
      shell(folder,
            "/usr/bin/python3 -c \"import meshio; m = meshio.read('found.vtu'); print(m.points.tolist(), "
            "m.cells[0].data.tolist(), m.cell_data['needle'][0].tolist(), "
            "m.cell_data['any_finding'][0].tolist(), m.cell_data['piece'][0].tolist())\"");
  EXPECT_EQ(read.status, 0) << read.err;
  EXPECT_THAT(read.out,
              HasSubstr("[[0.0, 0.0, 0.0], [100.0, 0.0, 0.0], [100.0, 100.0, 0.0], [50.0, -1.0, 0.0]] "
                        "[[0, 1, 2], [1, 0, 3]] [0, 1] [0, 1] [1, 1]\n"));
}
