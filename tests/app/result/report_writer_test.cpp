#include "result/report_writer.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "app/refusal.hpp"
#include "app/result/sample_report.hpp"
#include "app/run/sample_run.hpp"
#include "result/base64.hpp"
#include "result/convergence_history.hpp"
#include "result/report_content.hpp"
#include "result/report_pack.hpp"
#include "result/report_template.hpp"
#include "result/report_trust.hpp"

using namespace host;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

// What stands between a tag that carries `id` and its end.
std::string elementOf(const std::string& page, const std::string& id) {
  const std::size_t at = page.find("id=\"" + id + "\">");
  if (at == std::string::npos) return "(none)";
  const std::size_t begin = page.find('>', at) + 1;
  return page.substr(begin, page.find("</script>", begin) - begin);
}

nlohmann::json dataOf(const ReportData& report) {
  return nlohmann::json::parse(reportJson(report, packMesh(report)));
}

std::vector<std::string> namesOf(const std::vector<ReportField>& fields) {
  std::vector<std::string> names;
  for (const ReportField& field : fields) names.push_back(field.name);
  return names;
}

std::string textOf(const ReportTrust& trust) {
  std::string text = trust.headline;
  for (const ReportFinding& finding : trust.findings) text += "\n" + finding.text;
  return text;
}

}  // namespace

TEST(ReportTemplate, HasEachMarkOnceAndInOrder) {
  const std::string page = reportTemplate();
  std::size_t last = 0;
  for (const char* mark : {"@@TITLE@@", "@@DATA@@", "@@MESH@@"}) {
    const std::size_t at = page.find(mark);
    ASSERT_NE(at, std::string::npos) << mark;
    EXPECT_EQ(page.find(mark, at + 1), std::string::npos) << mark;
    EXPECT_GT(at, last) << mark;
    last = at;
  }
  EXPECT_LT(page.size(), 1500000u);
  EXPECT_THAT(page, testing::EndsWith("</html>\n"));
}

TEST(ReportWriter, ThePageCarriesDataAndMesh) {
  const ReportData report = sampleReport(4);
  const std::string page = reportPage(report);
  EXPECT_THAT(page, HasSubstr("<title>dome.obj - tornwalzen</title>"));
  EXPECT_EQ(elementOf(page, "report-data"), reportJson(report, packMesh(report)));
  EXPECT_EQ(elementOf(page, "report-mesh"), base64(packMesh(report).bytes));
}

TEST(ReportWriter, TextFromFilesStaysText) {
  ReportData report = sampleReport(4);
  const std::string evil = "</title></script><script>hacked=1</script><!--\xff";
  report.part = report.trust.headline = report.limits.source = report.notes.emplace_back() = evil;
  report.fields[0].name = report.fields[0].note = report.fields[5].classes[0].name = evil;
  report.places = {{evil, 2}};
  report.figures = report.settings = report.strip.figures = {{evil, evil}};
  report.trust.findings = {{ReportLevel::bad, evil}};
  const std::string page = reportPage(report), data = elementOf(page, "report-data");
  EXPECT_THAT(page, HasSubstr("<title>&lt;/title&gt;&lt;/script&gt;&lt;script&gt;hacked=1"));
  EXPECT_THAT(page, Not(HasSubstr("<script>hacked")));
  EXPECT_THAT(data, Not(HasSubstr("<")));
  const auto json = nlohmann::json::parse(data);
  EXPECT_EQ(json["part"], "</title></script><script>hacked=1</script><!--\xef\xbf\xbd");
  EXPECT_EQ(json["places"][0]["number"], 13);
}

TEST(ReportWriter, WhatIsNotThereIsEmpty) {
  const auto json = dataOf(ReportData{});
  EXPECT_THAT(json["outline"]["loops"], IsEmpty());
  EXPECT_THAT(json["strip"]["placed"], IsEmpty());
  EXPECT_THAT(json["limits"]["curve"], IsEmpty());
  EXPECT_THAT(json["convergence"]["increments"], IsEmpty());
  EXPECT_EQ(json["majorField"], -1);
  EXPECT_EQ(json["mesh"]["triangles"], 0);
}

TEST(ReportWriter, AMisfitIsRefused) {
  ReportData report = sampleReport(4);
  report.number.pop_back();
  EXPECT_THAT(refusal([&] { reportPage(report); }), HasSubstr("do not fit"));
}

