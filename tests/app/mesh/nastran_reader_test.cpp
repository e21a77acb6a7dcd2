#include "mesh/nastran_reader.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/refusal.hpp"

using namespace host;
using testing::ElementsAre;

namespace {

Mesh read(const std::string& content, const std::vector<std::string>& parts = {}) {
  return readNastran(content, "part.bdf", parts);
}

std::string refused(const std::string& content, const std::vector<std::string>& parts = {}) {
  return refusal([&] { read(content, parts); });
}

const std::string fourPoints =
    "GRID,11,,0.,0.,0.\nGRID,12,,1.,0.,0.\nGRID,13,,1.,1.,0.5\nGRID,14,,0.,1.,0.\n";

}  // namespace

TEST(NastranReader, ReadsFreeFieldsAndKeepsTheNumbersOfTheFile) {
  const Mesh mesh = read(fourPoints + "CTRIA3,7,3,11,12,13\nCTRIA3,9,4,11,13,14\n");
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 3, 1, 3, 4));
  EXPECT_THAT(mesh.ids.node, ElementsAre(11, 12, 13, 14));
  EXPECT_THAT(mesh.ids.element, ElementsAre(7, 9));
  EXPECT_THAT(mesh.ids.part, ElementsAre(3, 4));
  EXPECT_EQ(mesh.points[8], 0.5);
}

TEST(NastranReader, ReadsSmallFieldsThatTouchAndRealsWithoutAnExponentLetter) {
  const Mesh mesh = read(
      "GRID    1               -1.23456-2.34567-.3456-1\n"
      "GRID    2               1.00000 0.000000.0\n"
      "GRID    3               0.      1.5+2   2.5D1\n"
      "CTRIA3  5       6       1       2       3       0.0\n");
  EXPECT_THAT(mesh.points, ElementsAre(-1.23456, -2.34567, -0.03456, 1, 0, 0, 0, 150, 25));
}

TEST(NastranReader, ReadsLargeFieldsWithContinuations) {
  const Mesh mesh = read(
      "GRID*                  1                             0.0             0.0*A1\n"
      "*A1                  4.5\n"
      "GRID*                  2                             1.0             0.0\n"
      "*                    0.0\n"
      "GRID*,3,,0.0,1.0,*B\n*B,0.25\n"
      "CTRIA3*                1               1               1               2*\n"
      "*                      3\n");
  EXPECT_THAT(mesh.points, ElementsAre(0, 0, 4.5, 1, 0, 0, 0, 1, 0.25));
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 3));
}

TEST(NastranReader, TakesCommentsTabsCapitalsAndWhatStandsAroundTheBulkData) {
  const Mesh mesh = read(
      "SOL 101\nCEND\nTITLE = GRID\nBEGIN BULK\n$ comment\ngrid\t1\t\t0.\t0.\t0.\ngrid,2,,1.,0.,0. $ "
      "second\r\n\n"
      "Grid,3,,0.,1.,0.\nMAT1,1,2.1E5,,0.3\nPSHELL,1,1,0.8\nctriar,1,1,1,2,3\nENDDATA\nrubbish\n");
  EXPECT_EQ(mesh.elements(), 1u);
  EXPECT_THAT(mesh.remarks, ElementsAre("passed over: MAT1, PSHELL"));
}

TEST(NastranReader, SplitsAQuadOverItsShorterDiagonal) {
  // from 12 to 14 is shorter than from 11 to 13, which rises
  const Mesh mesh = read(fourPoints + "CQUAD4,7,3,11,12,13,14\n");
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 4, 2, 3, 4));
  EXPECT_THAT(mesh.ids.element, ElementsAre(7, 7));
  EXPECT_THAT(mesh.remarks, ElementsAre("split 1 quad over the shorter diagonal"));
  const Mesh flat =
      read("GRID,1,,0.,0.,0.\nGRID,2,,1.,0.,0.\nGRID,3,,1.,1.,0.\nGRID,4,,0.,1.,0.\nCQUADR,7,3,1,2,3,4\n");
  EXPECT_THAT(flat.corners, ElementsAre(1, 2, 3, 1, 3, 4));  // as long: from its first corner
}

