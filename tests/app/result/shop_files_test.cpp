#include "result/shop_files.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/run/sample_run.hpp"
#include "app/scratch_folder.hpp"

using namespace host;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

std::set<std::string> filesOf(const SampleRun& sample, const ScratchFolder& folder) {
  const RunReport report = sample.report();
  ResultFiles files(folder.path());
  addShopFiles(files, report, false);
  files.putIntoPlace();
  return folder.names();
}

}  // namespace

TEST(ShopFiles, AGoodBlankIsDrawnWithoutAWarning) {
  const ScratchFolder folder;
  const SampleRun sample;
  EXPECT_EQ(whyNoDrawing(sample.report()), "");
  EXPECT_THAT(filesOf(sample, folder), ElementsAre("blank.dxf", "blank.svg"));
  EXPECT_TRUE(drawingOf(sample.report()).warnings.empty());
  EXPECT_THAT(folder.read("blank.dxf"), Not(HasSubstr("DOUBTFUL")));
}

TEST(ShopFiles, ADoubtfulBlankSaysSoOnTheDrawing) {
  const ScratchFolder folder;
  SampleRun sample;
  sample.verdict.worth = Worth::doubtful;
  sample.verdict.why = {"a second start ends in another blank", "there was no memory to check the blank"};
  EXPECT_THAT(drawingOf(sample.report()).warnings,
              ElementsAre("DOUBTFUL: a second start ends in another blank",
                          "DOUBTFUL: there was no memory to check the blank"));
  filesOf(sample, folder);
  EXPECT_THAT(folder.read("blank.dxf"), testing::StartsWith("999\nDOUBTFUL: a second start"));
  EXPECT_THAT(folder.read("blank.svg"), HasSubstr(" fill=\"red\">DOUBTFUL: a second start"));
}

// What must not be cut gets no drawing, and that of an earlier run goes.
TEST(ShopFiles, WhatCannotBeCutIsNotDrawn) {
  struct Case {
    const char* why;
    void (*change)(SampleRun&);
  };
  const Case cases[] = {
      {"there is no blank", [](SampleRun& s) { s.results.developed = false; }},
      {"the run did not converge",
       [](SampleRun& s) {
         s.verdict = {false, "stalled", exitUnconverged, Worth::notABlank, {"not converged"}};
       }},
      {"no sheet can be cut so: the equilibrium found is no minimum",
       [](SampleRun& s) {
         s.verdict.worth = Worth::notABlank;
         s.verdict.why = {"the equilibrium found is no minimum", "another reason"};
       }},
      {"no sheet can be cut so: 2 triangles of the blank turned over",
       [](SampleRun& s) { s.results.folded = 2; }},
      {"no sheet can be cut so: its outline crosses itself in 1 place",
       [](SampleRun& s) { s.shop.shape.outline.crossings = 1; }},
  };
  for (const Case& c : cases) {
    const ScratchFolder folder;
    SampleRun sample;
    for (const char* name : {"blank.dxf", "blank.svg", "fld.svg", "strip.svg"})
      folder.write(name, "of yesterday");
    folder.write("notes.txt", "of the user");
    c.change(sample);
    EXPECT_EQ(whyNoDrawing(sample.report()), c.why);
    EXPECT_THAT(filesOf(sample, folder), ElementsAre("notes.txt")) << c.why;
  }
}

// The roof lies between 0 and 1 along x and y.
TEST(ShopFiles, AHalfOrAQuarterIsCalledSo) {
  SampleRun sample;
  const auto shown = [&](const std::string& hold) {
    RunReport report = sample.report();
    report.holdRule = hold;
    return partOfBlank(report);
  };
  EXPECT_EQ(shown("auto"), "");
  EXPECT_EQ(shown("x0"), "A HALF of the blank, up to the symmetry plane x = 0");
  EXPECT_EQ(shown("y0"), "A HALF of the blank, up to the symmetry plane y = 0");
  EXPECT_EQ(shown("x0,y0"), "A QUARTER of the blank, up to the symmetry planes x = 0 and y = 0");
  for (std::size_t n = 0; n < 5; ++n) sample.data.points[3 * n] -= 0.5;  // now on both sides of x = 0
  EXPECT_EQ(shown("x0"), "");
  EXPECT_EQ(shown("x0,y0"), "A HALF of the blank, up to the symmetry plane y = 0");
  EXPECT_EQ(shown("y0,x0"), shown("x0,y0"));
  RunReport report = sample.report();
  EXPECT_EQ(whyNoStrip(report), "");
  report.holdRule = "y0";
  EXPECT_EQ(whyNoStrip(report), "a strip wants the whole blank, and the part ends at its symmetry plane");
  EXPECT_THAT(drawingOf(report).warnings, ElementsAre("A HALF of the blank, up to the symmetry plane y = 0"));
}

TEST(ShopFiles, TheDrawingTellsFileNameSizeAndSheet) {
  SampleRun sample;
  sample.data.file = "some/folder/roof.obj";
  sample.shop.thickness = 1.00000004;
  sample.shop.material.name = "DC04";
  EXPECT_THAT(drawingOf(sample.report()).notes,
              ElementsAre("roof.obj", "rectangle 1.00 x 1.00 mm, area 1.0 mm2", "sheet 1 mm, DC04"));
}
