#include "mesh/obj_reader.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/refusal.hpp"

using namespace host;
using testing::ElementsAre;

namespace {

const std::string threeNodes = "v 0 0 0\nv 1 0 0\nv 0 1 0\n";

std::string refused(const std::string& content) {
  return refusal([&] { readObj(content, "part.obj"); });
}

}  // namespace

TEST(ObjReader, KeepsNodesInFileOrderUsedOrNot) {
  const Mesh mesh = readObj("v 9 9 9\nv 0 0 0\nv 0 1 0\nv 1 0 0.5\nv 7 7 7\nf 4 3 2\n", "part.obj");
  EXPECT_EQ(mesh.nodes(), 5u);
  EXPECT_THAT(mesh.corners, ElementsAre(4, 3, 2));
  EXPECT_EQ(mesh.points[11], 0.5);
}

TEST(ObjReader, ReadsCoordinatesCorrectlyRounded) {
  const Mesh mesh = readObj("v 0.1 1149.35902 -3.739293e-16\n" + threeNodes + "f 1 2 3", "part.obj");
  EXPECT_EQ(mesh.points[0], 0.1);
  EXPECT_EQ(mesh.points[1], 1149.35902);
  EXPECT_EQ(mesh.points[2], -3.739293e-16);
}

TEST(ObjReader, SkipsEverythingButVerticesAndFaces) {
  const Mesh mesh = readObj("# comment v 1 2\nmtllib a.mtl\no sheet\ng a b\nvn 0 0 1\nvt 0 x\n" + threeNodes +
                                "usemtl steel\ns off\nf 1/1/1 2//1 3/1\nl 1 2\n",
                            "part.obj");
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 3));
}

TEST(ObjReader, TakesWindowsLineEndsTabsAndExtraVertexWords) {
  const Mesh mesh = readObj("v\t0 0 0 1.0\r\nv 1 0 0 0.5 0.5 0.5\r\n  v 0 1 0\r\n\tf 1 2 3 \r\n", "part.obj");
  EXPECT_EQ(mesh.nodes(), 3u);
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 3));
}

TEST(ObjReader, CountsNegativeNumbersBackFromTheVerticesReadSoFar) {
  const Mesh mesh = readObj(threeNodes + "f -3 -2 -1\nv 5 5 5\nf -1 -2 -3\n", "part.obj");
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 3, 4, 3, 2));
}

TEST(ObjReader, LeavesNumbersOutOfRangeToTheMeshCheck) {
  const Mesh mesh = readObj(threeNodes + "f 1 2 4\nf 0 -9 1\n", "part.obj");
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 4, 0, -5, 1));
}

TEST(ObjReader, SplitsAQuadOverItsShorterDiagonalAndTells) {
  const Mesh mesh = readObj(threeNodes + "v 2 2 0\nv 1 1 0\nf 1 2 3\nf 1 2 4 3\nf 1 2 5 -3\n", "part.obj");
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 3, 1, 2, 3, 2, 4, 3, 1, 2, 5, 1, 5, 3));
  EXPECT_THAT(mesh.ids.element, ElementsAre(1, 2, 2, 3, 3));
  EXPECT_THAT(mesh.remarks, ElementsAre("split 2 quads over the shorter diagonal"));
  EXPECT_TRUE(readObj(threeNodes + "f 1 2 3\n", "part.obj").ids.element.empty());
}

TEST(ObjReader, LeavesAQuadWithoutItsNodesToTheMeshCheck) {
  EXPECT_THAT(readObj(threeNodes + "f 1 2 9 3\n", "part.obj").corners, ElementsAre(1, 2, 9, 1, 9, 3));
}

TEST(ObjReader, RefusesAFaceOfFiveCornersByElement) {
  EXPECT_EQ(refused(threeNodes + "v 1 1 0\nf 1 2 3\nf 1 2 4 3 1\n"),
            "part.obj, line 6: element 2 has 5 corners; only triangles and quads are taken");
}

TEST(ObjReader, RefusesAFaceOfTwoCorners) {
  EXPECT_EQ(refused(threeNodes + "f 1 2\n"),
            "part.obj, line 4: element 1 has 2 corners; only triangles and quads are taken");
}

