#include "result/report_writer.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "app/refusal.hpp"
#include "app/result/sample_report.hpp"
#include "app/run/sample_run.hpp"
#include "app/scratch_folder.hpp"
#include "result/convergence_history.hpp"
#include "result/report_content.hpp"
#include "result/report_pack.hpp"
#include "result/report_template.hpp"
#include "result/report_trust.hpp"
#include "result/vtu_writer.hpp"

using namespace host;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

std::string pageOf(const ReportData& report) {
  const ScratchFolder folder;
  ResultFiles files(folder.path());
  files.add("page", [&](FileWriter& file) { writeReport(file, report); });
  files.putIntoPlace();
  return folder.read("page");
}

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
  const std::string page = pageOf(report);
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
  const std::string page = pageOf(report), data = elementOf(page, "report-data");
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

TEST(ReportWriter, AMisfitLeavesNoFile) {
  ReportData report = sampleReport(4);
  report.number.pop_back();
  const ScratchFolder folder;
  {
    ResultFiles files(folder.path());
    EXPECT_THAT(refusal([&] { files.add("page", [&](FileWriter& file) { writeReport(file, report); }); }),
                HasSubstr("do not fit"));
  }
  EXPECT_THAT(folder.names(), IsEmpty());
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
  sample.verdict = {false, "the part could not be developed", exitUnconverged};
  sample.run.RX = {0, 0, 1, 0, 9, 9, 1, 1, 2, 0.5};  // the second triangle is inverted
  sample.compute();
  const ReportData data = reportDataOf(sample.report(), ConvergenceHistory());
  EXPECT_THAT(namesOf(data.fields), ElementsAre("area in the plane", "smallest angle", "places"));
  EXPECT_LT(data.fields[0].values[1], 0.0);
  EXPECT_EQ(data.majorField, -1);
  EXPECT_THAT(data.outline.loops, IsEmpty());
  ASSERT_EQ(data.places.size(), 1u);
  EXPECT_EQ(data.places[0].text, "folded over");
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

TEST(ReportTrust, WordsWhatSpeaksAgainstAResult) {
  SampleRun sample;
  const auto level = [&] { return trustOf(sample.report()).level; };
  const auto text = [&] { return textOf(trustOf(sample.report())); };
  EXPECT_EQ(level(), ReportLevel::good);
  EXPECT_THAT(text(),
              testing::StartsWith("Converged: blank and part are in equilibrium.\nEquilibrium: the largest "
                                  "gradient, 5.0\u00a0\u00d7\u00a010\u207b\u2075\u00a0mm, is within"));

  sample.run.report.accepted_unconverged = 2;
  EXPECT_EQ(level(), ReportLevel::caution);
  EXPECT_THAT(text(), HasSubstr("2 increments on the way did not converge"));

  sample = SampleRun();
  sample.run.report.negative_pivots = 1;
  EXPECT_THAT(text(), HasSubstr("1 negative pivot:"));
  EXPECT_EQ(level(), ReportLevel::caution);

  sample = SampleRun();
  sample.run.report.beyond_curve = 1;
  EXPECT_EQ(level(), ReportLevel::caution);
  EXPECT_THAT(text(), HasSubstr("The largest equivalent strain, 0.250, lies beyond the data"));

  sample = SampleRun();
  sample.run.EVAL[2] = 4.0;
  sample.results = {};
  sample.compute();
  EXPECT_EQ(level(), ReportLevel::caution);
  EXPECT_THAT(text(), HasSubstr("1 triangle of the mesh with a corner below 5 degrees"));

  sample = SampleRun();
  sample.results.folded = 1;
  EXPECT_EQ(level(), ReportLevel::bad);
  EXPECT_THAT(text(), testing::StartsWith("Converged, but to no sheet."));
  EXPECT_THAT(text(), HasSubstr("1 triangle of the blank is folded over"));

  sample = SampleRun();
  sample.verdict = {false, "increments failed", exitUnconverged};
  EXPECT_EQ(level(), ReportLevel::bad);
  EXPECT_THAT(text(),
              testing::StartsWith("Not converged: do not cut from this blank.\nIncrements failed.\n"));
}