TEST(NastranReader, TakesPartsAndLeavesOutNodesThatTheyDoNotUse) {
  const Mesh mesh = read(fourPoints + "CTRIA3,7,3,11,12,13\nCTRIA3,9,4,11,13,14\n", {"4"});
  EXPECT_THAT(mesh.ids.node, ElementsAre(11, 13, 14));
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 3));
  EXPECT_THAT(mesh.remarks, ElementsAre("left out 1 node that no shell uses"));
  EXPECT_EQ(refused(fourPoints + "CTRIA3,7,3,11,12,13\n", {"8"}),
            "part.bdf: there is no part \"8\"; the file has 3 (1 element)");
}

TEST(NastranReader, RefusesByLineWhatItDoesNotUnderstand) {
  EXPECT_EQ(
      refused(fourPoints + "CTRIA6,1,1,11,12,13,14,11,12\n"),
      "part.bdf, line 5: CTRIA6 is not read; only shells with nodes at their corners (CTRIA3, CQUAD4) are");
  EXPECT_EQ(refused(fourPoints + "CTETRA,1,1,11,12,13,14\n"),
            "part.bdf, line 5: CTETRA is a solid element; only shells are read");
  EXPECT_EQ(refused("INCLUDE 'a.bdf'\n"), "part.bdf, line 1: INCLUDE is not followed; put all into one file");
  EXPECT_EQ(refused("GRID,1,,0.,0.,0.\n=,*(1),=\n"),
            "part.bdf, line 2: replication (=) is not read; write the entries out");
  EXPECT_EQ(refused(fourPoints + "CTRAI3,1,1,11,12,13\n"),
            "part.bdf, line 5: the entry \"CTRAI3\" is not known");
  EXPECT_EQ(refused("GRID,1,4,0.,0.,0.\n"),
            "part.bdf, line 1: GRID: coordinate system 4; only the basic one, 0, is read");
  EXPECT_EQ(refused("GRDSET,,4\n"),
            "part.bdf, line 1: GRDSET: coordinate system 4; only the basic one, 0, is read");
}

TEST(NastranReader, RefusesByLineNumbersThatAreNone) {
  EXPECT_EQ(refused("GRID,1,,0.,zero,0.\n"),
            "part.bdf, line 1: GRID: a coordinate expected in field 5, found \"zero\"");
  EXPECT_EQ(refused("GRID,1.5,,0.,0.,0.\n"),
            "part.bdf, line 1: GRID: a grid point's number expected in field 2, found \"1.5\"");
  EXPECT_EQ(refused(fourPoints + "CTRIA3,1,1,11,12\n"),
            "part.bdf, line 5: CTRIA3: a grid point's number expected in field 6, found \"\"");
}

TEST(NastranReader, RefusesByLineWhatDoesNotFitTogether) {
  EXPECT_EQ(refused(fourPoints + "CTRIA3,1,1,11,12,15\n"),
            "part.bdf, line 5: element 1 names node 15, which the file does not have");
  EXPECT_EQ(refused(fourPoints + "CTRIA3,1,1,11,12,11\n"),
            "part.bdf, line 5: element 1 names a node more than once");
  EXPECT_EQ(refused(fourPoints + "GRID,12,,0.,0.,0.\nCTRIA3,1,1,11,12,13\n"),
            "part.bdf, line 5: node 12 is given a second time, after line 2");
  EXPECT_EQ(refused(fourPoints + "CTRIA3,1,1,11,12,13\nCTRIA3,1,1,11,13,14\n"),
            "part.bdf, line 6: element 1 is given a second time, after line 5");
  EXPECT_EQ(refused(fourPoints), "part.bdf: no shell element in the file");
}

TEST(NastranReader, RefusesContinuationsThatDoNotBelongTogether) {
  EXPECT_EQ(refused("+A,1\n"), "part.bdf, line 1: a continuation of no entry");
  EXPECT_EQ(
      refused("GRID*,1,,0.0,1.0,*A\n*B,0.25\n"),
      "part.bdf, line 2: the continuation \"*B\" does not belong to \"*A\" of the line before; lines in "
      "another order are not put together");
  EXPECT_EQ(refused("GRID,1,2,3,4,5,6,7,8,9,10,11\n"),
            "part.bdf, line 1: more than 8 fields and a continuation mark");
}

TEST(NastranReader, RefusesAFileThatEndsWhereTheBulkDataBegin) {
  for (const char* content : {"SOL 101\nCEND\nBEGIN BULK", "BEGIN BULK\n"})
    EXPECT_NE(refusal([&] { readNastran(content, "part.bdf", {}); }).find("part.bdf"), std::string::npos)
        << content;
}
