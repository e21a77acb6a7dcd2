// The whole program with material, tolerance and unit of the user.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/mesh/sample_meshes.hpp"
#include "app/program/program.hpp"

using testing::HasSubstr;
using testing::Not;

namespace {

nlohmann::json summaryOf(const ScratchFolder& folder, const std::string& run) {
  return nlohmann::json::parse(folder.read(run + "/summary.json"));
}

// A sheet bent by 90 degrees (radius 5 mm) between a base of 80 mm and a wall of 150 mm, 60 mm wide. With a
// corner held, which turns the blank, its intermediate increments go astray at their usual tolerance.
std::string highWallObj(int rows) {
  const double bend = 2.5 * pi, wall = 150.0, base = 80.0, length = base + bend + wall;
  return gridObj(rows, 12, [=](int i, int j) {
    const double s = length * i / rows;
    double x = s - base, z = 0.0;
    if (s > base + bend)
      x = 5.0, z = 5.0 + (s - base - bend);
    else if (s > base)
      x = 5.0 * std::sin((s - base) / 5.0), z = 5.0 - 5.0 * std::cos((s - base) / 5.0);
    std::ostringstream xyz;
    xyz.precision(17);
    xyz << x << " " << 5.0 * j << " " << z;
    return xyz.str();
  });
}

}  // namespace

TEST(ProgramMaterial, DefaultsEndTightOverThePart) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(20, 8));
  const Outcome outcome = tornwalzen(folder, "solve pipe.obj --out r");
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out,
              HasSubstr("settings            material 1, r 1, energy part, tolerance 0.001, path sure\n"));
  const auto json = summaryOf(folder, "r");
  EXPECT_LE(json["last_largest_gradient_mm"], 1e-4);
  EXPECT_NEAR(json["gradient_tolerance_mm"], 1e-4, 1e-18);
  EXPECT_EQ(json["runs"], 1);
}

TEST(ProgramMaterial, InchesGiveTheSameBlankAsMillimetres) {
  const ScratchFolder folder;
  const std::string millimetres = halfPipeObj(20, 8);
  std::istringstream lines(millimetres);
  std::ostringstream inches;
  inches.precision(17);
  for (std::string line; std::getline(lines, line);) {
    if (line[0] == 'v') {
      std::istringstream words(line.substr(1));
      double x, y, z;
      words >> x >> y >> z;
      inches << "v " << x / 25.4 << " " << y / 25.4 << " " << z / 25.4 << "\n";
    } else {
      inches << line << "\n";
    }
  }
  folder.write("mm.obj", millimetres);
  folder.write("inch.obj", inches.str());
  ASSERT_EQ(tornwalzen(folder, "solve mm.obj --out mm").status, 0);
  const Outcome outcome = tornwalzen(folder, "solve inch.obj --unit inch --out inch");
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.err, Not(HasSubstr("warning")));
  const auto mm = summaryOf(folder, "mm"), inch = summaryOf(folder, "inch");
  // coordinates rounded once more on their way through the other unit: 1e-16 of 80 mm, times the run's
  // conditioning
  EXPECT_NEAR(inch["blank_size_x_inch"].get<double>() * 25.4, mm["blank_size_x_mm"].get<double>(), 1e-6);
  EXPECT_NEAR(inch["blank_area_inch2"].get<double>() * 25.4 * 25.4, mm["blank_area_mm2"].get<double>(), 1e-4);
  EXPECT_EQ(inch["newton_iterations"], mm["newton_iterations"]);
  EXPECT_THAT(folder.read("inch/blank.obj"), HasSubstr("# unit: inch;"));
  EXPECT_THAT(folder.read("inch/part.vtu"), HasSubstr("displacement_part_minus_blank_inch"));
}

TEST(ProgramMaterial, AnUnusualSizeIsDoubted) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(10, 4));
  EXPECT_THAT(tornwalzen(folder, "solve pipe.obj --unit m --out r").err,
              HasSubstr("warning: the longest side of the part is 57955."));
}

