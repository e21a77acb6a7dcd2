#include "result/summary.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <numbers>

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
  sample.verdict = {false, "the reason", exitUnconverged, Worth::notABlank, {"not converged"}};
  const auto json = nlohmann::json::parse(summaryJson(sample.report()));
  EXPECT_EQ(json["converged"], false);
  EXPECT_EQ(json["reason"], "the reason");
}

TEST(SummaryJson, StandsFileNamesThatAreNotUtf8) {
  SampleRun sample;
  sample.part.file =
      "bl\xe4"
      "ch.obj";
  sample.compute();
  EXPECT_NO_THROW(nlohmann::json::parse(summaryJson(sample.report())));
}

TEST(SummaryTable, ShowsTheFiguresWithUnits) {
  const SampleRun sample;
  EXPECT_EQ(summaryTable(sample.report()),
            "nodes               5\n"
            "triangles           2\n"
            "blank size          1.00 x 1.00 mm (smallest rectangle, its length at 0.0 degrees to x)\n"
            "blank area          1.0 mm2 (part 1.4 mm2)\n"
            "outline             0 holes; 4 lines and 0 arcs within 0.05 mm\n"
            "rectangle used      100.0 %\n"
            "thinnest            element 2, t/t0 0.5774, thickness strain -0.5493\n"
            "thickest            element 1, t/t0 1.0000, thickness strain 0.0000\n"
            "largest strain      0.2500 (equivalent)\n"
            "settings            material 1, r 1, energy part, tolerance 0.001,1, path fixed\n"
            "increments          15 (1 repeat)\n"
            "Newton iterations   31\n"
            "time                structure 0.25 s, ordering 0.50 s, symbolic 0.75 s,\n"
            "                    development 1.00 s, increments 1.25 s\n"
            "results in          out\n"
            "converged           yes\n"
            "verdict             good\n");
}

TEST(SummaryTable, ABlankThatCannotBeCutHasNoDrawing) {
  SampleRun sample;
  sample.verdict.worth = Worth::notABlank;
  sample.verdict.why = {"it is none"};
  const std::string table = summaryTable(sample.report());
  EXPECT_THAT(table, HasSubstr("drawings            none: no sheet can be cut so: it is none\n"));
  EXPECT_THAT(table, testing::Not(HasSubstr("rectangle used")));
  const auto json = nlohmann::json::parse(summaryJson(sample.report()));
  EXPECT_EQ(json["drawing"]["why_none"], "no sheet can be cut so: it is none");
  EXPECT_TRUE(json["weight_kg"].is_null());
  EXPECT_TRUE(json["rectangle_utilisation"].is_null());
}

TEST(SummaryTable, NamesTheMaterialAndWhatStandsForIt) {
  SampleRun sample;
  sample.shop.material.name = "DC04";
  EXPECT_THAT(summaryTable(sample.report()), HasSubstr("material DC04 with built-in curve 1, r 1"));
  sample.settings.curve.source = "--material DC04, Swift K 1 MPa";
  EXPECT_THAT(summaryTable(sample.report()), HasSubstr("material DC04, Swift K 1 MPa, r 1"));
  sample.settings.curve.source = "--law x";
  EXPECT_THAT(summaryTable(sample.report()), HasSubstr("material DC04 with --law x, r 1"));
}

TEST(SummaryTable, TellsWhereTheThicknessIsFrom) {
  SampleRun sample;
  sample.shop.thickness = 1.2;
  EXPECT_THAT(summaryTable(sample.report()), HasSubstr("sheet               1.2 mm\n"));
  EXPECT_EQ(nlohmann::json::parse(summaryJson(sample.report()))["thickness_is"], "given");
  sample.shop.thicknessMeasured = true;
  EXPECT_THAT(summaryTable(sample.report()),
              HasSubstr("sheet               1.2 mm (measured on the part)\n"));
  EXPECT_EQ(nlohmann::json::parse(summaryJson(sample.report()))["thickness_is"], "measured on the part");
}