TEST(ConvergenceHistory, FollowsTheMessagesOfARun) {
  ConvergenceHistory history;
  for (const char* line :
       {"MAX.GRAD, LS-FAK, EN 0.900000E+00 0.100000E+01 0.197742E-04   ",  // of nobody's increment
        " START INKRMEMENT     1   ", " FORTSCHRITT/SCHRITTWEITE   0.007500  0.007500   ",
        "MAX.GRAD, LS-FAK, EN 0.278901E-02 0.100000E+01 0.197742E-04   ", " DEG. ELEMENTE IM LINE-SEARCH@ ",
        "MAX.GRAD, LS-FAK, EN 0.463367E-06 0.500000E+00 0.183570E-04   ", "INKREMENT WIRD WIEDERHOLT @  ",
        " @  ", " START INKRMEMENT     1 ", " FORTSCHRITT/SCHRITTWEITE   1.000000  0.007500   ",
        "MAX.GRAD, LS-FAK, EN ************* x"})
    history.take(line);
  ASSERT_EQ(history.increments().size(), 2u);
  const ReportIncrement &first = history.increments()[0], &second = history.increments()[1];
  EXPECT_EQ(first.number, 1);
  EXPECT_EQ(first.progress, 0.0075);
  EXPECT_TRUE(first.repeated);
  EXPECT_THAT(first.gradient, ElementsAre(0.00278901, 4.63367e-07));
  EXPECT_THAT(first.factor, ElementsAre(1.0, 0.5));
  EXPECT_FALSE(second.repeated);
  EXPECT_EQ(second.progress, 1.0);
  EXPECT_THAT(second.gradient, IsEmpty());
  history.restart();
  EXPECT_THAT(history.increments(), IsEmpty());
}

TEST(ConvergenceHistory, FollowsTheSurePath) {
  ConvergenceHistory history;
  for (const char* line :
       {" START AUS MITTLERER NORMALE @   ", " DREHUNGEN UEBER KANTEN, GEWENDET, S-MIN       213  0 0.78E+00",
        " NEWTON   1 MILD  GEDREHT  0.5000 0.848254E+00 0.824884E+00 0.663503E+02  ",
        " NEWTON   2 GENAU GERADE   1.0000 0.221984E-03 0.826011E+00 0.660733E+02  ", " NEWTON x",
        " SEHNENSCHRITT                     0.227710E-05 0.826011E+00 0.660733E+02       ",
        " SICHERER WEG KONVERGIERT, ZERLEGUNGEN, LOESUNGEN     3    5 "})
    history.take(line);
  ASSERT_EQ(history.increments().size(), 1u);
  EXPECT_EQ(history.increments()[0].progress, 1.0);
  EXPECT_THAT(history.increments()[0].gradient, ElementsAre(0.848254, 0.221984e-3, 0.227710e-5));
  EXPECT_THAT(history.increments()[0].factor, ElementsAre(0.5, 1.0, 1.0));
  EXPECT_EQ(history.increments()[0].chords, 1);
}

TEST(ReportContent, TheFirstCrossingOfTheOutlineIsMarkedInThePartsUnit) {
  SampleRun sample;
  sample.unit = unitOf("inch");
  sample.run.report.crossings = 3;
  sample.run.report.crossing_u = 25.4;
  sample.run.report.crossing_v = -50.8;
  EXPECT_THAT(reportDataOf(sample.report(), ConvergenceHistory()).outline.marks,
              ElementsAre(ReportPoint{1.0, -2.0}));
}

TEST(ReportContent, ARunShowsItsFieldsFiguresAndOutline) {
  const SampleRun sample;
  const ReportData data = reportDataOf(sample.report(), ConvergenceHistory());
  EXPECT_THAT(namesOf(data.fields), ElementsAre("thinning", "major strain", "minor strain",
                                                "equivalent strain", "flow stress", "places"));
  EXPECT_NEAR(data.fields[0].values[1], 100.0 * (1.0 - 0.5773502691896258), 1e-12);
  EXPECT_THAT(data.fields[1].values, ElementsAre(0.1, 0.2));
  EXPECT_THAT(data.fields[4].values, ElementsAre(400.0, 500.0));
  EXPECT_EQ(data.majorField, 1);
  EXPECT_EQ(data.minorField, 2);
  EXPECT_THAT(data.corners, ElementsAre(0, 1, 3, 0, 3, 4));
  ASSERT_EQ(data.outline.loops.size(), 1u);
  EXPECT_THAT(data.outline.loops[0], testing::UnorderedElementsAre(ReportPoint{0, 0}, ReportPoint{1, 0},
                                                                   ReportPoint{1, 1}, ReportPoint{0, 1}));
  EXPECT_EQ(data.trust.level, ReportLevel::good);
  packMesh(data);
}

