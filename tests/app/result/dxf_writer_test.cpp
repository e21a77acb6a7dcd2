#include "result/dxf_writer.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <sstream>

#include "app/refusal.hpp"
#include "result/svg_writer.hpp"

using namespace host;
using testing::HasSubstr;
using testing::Not;

namespace {

// A plate with a round hole and a note.
Drawing plate() {
  Drawing drawing;
  drawing.curves.push_back(
      {true, {{0, 0, 0}, {100, 0, 0}, {100, 50, 0.414213562373}, {90, 60, 0}, {0, 60, 0}}});
  drawing.curves.push_back({false, {{30, 30, -1}, {50, 30, -1}}});
  drawing.notes = {"plate"};
  return drawing;
}

struct Tag {
  int code;
  std::string value;
};

std::vector<Tag> tagsOf(const std::string& dxf) {
  std::vector<Tag> tags;
  std::istringstream lines(dxf);
  for (std::string code, value; std::getline(lines, code) && std::getline(lines, value);)
    tags.push_back({std::stoi(code), value});
  return tags;
}

}  // namespace

TEST(DxfWriter, NamesReleaseUnitAndLayers) {
  const std::string dxf = dxfText(plate(), DxfRelease::r2000);
  EXPECT_THAT(dxf, HasSubstr("$ACADVER\n  1\nAC1015\n"));
  EXPECT_THAT(dxf, HasSubstr("$INSUNITS\n 70\n4\n"));
  for (const char* layer : {"OUTER", "INNER", "BEND", "TEXT"})
    EXPECT_THAT(dxf, HasSubstr(std::string("AcDbLayerTableRecord\n  2\n") + layer + "\n"));
  EXPECT_THAT(dxf, HasSubstr("  2\nBEND\n 70\n0\n 62\n-3\n"));  // nothing on it: off
  EXPECT_THAT(dxf, HasSubstr("LWPOLYLINE"));
}

TEST(DxfWriter, TheBendLayerIsOnWithLines) {
  Drawing drawing = plate();
  drawing.bends.push_back({PlanePoint{0, 20}, PlanePoint{100, 20}});
  EXPECT_THAT(dxfText(drawing, DxfRelease::r2000), HasSubstr("  2\nBEND\n 70\n0\n 62\n3\n"));
}

// Every handle once, every owner there, the seed behind them all.
TEST(DxfWriter, HandlesAreUniqueAndOwnersExist) {
  Drawing drawing = plate();
  drawing.bends.push_back({PlanePoint{0, 20}, PlanePoint{100, 20}});
  std::set<std::string> handles;
  std::vector<std::string> owners;
  unsigned long seed = 0, largest = 0;
  bool seedFollows = false;
  for (const Tag& tag : tagsOf(dxfText(drawing, DxfRelease::r2000))) {
    if (tag.code == 9) seedFollows = tag.value == "$HANDSEED";
    if (tag.code == 5 && seedFollows) {
      seed = std::stoul(tag.value, nullptr, 16);
      seedFollows = false;
    } else if (tag.code == 5 || tag.code == 105) {
      EXPECT_TRUE(handles.insert(tag.value).second) << tag.value;
      largest = std::max(largest, std::stoul(tag.value, nullptr, 16));
    } else if ((tag.code >= 330 && tag.code <= 350) || tag.code == 390) {
      owners.push_back(tag.value);
    }
  }
  EXPECT_EQ(seed, largest + 1);
  for (const std::string& owner : owners) EXPECT_TRUE(owner == "0" || handles.contains(owner)) << owner;
}

TEST(DxfWriter, R12HasPolylinesAndNoHandles) {
  const std::string dxf = dxfText(plate(), DxfRelease::r12);
  EXPECT_THAT(dxf, HasSubstr("AC1009"));
  EXPECT_THAT(dxf, HasSubstr("POLYLINE"));
  EXPECT_THAT(dxf, Not(HasSubstr("LWPOLYLINE")));
  for (const Tag& tag : tagsOf(dxf)) EXPECT_NE(tag.code, 100);
}

TEST(DxfWriter, WarningsStandAtTheHeadAndOnTheDrawing) {
  Drawing drawing = plate();
  drawing.warnings = {"DO NOT CUT: the outline crosses itself in 2 places"};
  drawing.notes.insert(drawing.notes.begin(), drawing.warnings[0]);
  for (const DxfRelease release : {DxfRelease::r2000, DxfRelease::r12}) {
    const std::string dxf = dxfText(drawing, release);
    EXPECT_THAT(dxf, testing::StartsWith("999\nDO NOT CUT: the outline crosses itself in 2 places\n"));
    EXPECT_THAT(dxf, HasSubstr("  1\nDO NOT CUT: "));
  }
  EXPECT_THAT(svgText(drawing, "plate"), HasSubstr("<desc>DO NOT CUT: "));
}

TEST(DxfWriter, TextOfAnyBytesStaysOneLineOfText) {
  EXPECT_EQ(dxfString("a\n  0\nEOF\r\t", DxfRelease::r2000), "a?  0?EOF??");
  EXPECT_EQ(dxfString("Träger", DxfRelease::r2000), "Tr\\U+00E4ger");
  EXPECT_EQ(dxfString("Träger 5%%u", DxfRelease::r12), "Tr?ger 5__u");
  EXPECT_EQ(dxfString("\\U+0041^J%%c", DxfRelease::r2000), "\\U+005CU+0041\\U+005EJ\\U+0025\\U+0025c");
  EXPECT_EQ(dxfString("\xC3\x28\xFF\xED\xA0\x80", DxfRelease::r2000), "?(????");
  EXPECT_LE(dxfString(std::string(5000, '\\'), DxfRelease::r2000).size(), 255u);
}

TEST(DxfWriter, WhatIsNotFiniteIsRefused) {
  Drawing drawing = plate();
  drawing.curves[0].vertices[1].x = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(refusal([&] { dxfText(drawing, DxfRelease::r12); }),
            "no DXF of the blank: a coordinate is not finite");
  EXPECT_EQ(refusal([&] { svgText(drawing, "x"); }), "no SVG of the blank: a coordinate is not finite");
}

TEST(SvgWriter, IsTrueToSizeWithLinesAndArcs) {
  Drawing drawing = plate();
  drawing.notes.clear();
  const std::string svg = svgText(drawing, "a <script> & \"b\"");
  EXPECT_THAT(svg, HasSubstr("width=\"100.4mm\""));
  EXPECT_THAT(svg, HasSubstr("viewBox=\"-0.2 -60.2 100.4 "));
  EXPECT_THAT(svg, HasSubstr("<title>a &lt;script&gt; &amp; &quot;b&quot;</title>"));
  EXPECT_THAT(svg, HasSubstr("d=\"M0 0L100 0L100 -50A10 10 0 0 0 90 -60L0 -60Z\""));
  EXPECT_THAT(svg, HasSubstr("d=\"M30 -30A10 10 0 0 1 50 -30A10 10 0 0 1 30 -30Z\""));
}

TEST(SvgWriter, NumbersAreShort) {
  EXPECT_EQ(svgNumber(1.5), "1.5");
  EXPECT_EQ(svgNumber(-1e-9), "0");
  EXPECT_EQ(svgNumber(1200), "1200");
}