TEST(SummaryTable, ShowsWhatTheUserShouldDoubt) {
  SampleRun sample;
  sample.run.report.checked = 1;
  sample.run.report.share_beyond_curve = 0.4;
  sample.run.report.share_beyond_one = 0.0151;
  sample.run.report.accepted_unconverged = 19;
  sample.runs = 2;
  sample.settings.curve.source = "--law swift:K=500,e0=0.01,n=0.2";
  sample.settings.r = 1.6;
  sample.settings.pathFactor = 0.1;
  sample.settings.partReference = false;
  const std::string table = summaryTable(sample.report());
  EXPECT_THAT(
      table,
      HasSubstr(
          "largest strain      0.2500 (equivalent, 40.0 % of the area beyond the data of the flow curve, "
          "1.5 % of the area beyond 1)\n"));
  EXPECT_THAT(table,
              HasSubstr("settings            material 1 as --law swift:K=500,e0=0.01,n=0.2, r 1.6, energy "
                        "blank, tolerance 0.001,0.1, path fixed\n"));
  EXPECT_THAT(table, HasSubstr("Newton iterations   31 (in the last of 2 runs)\n"));
  EXPECT_THAT(table,
              HasSubstr("converged           yes, but 19 increments on the way did not; check the largest "
                        "strain, and compare with --tolerance 0.001,0.01\n"));
}

TEST(SummaryTable, AdvisesNoToleranceThatWasTriedAlready) {
  SampleRun sample;
  sample.run.report.accepted_unconverged = 1;
  const auto advice = [&](double finalFactor, double pathFactor) {
    sample.settings.finalFactor = finalFactor;
    sample.settings.pathFactor = pathFactor;
    const std::string table = summaryTable(sample.report());
    const std::string lead = "compare with ";
    const std::size_t at = table.find(lead);
    return at == std::string::npos
               ? table
               : table.substr(at + lead.size(), table.find('\n', at) + 1 - at - lead.size());
  };
  EXPECT_EQ(advice(0.001, 1), "--tolerance 0.001,0.1\n");
  EXPECT_EQ(advice(0.01, 0.5), "--tolerance 0.01,0.1\n");
  EXPECT_EQ(advice(0.001, 0.1), "--tolerance 0.001,0.01\n");
  EXPECT_EQ(advice(0.001, 0.01), "a finer or more even mesh\n");
  EXPECT_EQ(advice(0.001, 0.001), "a finer or more even mesh\n");
}

TEST(Summary, EndsWithTheVerdictAndItsReasons) {
  SampleRun sample;
  sample.settings.surePath = true;
  sample.verdict.worth = Worth::doubtful;
  sample.verdict.why = {"the first", "the second"};
  sample.second = {true, true, false, false, 1.0, 2.0};
  EXPECT_THAT(summaryTable(sample.report()),
              HasSubstr("second start        ends in another blank, of higher potential\n"
                        "results in          out\nconverged           yes\n"
                        "verdict             doubtful: the first; the second\n"));
  const auto json = nlohmann::json::parse(summaryJson(sample.report()));
  EXPECT_EQ(json["verdict"], "doubtful");
  EXPECT_EQ(json["verdict_reasons"], nlohmann::json({"the first", "the second"}));
  EXPECT_EQ(json["path"], "sure");
  EXPECT_EQ(json["second_start"]["potential_of_the_other_mm2"], 2.0);
}

TEST(Summary, HoldsTheFiguresOfTheBlankWhereItWasChecked) {
  SampleRun sample;
  EXPECT_TRUE(nlohmann::json::parse(summaryJson(sample.report()))["checks"].is_null());
  sample.run.report.checked = 1;
  sample.run.report.crossings = 3;
  sample.run.report.crossing_u = 7.5;
  sample.run.report.blank_inverted = 1;
  sample.run.report.first_inverted = 2;
  const auto checks = nlohmann::json::parse(summaryJson(sample.report()))["checks"];
  EXPECT_EQ(checks["outline_crossings"], 3);
  EXPECT_EQ(checks["first_crossing_uv_mm"][0], 7.5);
  EXPECT_EQ(checks["first_inverted_in_file"], 2);
}