TEST(ReportContent, ARunWithoutBlankShowsWhatTheDevelopmentLeft) {
  SampleRun sample;
  sample.run.report.reason = TORNWALZEN_NOT_DEVELOPED;
  sample.verdict = {false, "the part could not be developed", exitUnconverged, Worth::notABlank, {}};
  sample.run.RX = {0, 0, 1, 0, 9, 9, 1, 1, 2, 0.5};  // the second triangle is inverted
  sample.compute();
  const ReportData data = reportDataOf(sample.report(), ConvergenceHistory());
  EXPECT_THAT(namesOf(data.fields), ElementsAre("area in the plane", "smallest angle", "places"));
  EXPECT_LT(data.fields[0].values[1], 0.0);
  EXPECT_EQ(data.majorField, -1);
  EXPECT_THAT(data.outline.loops, IsEmpty());
  ASSERT_EQ(data.places.size(), 1u);
  EXPECT_EQ(data.places[0].text, "turned over");
  EXPECT_EQ(data.places[0].triangle, 1);
  EXPECT_EQ(data.trust.headline, "There is no blank.");
  EXPECT_THAT(textOf(data.trust), HasSubstr("\nThe part could not be developed."));
  packMesh(data);
}

TEST(ReportContent, AFieldWithoutAnyValueIsLeftOut) {
  SampleRun sample;
  for (TornwalzenElementStrain& strain : sample.run.strains)
    strain.flow_stress = std::numeric_limits<double>::quiet_NaN();
  const ReportData data = reportDataOf(sample.report(), ConvergenceHistory());
  EXPECT_THAT(namesOf(data.fields),
              ElementsAre("thinning", "major strain", "minor strain", "equivalent strain", "places"));
}

TEST(ReportContent, AHoleIsALoopOfItsOwn) {
  SampleRun sample;
  // a frame of eight nodes: square of side 3, hole of side 1
  host::Mesh mesh;
  mesh.points = {0, 0, 0, 3, 0, 0, 3, 3, 0, 0, 3, 0, 1, 1, 0, 2, 1, 0, 2, 2, 0, 1, 2, 0};
  mesh.corners = {1, 2, 6, 1, 6, 5, 2, 3, 7, 2, 7, 6, 3, 4, 8, 3, 8, 7, 4, 1, 5, 4, 5, 8};
  sample.part = checkMesh(mesh, false);
  sample.run.corners = sample.part.corners;
  sample.run.RX.clear();
  for (std::size_t k = 0; k < mesh.points.size(); k += 3)
    sample.run.RX.insert(sample.run.RX.end(), {mesh.points[k], mesh.points[k + 1]});
  sample.run.EVAL.assign(40, 45.0);
  sample.run.strains.assign(8, {});
  sample.results = {};
  sample.compute();
  const ReportData data = reportDataOf(sample.report(), ConvergenceHistory());
  ASSERT_EQ(data.outline.loops.size(), 2u);
  EXPECT_THAT(data.outline.loops[0], testing::Contains(ReportPoint{3, 3}));
  EXPECT_THAT(data.outline.loops[1], testing::Contains(ReportPoint{2, 2}));
  EXPECT_EQ(data.outline.loops[1].size(), 4u);
}

TEST(ReportTrust, WordsTheVerdict) {
  SampleRun sample;
  const auto level = [&] { return trustOf(sample.report()).level; };
  const auto text = [&] { return textOf(trustOf(sample.report())); };
  EXPECT_EQ(level(), ReportLevel::good);
  EXPECT_THAT(text(), testing::StartsWith(
                          "Good: blank and part are in equilibrium.\nEquilibrium: the largest gradient, "
                          "5.0\u00a0\u00d7\u00a010\u207b\u2075\u00a0mm, is within its tolerance of "
                          "1.0\u00a0\u00d7\u00a010\u207b\u2074\u00a0mm.\nNo triangle is turned over."));

  sample.verdict = {true, "", exitConverged, Worth::doubtful, {"2 increments on the way did not converge"}};
  EXPECT_EQ(level(), ReportLevel::caution);
  EXPECT_THAT(text(), testing::StartsWith("Doubtful: look at this first."));
  EXPECT_EQ(trustOf(sample.report()).findings[1].level, ReportLevel::caution);
  EXPECT_THAT(text(), HasSubstr("\n2 increments on the way did not converge.\n"));

  sample.verdict = {true, "", exitUnconverged, Worth::notABlank, {"the outline crosses itself"}};
  EXPECT_EQ(level(), ReportLevel::bad);
  EXPECT_THAT(text(), testing::StartsWith("Not a blank: no sheet can lie so."));
  EXPECT_EQ(trustOf(sample.report()).findings[1].level, ReportLevel::bad);
  EXPECT_THAT(text(), HasSubstr("\nThe outline crosses itself.\n"));

  sample.verdict = {false, "increments failed", exitUnconverged, Worth::notABlank, {"not converged"}};
  EXPECT_EQ(level(), ReportLevel::bad);
  EXPECT_THAT(text(), testing::StartsWith("Not converged: do not cut from this.\nIncrements failed.\n"));
  EXPECT_THAT(text(), Not(HasSubstr("Equilibrium")));
}

