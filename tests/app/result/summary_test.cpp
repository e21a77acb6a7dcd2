#include "result/summary.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "app/run/sample_run.hpp"

using namespace host;
using testing::HasSubstr;

TEST(SummaryJson, CarriesUnitsInItsKeys) {
  const SampleRun sample;
  const auto json = nlohmann::json::parse(summaryJson(sample.report()));
  EXPECT_EQ(json["converged"], true);
  EXPECT_TRUE(json["reason"].is_null());
  EXPECT_EQ(json["nodes"], 5);
  EXPECT_EQ(json["triangles"], 2);
  EXPECT_EQ(json["blank_area_mm2"], 1.0);
  EXPECT_EQ(json["blank_size_x_mm"], 1.0);
  EXPECT_EQ(json["thinnest"]["element_number_in_file"], 2);
  EXPECT_EQ(json["increments"], 15);
  EXPECT_EQ(json["newton_iterations"], 31);
  EXPECT_EQ(json["runs"], 1);
  EXPECT_EQ(json["flow_curve"], "built in");
  EXPECT_EQ(json["energy_reference"], "part");
  EXPECT_EQ(json["tolerance_factors"], nlohmann::json::parse("[0.001, 1.0]"));
  EXPECT_EQ(json["largest_equivalent_strain"], 0.25);
  EXPECT_EQ(json["wall_time"]["development_s"], 1.0);
}

TEST(SummaryJson, SaysWhyARunDidNotConverge) {
  SampleRun sample;
  sample.verdict = {false, "the reason", exitUnconverged};
  const auto json = nlohmann::json::parse(summaryJson(sample.report()));
  EXPECT_EQ(json["converged"], false);
  EXPECT_EQ(json["reason"], "the reason");
}

TEST(SummaryJson, StandsFileNamesThatAreNotUtf8) {
  SampleRun sample;
  sample.part.file =
      "bl\xe4"
      "ch.obj";
  EXPECT_NO_THROW(nlohmann::json::parse(summaryJson(sample.report())));
}

TEST(SummaryTable, ShowsTheFiguresWithUnits) {
  const SampleRun sample;
  EXPECT_EQ(summaryTable(sample.report()),
            "nodes               5\n"
            "triangles           2\n"
            "blank size          1.00 x 1.00 mm\n"
            "blank area          1.0 mm2 (part 1.4 mm2)\n"
            "thinnest            element 2, t/t0 0.5774, thickness strain -0.5493\n"
            "thickest            element 1, t/t0 1.0000, thickness strain 0.0000\n"
            "largest strain      0.2500 (equivalent)\n"
            "settings            material 1, r 1, energy part, tolerance 0.001,1\n"
            "increments          15 (1 repeat)\n"
            "Newton iterations   31\n"
            "time                structure 0.25 s, ordering 0.50 s, symbolic 0.75 s,\n"
            "                    development 1.00 s, increments 1.25 s\n"
            "results in          out\n"
            "converged           yes\n");
}

TEST(SummaryTable, ShowsWhatTheUserShouldDoubt) {
  SampleRun sample;
  sample.run.report.beyond_curve = 1;
  sample.run.report.accepted_unconverged = 19;
  sample.runs = 2;
  sample.settings.curve.source = "--law swift:K=500,e0=0.01,n=0.2";
  sample.settings.r = 1.6;
  sample.settings.pathFactor = 0.1;
  sample.settings.partReference = false;
  const std::string table = summaryTable(sample.report());
  EXPECT_THAT(table,
              HasSubstr("largest strain      0.2500 (equivalent, BEYOND the data of the flow curve)\n"));
  EXPECT_THAT(table,
              HasSubstr("settings            material 1 as --law swift:K=500,e0=0.01,n=0.2, r 1.6, energy "
                        "blank, tolerance 0.001,0.1\n"));
  EXPECT_THAT(table, HasSubstr("Newton iterations   31 (in the last of 2 runs)\n"));
  EXPECT_THAT(table,
              HasSubstr("converged           yes, but 19 increments on the way did not; check the largest "
                        "strain, and compare with --tolerance 0.001,0.1\n"));
}

TEST(Summary, SpeaksTheUsersUnit) {
  SampleRun sample;
  sample.unit = unitOf("inch");
  for (double& position : sample.run.RX) position *= 25.4;  // the run is made in mm
  sample.compute();
  EXPECT_THAT(summaryTable(sample.report()),
              HasSubstr("blank size          1.0000 x 1.0000 inch\n"
                        "blank area          1.000 inch2 (part 1.366 inch2)\n"));
  const auto json = nlohmann::json::parse(summaryJson(sample.report()));
  EXPECT_EQ(json["unit"], "inch");
  EXPECT_EQ(json["blank_area_inch2"], 1.0);
  EXPECT_EQ(json["last_largest_gradient_mm"], 5e-5);
}

TEST(SummaryTable, ShowsFailureAndFoldedTriangles) {
  SampleRun sample;
  sample.verdict = {false, "the reason", exitUnconverged};
  std::swap(sample.run.RX[0], sample.run.RX[6]);
  std::swap(sample.run.RX[1], sample.run.RX[7]);
  sample.compute();
  const std::string table = summaryTable(sample.report());
  EXPECT_THAT(table, HasSubstr("converged           NO: the reason\n"));
  EXPECT_THAT(table, HasSubstr("folded over         2 triangles of the blank\n"));
  EXPECT_THAT(table, HasSubstr("thinnest            none; all are folded over\n"));
}