TEST(Summary, ShowsTheSmallestRectangleAndItsAngle) {
  SampleRun sample;
  const double c = std::cos(0.5), s = std::sin(0.5);  // 28.6 degrees
  sample.run.RX = {0, 0, 2 * c, 2 * s, 9, 9, 2 * c - s, 2 * s + c, -s, c};
  sample.compute();
  EXPECT_THAT(
      summaryTable(sample.report()),
      HasSubstr(
          "blank size          2.00 x 1.00 mm (smallest rectangle, its length at 28.6 degrees to x)\n"));
  const auto json = nlohmann::json::parse(summaryJson(sample.report()));
  EXPECT_NEAR(json["blank_rectangle_length_mm"].get<double>(), 2.0, 1e-15);
  EXPECT_NEAR(json["blank_rectangle_width_mm"].get<double>(), 1.0, 1e-15);
  EXPECT_NEAR(json["blank_rectangle_angle_deg"].get<double>(), 0.5 * 180 / std::numbers::pi, 1e-13);
  EXPECT_NEAR(json["blank_size_x_mm"].get<double>(), 2 * c + s, 1e-15);
}

TEST(Summary, OfAPartThatWasNotDevelopedHasNoStrains) {
  for (const std::int32_t reason :
       {TORNWALZEN_NOT_DEVELOPED, TORNWALZEN_REFUSED, TORNWALZEN_LEFTOVER_ERROR}) {
    SampleRun sample;
    sample.run.report.reason = reason;
    sample.verdict = {false, "the reason", exitUnconverged, Worth::notABlank, {"not converged"}};
    sample.compute();
    const std::string table = summaryTable(sample.report());
    EXPECT_THAT(table, testing::StartsWith("nodes               5\n"
                                           "triangles           2\n"
                                           "blank               none\n"
                                           "part area           1.4 mm2\n"
                                           "settings "));
    EXPECT_THAT(table, testing::Not(HasSubstr("strain")));
    const auto json = nlohmann::json::parse(summaryJson(sample.report()));
    for (const char* key :
         {"blank_area_mm2", "blank_rectangle_length_mm", "blank_rectangle_width_mm",
          "blank_rectangle_angle_deg", "blank_size_x_mm", "blank_size_y_mm", "thinnest", "thickest",
          "triangles_folded_in_blank", "largest_equivalent_strain", "largest_strain_beyond_flow_curve"}) {
      EXPECT_TRUE(json.contains(key)) << key;
      EXPECT_TRUE(json[key].is_null()) << key;
    }
    EXPECT_TRUE(std::isnan(sample.results.thicknessStrain[1]));
  }
}

TEST(Summary, SpeaksTheUsersUnit) {
  SampleRun sample;
  sample.unit = unitOf("inch");
  for (double& position : sample.run.RX) position *= 25.4;  // the run is made in mm
  sample.compute();
  EXPECT_THAT(
      summaryTable(sample.report()),
      HasSubstr("blank size          1.0000 x 1.0000 inch (smallest rectangle, its length at 0.0 degrees to "
                "x)\n"
                "blank area          1.000 inch2 (part 1.366 inch2)\n"));
  const auto json = nlohmann::json::parse(summaryJson(sample.report()));
  EXPECT_EQ(json["unit"], "inch");
  EXPECT_EQ(json["blank_area_inch2"], 1.0);
  EXPECT_EQ(json["last_largest_gradient_mm"], 5e-5);
}

TEST(SummaryTable, ShowsFailureAndFoldedTriangles) {
  SampleRun sample;
  sample.verdict = {false, "the reason", exitUnconverged, Worth::notABlank, {"not converged"}};
  std::swap(sample.run.RX[0], sample.run.RX[6]);
  std::swap(sample.run.RX[1], sample.run.RX[7]);
  sample.compute();
  const std::string table = summaryTable(sample.report());
  EXPECT_THAT(table, HasSubstr("converged           NO: the reason\n"));
  EXPECT_THAT(table, HasSubstr("folded over         2 triangles of the blank\n"));
  EXPECT_THAT(table, HasSubstr("thinnest            none; all are folded over\n"));
}
