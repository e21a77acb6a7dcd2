#include "mesh/dyna_reader.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/refusal.hpp"

using namespace host;
using testing::ElementsAre;

namespace {

Mesh read(const std::string& content, const std::vector<std::string>& parts = {}) {
  return readDyna(content, "part.k", parts);
}

std::string refused(const std::string& content, const std::vector<std::string>& parts = {}) {
  return refusal([&] { read(content, parts); });
}

const std::string nodes =
    "*NODE\n"
    "$    nid               x               y               z      tc      rc\n"
    "      11             0.0             0.0             0.0\n"
    "      12             1.0             0.0             0.0       0       0\n"
    "      13             1.0             1.0           0.5D0\n"
    "      14             0.0             1.0\n";

}  // namespace

TEST(DynaReader, ReadsNodesShellsAndTitlesWithTheirNumbers) {
  const Mesh mesh = read("*KEYWORD\n*TITLE\na part\n" + nodes +
                         "*PART\nside panel left\n         3         1         1\n\n         4         1\n"
                         "*ELEMENT_SHELL\n       7       3      11      12      13      13\n"
                         "       9       4      11      12      13      14\n*END\nrubbish\n");
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 3, 1, 2, 4, 2, 3, 4));
  EXPECT_THAT(mesh.ids.node, ElementsAre(11, 12, 13, 14));
  EXPECT_THAT(mesh.ids.element, ElementsAre(7, 9, 9));
  EXPECT_THAT(mesh.ids.part, ElementsAre(3, 4, 4));
  EXPECT_EQ(mesh.points[8], 0.5);
  EXPECT_EQ(mesh.remarks[0],
            "took all 2 parts of the file, 3 (\"side panel left\", 1 element), 4 (\"\", 1 element); --part "
            "takes one");
}

TEST(DynaReader, ReadsFieldsThatTouchAndThoseBetweenCommas) {
  const Mesh mesh = read(
      "*NODE\n10000001-1.234567890E+01-2.234567890E+01-3.234567890E+01\n10000002,1.5,0,0\n10000003,0,1,0\n"
      "*ELEMENT_SHELL\n1000000110000002100000011000000210000003       0\n");
  EXPECT_THAT(mesh.points, ElementsAre(-12.34567890, -22.34567890, -32.34567890, 1.5, 0, 0, 0, 1, 0));
  EXPECT_THAT(mesh.ids.part, ElementsAre(10000002));
}

TEST(DynaReader, ReadsTheLongAndTheI10Layout) {
  const Mesh longer = read(
      "*KEYWORD LONG=Y\n*NODE\n                   1                 0.5                 0.0                 "
      "0.0\n"
      "*NODE -\n       2             1.0\n*NODE %\n         3             0.0             1.0\n"
      "*ELEMENT_SHELL\n                   7                   1                   1                   2      "
      "    "
      "         3\n");
  EXPECT_THAT(longer.points, ElementsAre(0.5, 0, 0, 1, 0, 0, 0, 1, 0));
  const Mesh tens = read(
      "*KEYWORD I10=Y\n*NODE\n         1             0.0\n         2             1.0\n         3             "
      "0.0     "
      "        1.0\n*ELEMENT_SHELL\n         7         1         1         2         3         3\n");
  EXPECT_THAT(tens.corners, ElementsAre(1, 2, 3));
}

TEST(DynaReader, PassesOverTheFurtherCardsOfAShell) {
  const Mesh mesh =
      read(nodes +
           "*ELEMENT_SHELL_THICKNESS\n       7       3      11      12      13      13\n"
           "             1.0             1.0             1.0             1.0\n"
           "       9       3      11      13      14      14\n\n"
           "*ELEMENT_SHELL_THICKNESS_OFFSET\n      10       3      12      13      14      14\n 1.0\n 0.5\n");
  EXPECT_THAT(mesh.ids.element, ElementsAre(7, 9, 10));
}

TEST(DynaReader, TakesPartsByNumberOrTitle) {
  const std::string content =
      nodes +
      "*PART\nLid\n         3\nBase\n         4\n*ELEMENT_SHELL\n"
      "       7       3      11      12      13      13\n       9       4      11      13      14\n";
  EXPECT_THAT(read(content, {"lid"}).ids.element, ElementsAre(7));
  EXPECT_THAT(read(content, {"4", "3"}).ids.element, ElementsAre(7, 9));
  EXPECT_EQ(
      refused(content, {"door"}),
      "part.k: there is no part \"door\"; the file has 3 (\"Lid\", 1 element), 4 (\"Base\", 1 element)");
}

TEST(DynaReader, RefusesByLineWhatItDoesNotUnderstand) {
  EXPECT_EQ(refused("*INCLUDE\nb.k\n"),
            "part.k, line 1: the keyword \"*INCLUDE\" is not read; if it neither makes nor moves nodes and "
            "elements, "
            "take it out");
  EXPECT_EQ(
      refused("*NODE_TRANSFORM\n"),
      "part.k, line 1: the keyword \"*NODE_TRANSFORM\" is not read; if it neither makes nor moves nodes and "
      "elements, take it out");
  EXPECT_EQ(refused("*ELEMENT_SOLID\n"),
            "part.k, line 1: *ELEMENT_SOLID holds solid elements; only shells are read");
  EXPECT_EQ(refused("*ELEMENT_SHELL_COMPOSITE\n"),
            "part.k, line 1: *ELEMENT_SHELL_COMPOSITE: the option \"COMPOSITE\" is not read");
  EXPECT_EQ(refused(nodes + "*ELEMENT_SHELL\n7,3,11,12,13,14,11,12,13,14\n"),
            "part.k, line 8: element 7 has nodes amid its edges; shells with three or four are read");
  EXPECT_EQ(refused("*NODE\n\t1\t0.0\n"), "part.k, line 2: a tab; fields of fixed width take blanks");
  EXPECT_EQ(refused("1\n*NODE\n"), "part.k, line 1: data before the first keyword");
}

TEST(DynaReader, RefusesByLineNumbersThatAreNone) {
  EXPECT_EQ(refused("*NODE\n      x1             0.0\n"),
            "part.k, line 2: a node's number expected, found \"x1\"");
  EXPECT_EQ(refused("*NODE\n       1          &width\n"),
            "part.k, line 2: a coordinate expected, found \"&width\"");
  EXPECT_EQ(refused("*PART\nLid\nthree\n"), "part.k, line 3: a part's number expected, found \"three\"");
}
