#include "mesh/stl_reader.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

#include "app/refusal.hpp"
#include "app/scratch_folder.hpp"
#include "mesh/mesh_file.hpp"

using namespace host;
using testing::ElementsAre;

namespace {

const std::string facetA =
    "facet normal 0 0 1\n outer loop\n  vertex 0 0 0\n  vertex 1 0 0\n  vertex 0 1 0\n endloop\nendfacet\n";
const std::string facetB =
    "facet normal 0 0 1\n outer loop\n  vertex 1 0 0\n  vertex 1.1 1 0\n  vertex -0 1 0\n "
    "endloop\nendfacet\n";
const std::string twoTriangles = "solid sheet of steel\n" + facetA + facetB + "endsolid sheet of steel\n";

void append32(std::string& bytes, std::uint32_t value) {
  for (int k = 0; k < 4; ++k) bytes += static_cast<char>(value >> 8 * k & 255);
}

// The same two triangles; `announced` is written as their number.
std::string binaryStl(std::uint32_t announced, const std::string& title = "made by hand") {
  std::string bytes = title;
  bytes.resize(80, ' ');
  append32(bytes, announced);
  const float triangles[2][9] = {{0, 0, 0, 1, 0, 0, 0, 1, 0}, {1, 0, 0, 1.1f, 1, 0, -0.0f, 1, 0}};
  for (const auto& triangle : triangles) {
    bytes.append(12, '\0');
    for (const float coordinate : triangle) append32(bytes, std::bit_cast<std::uint32_t>(coordinate));
    bytes.append(2, '\0');
  }
  return bytes;
}

std::string refusedText(const std::string& content) {
  return refusal([&] { readStlText(content, "part.stl"); });
}

}  // namespace

TEST(StlText, MergesEqualPointsInOrderOfAppearanceAndKeepsDoublePrecision) {
  const Mesh mesh = readStlText(twoTriangles, "part.stl");
  EXPECT_EQ(mesh.nodes(), 4u);
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 3, 2, 4, 3));  // (-0, 1, 0) equals (0, 1, 0)
  EXPECT_EQ(mesh.points[9], 1.1);
}

TEST(StlText, DoesNotMergePointsThatDifferInTheLastDigit) {
  std::string content = twoTriangles;
  content.replace(content.find("vertex 1 0 0", content.find("vertex 0 1 0")), 12,
                  "vertex 1.0000000000000002 0 0");
  EXPECT_EQ(readStlText(content, "part.stl").nodes(), 5u);
}

TEST(StlText, TakesCapitalsAndSeveralSolids) {
  EXPECT_EQ(readStlText("SOLID a\n" + facetA + "ENDSOLID\nsolid b\n" + facetB + "endsolid b", "part.stl")
                .elements(),
            2u);
}

TEST(StlText, RefusesACutOffFile) {
  EXPECT_EQ(refusedText("solid a\n" + facetA),
            "part.stl, line 8: \"facet\" or \"endsolid\" expected, found the end of the file");
  EXPECT_EQ(refusedText("solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0"),
            "part.stl, line 4: a coordinate expected, found the end of the file");
}

TEST(StlText, RefusesAFacetOfFourCorners) {
  std::string content = twoTriangles;
  content.replace(content.find(" endloop"), 8, "  vertex 2 2 2\n endloop");
  EXPECT_EQ(refusedText(content),
            "part.stl, line 7: element 1 has more than three corners; only triangles are taken");
}

TEST(StlText, RefusesAWordInPlaceOfACoordinate) {
  std::string content = twoTriangles;
  content.replace(content.find("1.1"), 3, "1,1");
  EXPECT_EQ(refusedText(content), "part.stl, line 12: a coordinate expected, found \"1,1\"");
}

TEST(StlText, RefusesAnEmptySolid) {
  EXPECT_EQ(refusedText("solid a\nendsolid a\n"), "part.stl: no triangle in the file");
}

TEST(StlBinary, ReadsWhatTheTextFileHolds) {
  const Mesh mesh = readStlBinary(binaryStl(2), "part.stl");
  EXPECT_EQ(mesh.nodes(), 4u);
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 3, 2, 4, 3));
  EXPECT_EQ(mesh.points[9], static_cast<double>(1.1f));
}

TEST(StlBinary, RefusesALengthThatDoesNotFit) {
  EXPECT_EQ(refusal([] { readStlBinary(binaryStl(4000000000u), "part.stl"); }),
            "part.stl: announces 4000000000 triangles, that is 200000000084 bytes, but has 184");
  EXPECT_EQ(refusal([] { readStlBinary("short", "part.stl"); }), "part.stl: too short for an STL file");
}

TEST(StlBinary, RefusesNoTriangles) {
  EXPECT_EQ(refusal([] { readStlBinary(binaryStl(0).substr(0, 84), "part.stl"); }),
            "part.stl: no triangle in the file");
}

TEST(MeshFile, RecognisesFormatsByContentNotByName) {
  const ScratchFolder folder;
  EXPECT_EQ(readMeshFile(folder.write("a", twoTriangles)).elements(), 2u);
  EXPECT_EQ(readMeshFile(folder.write("b.dat", binaryStl(2))).elements(), 2u);
  EXPECT_EQ(readMeshFile(folder.write("c.stl", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")).elements(), 1u);
}

TEST(MeshFile, TakesABinaryFileWhoseTitleBeginsWithSolid) {
  const ScratchFolder folder;
  EXPECT_EQ(readMeshFile(folder.write("a.stl", binaryStl(2, "solid facet"))).elements(), 2u);
}

TEST(MeshFile, RefusesWhatItCannotRecognise) {
  const ScratchFolder folder;
  const std::string noise = folder.write("noise.obj", std::string("\x7f\0\x01v 0 0 0\n", 12));
  EXPECT_EQ(
      refusal([&] { readMeshFile(noise); }),
      noise +
          ": the content is of no format that is read (STL, STEP, IGES, BREP, PLY, OFF, VTU, "
          "VTK, Gmsh MSH, MED, LS-DYNA keyword, Abaqus input, Nastran bulk data, mesh deck, Wavefront OBJ)");
  const std::string empty = folder.write("empty.obj", "");
  EXPECT_EQ(refusal([&] { readMeshFile(empty); }), empty + ": the file is empty");
}

TEST(MeshFile, SaysWhyAFileCannotBeRead) {
  const ScratchFolder folder;
  EXPECT_EQ(refusal([&] { readMeshFile(folder.file("none.obj")); }),
            "cannot read " + folder.file("none.obj") + ": No such file or directory");
  EXPECT_EQ(refusal([&] { readMeshFile(folder.path()); }),
            "cannot read " + folder.path() + ": Is a directory");
}