TEST(ObjReader, RefusesACoordinateThatIsNoNumber) {
  EXPECT_EQ(refused("v 0 0 0\nv 1 zero 0\n"), "part.obj, line 2: node 2: \"zero\" is not a number");
}

TEST(ObjReader, RefusesAVertexWithTwoCoordinates) {
  EXPECT_EQ(refused("v 0 0\n"), "part.obj, line 1: node 1 has fewer than three coordinates");
}

TEST(ObjReader, RefusesACornerThatIsNoNumber) {
  EXPECT_EQ(refused(threeNodes + "f 1 2 c\n"), "part.obj, line 4: element 1: \"c\" is not a node number");
}

TEST(ObjReader, TakesTextureAndNormalNumbersBehindSlashes) {
  EXPECT_EQ(host::readObj(threeNodes + "f 1/7 2//-8 3/9/10\n", "part.obj").corners,
            (std::vector<std::int64_t>{1, 2, 3}));
}

TEST(ObjReader, RefusesACornerWithMoreThanNumbersBehindItsSlashes) {
  for (const std::string corner : {"1/q", "1//2q", "1/2.5", "1/2/3/4", "1/", "1/2/", "1//", "/1"})
    EXPECT_EQ(refused(threeNodes + "f " + corner + " 2 3\n"),
              "part.obj, line 4: element 1: \"" + corner + "\" is not a node number");
}

TEST(ObjReader, TakesALoneCarriageReturnForTheEndOfALine) {
  const Mesh mesh = readObj("# old\rv 0 0 0\rv 1 0 0\rv 0 1 0\rf 1 2 3\r\nf 2 3 1\r", "part.obj");
  EXPECT_EQ(mesh.nodes(), 3u);
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 3, 2, 3, 1));
}

TEST(ObjReader, CountsLinesWhateverEndsThem) {
  EXPECT_EQ(refused("# old\rv 0 0 0\r\n\rv 1 0 0\n\nv 0 0\n"),
            "part.obj, line 6: node 3 has fewer than three coordinates");
}

TEST(ObjReader, LeavesANodeNumberBeyond32BitsToTheMeshCheckUnwrapped) {
  EXPECT_THAT(readObj(threeNodes + "f 4294967297 2 -4294967297\n", "part.obj").corners,
              ElementsAre(4294967297, 2, -4294967293));
}

namespace {

// More than a mebibyte: a strip of pairs of nodes, its faces behind them.
std::string longStrip(const std::string& before, const std::string& face) {
  std::string content = before;
  constexpr int pairs = 30000;
  for (int k = 0; k < pairs; ++k)
    content += "v " + std::to_string(k / 7.0) + " 0 0\nv " + std::to_string(k / 7.0) + " 1 0\n";
  for (int k = 1; k < pairs; ++k)
    content += "f " + std::to_string(2 * k - 1) + " " + std::to_string(2 * k) + " " +
               std::to_string(2 * k + 1) + "\n";
  return content + face;
}

}  // namespace

TEST(ObjReader, InTwoThreadsTheMeshIsTheSame) {
  for (const std::string face : {"", "f -3 -2 -1\n", "f 1 2 4 3\n"}) {
    const std::string content = longStrip("# strip\n", face);
    ASSERT_GT(content.size(), std::size_t{1} << 20);
    const Mesh one = readObj(content, "part.obj"), two = readObj(content, "part.obj", true);
    EXPECT_TRUE(one.points == two.points) << face;
    EXPECT_TRUE(one.corners == two.corners) << face;
    EXPECT_EQ(one.ids.element, two.ids.element) << face;
    EXPECT_EQ(one.remarks, two.remarks) << face;
  }
}

TEST(ObjReader, InTwoThreadsARefusalNamesTheSameLine) {
  for (const std::string before : {"", "v 0 0\n"}) {
    const std::string content = longStrip(before, "f 1 2 x\n");
    const std::string one = refused(content);
    EXPECT_EQ(one, before.empty() ? "part.obj, line 90000: element 30000: \"x\" is not a node number"
                                  : "part.obj, line 1: node 1 has fewer than three coordinates");
    EXPECT_EQ(refusal([&] { readObj(content, "part.obj", true); }), one);
  }
}

TEST(ObjReader, RefusesAFileWithoutFaces) {
  EXPECT_EQ(refused(threeNodes), "part.obj: no face (f line) in the file");
}
