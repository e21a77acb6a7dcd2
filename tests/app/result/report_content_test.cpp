#include "result/report_content.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/run/sample_run.hpp"

using namespace host;
using testing::Contains;
using testing::ElementsAre;

namespace {

std::vector<std::string> namesOf(const ReportData& data) {
  std::vector<std::string> names;
  for (const ReportFigure& figure : data.figures) names.push_back(figure.name);
  return names;
}

SampleRun withLimits() {
  SampleRun sample;
  sample.shop.limitCurve = LimitCurve{{{0.0, 0.15}}, "by hand"};
  sample.shop.limitMargin = 8.0;
  sample.shop.thickness = 2.0;
  sample.shop.web = 0.5;
  sample.compute();
  return sample;
}

}  // namespace

// The page shows the outline that the drawings follow, in the part's unit.
TEST(ReportContent, OutlineIsThatOfTheDrawings) {
  SampleRun sample;
  sample.unit = unitOf("cm");
  sample.compute();
  const ReportData data = reportDataOf(sample.report(), {});
  ASSERT_EQ(data.outline.loops.size(), 1u);
  EXPECT_THAT(data.outline.loops[0], ElementsAre(ReportPoint{0, 0}, ReportPoint{0.1, 0},
                                                 ReportPoint{0.1, 0.1}, ReportPoint{0, 0.1}));
  EXPECT_TRUE(data.outline.marks.empty());
  sample.run.report.crossings = 1;
  sample.run.report.crossing_u = 5.0;
  sample.run.report.crossing_v = 10.0;
  EXPECT_THAT(reportDataOf(sample.report(), {}).outline.marks, ElementsAre(ReportPoint{0.5, 1.0}));
}

TEST(ReportContent, CarriesZonesCurveStripAndSheet) {
  const SampleRun sample = withLimits();
  const ReportData data = reportDataOf(sample.report(), {});
  const auto zones = std::find_if(data.fields.begin(), data.fields.end(),
                                  [](const ReportField& field) { return field.name == "limit zone"; });
  ASSERT_NE(zones, data.fields.end());
  EXPECT_THAT(zones->values, ElementsAre(1.0, 2.0));  // marginal, split
  EXPECT_EQ(zones->classes.size(), 4u);
  EXPECT_THAT(data.limits.curve, ElementsAre(ReportPoint{0.0, 0.15}));
  EXPECT_EQ(data.limits.margin, 8.0);
  EXPECT_EQ(data.limits.source, "by hand");
  ASSERT_FALSE(data.strip.placed.empty());
  const StripFigures& strip = *sample.shop.strip;
  const StripLayout& better =
      strip.paired.utilisation > strip.single.utilisation ? strip.paired : strip.single;
  EXPECT_EQ(data.strip.pitch, better.pitch);
  EXPECT_EQ(data.strip.width, better.width);
  EXPECT_EQ(data.strip.placed.size(), 4u * static_cast<std::size_t>(better.rows));
  EXPECT_THAT(namesOf(data), Contains("sheet"));
  EXPECT_THAT(namesOf(data), testing::Not(Contains("shown")));
  RunReport half = sample.report();
  half.holdRule = "x0";
  EXPECT_THAT(namesOf(reportDataOf(half, {})), Contains("shown"));
  EXPECT_TRUE(reportDataOf(half, {}).strip.placed.empty());
  EXPECT_THAT(namesOf(data), Contains("rectangle used"));
}

TEST(ReportContent, ABlankThatCannotBeCutHasNoStripAndNoShopFigures) {
  SampleRun sample = withLimits();
  sample.verdict.worth = Worth::notABlank;
  sample.verdict.why = {"it is none"};
  const ReportData data = reportDataOf(sample.report(), {});
  EXPECT_TRUE(data.strip.placed.empty());
  EXPECT_THAT(namesOf(data), testing::Not(Contains("rectangle used")));
  EXPECT_FALSE(data.limits.curve.empty());  // what is wrong with it may well show there
}
