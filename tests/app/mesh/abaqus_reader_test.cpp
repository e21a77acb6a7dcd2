#include "mesh/abaqus_reader.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/refusal.hpp"

using namespace host;
using testing::ElementsAre;

namespace {

Mesh read(const std::string& content, const std::vector<std::string>& parts = {}) {
  return readAbaqus(content, "part.inp", parts);
}

std::string refused(const std::string& content, const std::vector<std::string>& parts = {}) {
  return refusal([&] { read(content, parts); });
}

const std::string nodes = "*NODE\n11, 0., 0., 0.\n12, 1., 0.\n13, 1., 1., 5.D-1\n14, 0., 1., 0.\n";

}  // namespace

TEST(AbaqusReader, ReadsNodesAndShellsWithTheirNumbers) {
  const Mesh mesh =
      read("*HEADING\nby hand\n** comment\n" + nodes +
           "*Element, type=S3R,\n elset = Flange\n7, 11,12,13\n*ELEMENT, TYPE=S4\n9,11,12,13,14,\n");
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 3, 1, 2, 4, 2, 3, 4));
  EXPECT_THAT(mesh.ids.node, ElementsAre(11, 12, 13, 14));
  EXPECT_THAT(mesh.ids.element, ElementsAre(7, 9, 9));
  EXPECT_THAT(mesh.ids.part, ElementsAre(1, 2, 2));
  EXPECT_EQ(mesh.points[8], 0.5);
  EXPECT_THAT(
      mesh.remarks,
      ElementsAre("took all 2 parts of the file, 1 (\"Flange\", 1 element), 2 (1 element); --part takes one",
                  "split 1 quad over the shorter diagonal", "passed over: *HEADING"));
}

TEST(AbaqusReader, KeepsTheNodeNumbersOfPartsApart) {
  const std::string twoParts =
      "*PART, NAME=left\n*NODE\n1,0,0,0\n2,1,0,0\n3,0,1,0\n*ELEMENT,TYPE=S3\n1,1,2,3\n*END PART\n"
      "*PART, NAME=right\n*NODE\n1,9,0,0\n2,8,0,0\n3,9,1,0\n*ELEMENT,TYPE=S3\n1,1,2,3\n*END PART\n"
      "*ASSEMBLY, NAME=all\n*INSTANCE, NAME=l, PART=left\n*END INSTANCE\n*INSTANCE, NAME=r, PART=right\n"
      "0., 0., 0.\n*END INSTANCE\n*END ASSEMBLY\n";
  EXPECT_THAT(read(twoParts).corners, ElementsAre(1, 2, 3, 4, 5, 6));
  const Mesh right = read(twoParts, {"RIGHT"});
  EXPECT_THAT(right.points, ElementsAre(9, 0, 0, 8, 0, 0, 9, 1, 0));
  EXPECT_THAT(right.ids.part, ElementsAre(2));
}

TEST(AbaqusReader, PassesOverElementsWithoutAreaAndTells) {
  const Mesh mesh =
      read(nodes + "*ELEMENT, TYPE=B31\n1, 11, 12\n*ELEMENT, TYPE=S3\n2,11,12,13\n*ELEMENT OUTPUT\nS, E\n");
  EXPECT_EQ(mesh.elements(), 1u);
  EXPECT_THAT(mesh.remarks, testing::Contains("passed over: *ELEMENT OUTPUT, *ELEMENT, TYPE=B31"));
}

TEST(AbaqusReader, RefusesByLineWhatItDoesNotUnderstand) {
  EXPECT_EQ(refused("*NGEN\n1,2\n"),
            "part.inp, line 1: the keyword \"*NGEN\" is not read; if it neither makes nor moves nodes and "
            "elements, "
            "take it out");
  EXPECT_EQ(refused(nodes + "*ELEMENT, TYPE=C3D4\n"),
            "part.inp, line 6: elements of type C3D4 are solids; only shells are read");
  EXPECT_EQ(refused(nodes + "*ELEMENT, TYPE=S8R\n"),
            "part.inp, line 6: elements of type \"S8R\" are not read; shells with three or four nodes (S3, "
            "S4R, ...) "
            "are");
  EXPECT_EQ(refused("*NODE, SYSTEM=C\n"),
            "part.inp, line 1: only rectangular coordinates (SYSTEM=R) are read");
  EXPECT_EQ(refused("*NODE, INPUT=a.inp\n"),
            "part.inp, line 1: INPUT= is not followed; put all into one file");
  EXPECT_EQ(refused("*ELEMENT, TYPE=S3, INPUT=a\n"),
            "part.inp, line 1: INPUT= is not followed; put all into one file");
  EXPECT_EQ(refused("*INSTANCE, PART=a\n0,0,1\n"),
            "part.inp, line 2: a moved instance is not read; write the part where it belongs");
  EXPECT_EQ(refused("*INSTANCE, PART=a\n*INSTANCE, PART=A\n"),
            "part.inp, line 2: a second instance of part \"A\"; one of each is read");
  EXPECT_EQ(refused("1, 2, 3\n*NODE\n"), "part.inp, line 1: data before the first keyword");
}

TEST(AbaqusReader, RefusesByLineNumbersThatAreNone) {
  EXPECT_EQ(refused("*NODE\nx, 0, 0, 0\n"), "part.inp, line 2: a node's number expected, found \"x\"");
  EXPECT_EQ(refused("*NODE\n1, 0, y, 0\n"), "part.inp, line 2: a coordinate expected, found \"y\"");
  EXPECT_EQ(refused(nodes + "*ELEMENT, TYPE=S3\n1, 11, 12\n"),
            "part.inp, line 7: element 1 has 2 nodes, its type has 3");
  EXPECT_EQ(refused(nodes + "*ELEMENT, TYPE=S3\n1, 11, 12, 99\n"),
            "part.inp, line 7: element 1 names node 99, which the file does not have");
}