TEST(ProgramMaterial, TakesACurveFromAFileAndFromALaw) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(20, 8));
  folder.write("steel.csv", "plastic strain;stress MPa\n0;200\n0,05;300\n0,2;380\n");
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --curve steel.csv --r 1.6 --out r").status, 0);
  EXPECT_EQ(summaryOf(folder, "r")["flow_curve"], "--curve steel.csv");
  EXPECT_EQ(summaryOf(folder, "r")["normal_anisotropy"], 1.6);
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --law swift:K=549.03,e0=0.007,n=0.22 --out r").status, 0);
  EXPECT_EQ(summaryOf(folder, "r")["flow_curve"], "--law swift:K=549.03,e0=0.007,n=0.22");
}

TEST(ProgramMaterial, RefusalsSayWhyAndComputeNothing) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(10, 4));
  folder.write("bad.csv", "0,200\n0.1,300\n0.05,320\n");
  const Outcome outcome = tornwalzen(folder, "solve pipe.obj --curve bad.csv --out r");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(
      outcome.err,
      "tornwalzen: --curve bad.csv: strain 3 of the flow curve is 0.05, not larger than the one before it\n");
  EXPECT_EQ(folder.read("r/tornwalzen.log"), "");
  EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --curve bad.csv --law swift:K=1").status, 1);
  EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --energy both").status, 1);
  EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --unit ell").status, 1);
}

TEST(ProgramMaterial, ARunThatDoesNotConvergeIsRepeatedOnATighterPathAndTheUserIsTold) {
  const ScratchFolder folder;
  folder.write("wall.obj", highWallObj(48));
  folder.write("held", "2\n617\n618\n");  // v of a corner of the base; the node in the middle
  const std::string solve = "solve wall.obj --path fixed --material 2 --hold held ";
  const Outcome once = tornwalzen(folder, solve + "--tolerance 0.001,1 --out once");
  ASSERT_EQ(once.status, 2) << "the part no longer goes astray: it does not test the repeat";
  EXPECT_THAT(once.err, Not(HasSubstr("repeating")));
  const Outcome outcome = tornwalzen(folder, solve + "--out r");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.err, HasSubstr("not converged: "));
  EXPECT_THAT(outcome.err,
              HasSubstr("repeating with the tolerance of the increments on the way times 0.1\n"));
  const auto json = summaryOf(folder, "r");
  EXPECT_GE(json["runs"], 2);
  EXPECT_LE(json["tolerance_factors"][1], 0.1);
  // chords across the bend: 237.85 mm less 5·(π/2)³/24/n² with n rows in it
  EXPECT_NEAR(json["blank_size_x_mm"].get<double>(), 237.6, 0.3);
}

TEST(ProgramMaterial, EveryNumberOfThreadsGivesTheSameFiles) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(60, 40));  // 4800 triangles: enough to be shared
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --no-report --threads 1 --out one").status, 0);
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --no-report --threads 3 --out three").status, 0);
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --no-report --out all").status, 0);
  for (const char* file : {"/blank.obj", "/part.vtu", "/blank.vtu"}) {
    EXPECT_FALSE(folder.read(std::string("one") + file).empty());
    EXPECT_EQ(folder.read(std::string("three") + file), folder.read(std::string("one") + file));
    EXPECT_EQ(folder.read(std::string("all") + file), folder.read(std::string("one") + file));
  }
}

TEST(ProgramMaterial, AWrongNumberOfThreadsIsRefusedByNameAndValue) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(10, 4));
  for (const char* number : {"0", "-2", "65", "two"}) {
    const Outcome outcome = tornwalzen(folder, std::string("solve pipe.obj --out r --threads ") + number);
    EXPECT_EQ(outcome.status, 1) << number;
    EXPECT_THAT(outcome.err, HasSubstr("--threads"));
    EXPECT_THAT(outcome.err, HasSubstr(number));
  }
}