TEST(ReportTrust, LeavesOutNothingThatActed) {
  SampleRun sample;
  const auto scope = [&] { return trustOf(sample.report()).scope; };
  EXPECT_EQ(scope(),
            "A one-step estimate by deformation theory: no friction, no blank holder, no bending, no "
            "springback, no "
            "history of the forming.");
  sample.settings.press.chosen = true;
  sample.run.press.bending = 1;
  EXPECT_EQ(scope(),
            "A one-step estimate by deformation theory: no friction, no blank holder, no springback, no "
            "history of the "
            "forming.");
  sample.run.press.contact = sample.run.press.binder = 1;
  EXPECT_EQ(scope(), "A one-step estimate by deformation theory: no springback, no history of the forming.");
  const ReportData data = reportDataOf(sample.report(), ConvergenceHistory());
  EXPECT_EQ(data.settings[2].name, "press");
  EXPECT_EQ(data.settings[2].value, "work to the exponent 0, bending released, friction, binder");
}

TEST(ReportTrust, ASheetThatUnrollsExactlyNeedsNoIteration) {
  SampleRun sample;
  sample.run.report.newton_iterations = 0;
  EXPECT_THAT(textOf(trustOf(sample.report())),
              HasSubstr("\nEquilibrium: the start is the blank, nothing is left to iterate."));
}

TEST(ReportContent, PlacesAreClassesWithTheirNames) {
  SampleRun sample;
  sample.run.strains[0].equivalent = 1.5;
  sample.run.EVAL[7] = 1.0;  // corner of the second triangle
  sample.results = {};
  sample.compute();
  sample.results.thinnest = 0;
  const ReportData data = reportDataOf(sample.report(), ConvergenceHistory());
  const ReportField& places = data.fields.back();
  const auto nameOf = [&](std::size_t e) {
    return places.classes.at(static_cast<std::size_t>(places.values[e])).name;
  };
  EXPECT_EQ(nameOf(0), "largest strain");
  EXPECT_EQ(nameOf(1), "corner below 5 degrees");
  sample.run.strains[1].equivalent = 1.25;
  const ReportData again = reportDataOf(sample.report(), ConvergenceHistory());
  EXPECT_EQ(again.fields.back().classes.at(static_cast<std::size_t>(again.fields.back().values[1])).name,
            "equivalent strain above 1");
  EXPECT_EQ(again.fields.back().classes.back().name, "thinnest");
}

TEST(ReportTrust, TellsWhatWasLookedAtAndWhatElseIsToBeKnown) {
  SampleRun sample;
  sample.run.report.checked = sample.run.report.sheet_checked = sample.run.report.minimum_certified = 1;
  sample.run.report.beyond_curve = 1;
  sample.run.report.share_beyond_curve = 0.02;
  sample.run.report.undercut_share = 0.0005;
  sample.run.EVAL[2] = 4.0;
  sample.results = {};
  sample.compute();
  sample.second = {true, true, false, true, 1.0, 1.0};
  const ReportTrust trust = trustOf(sample.report());
  EXPECT_EQ(trust.level, ReportLevel::good) << "notes do not change it";
  const std::string text = textOf(trust);
  for (const char* sentence :
       {"\nThe tangent there is positive definite: the energy has a minimum.",
        "\nNo triangle is turned over, the outline crosses itself nowhere, nothing lies twofold.",
        "\nA second start ends in the same blank.",
        "\nThe largest equivalent strain, 0.250, lies beyond the data of the flow curve, which goes on along "
        "its last "
        "slope; 2.0\u00a0% of the area do.",
        "\n0.050\u00a0% of the part's area are undercut, seen along its mean normal.",
        "\n1 triangle of the mesh with a corner below 5 degrees:"})
    EXPECT_THAT(text, HasSubstr(sentence));
  sample.second.agrees = sample.second.converged = false;
  EXPECT_THAT(textOf(trustOf(sample.report())),
              HasSubstr("\nA second start, to compare with, did not converge."));
}
