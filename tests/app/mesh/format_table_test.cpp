#include "mesh/format_table.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string_view>

#include "app/refusal.hpp"
#include "app/scratch_folder.hpp"
#include "mesh/mesh_file.hpp"

using namespace host;

namespace {

std::string nameOf(const std::string& content) {
  const Format* format = formatOf(content, content.size());
  return format == nullptr ? "(none)" : format->name;
}

const std::string dyna = "*KEYWORD\n*NODE\n1,0,0,0\n2,1,0,0\n3,0,1,0\n*ELEMENT_SHELL\n1,1,1,2,3\n*END\n";
const std::string abaqus = "*NODE\n1,0,0,0\n2,1,0,0\n3,0,1,0\n*ELEMENT, TYPE=S3\n1,1,2,3\n";

}  // namespace

TEST(FormatTable, RecognisesEveryFormatByItsContent) {
  EXPECT_EQ(nameOf("ISO-10303-21;\nHEADER;\n"), "STEP");
  EXPECT_EQ(nameOf(std::string(72, ' ') + "S      1\n"), "IGES");
  EXPECT_EQ(nameOf("\nDBRep_DrawableShape\n"), "BREP");
  EXPECT_EQ(nameOf("ply\nformat ascii 1.0\n"), "PLY");
  EXPECT_EQ(nameOf("OFF\n3 1 0\n"), "OFF");
  EXPECT_EQ(nameOf("<?xml version=\"1.0\"?>\n<VTKFile type=\"UnstructuredGrid\">"), "VTU");
  EXPECT_EQ(nameOf("# vtk DataFile Version 3.0\n"), "VTK");
  EXPECT_EQ(nameOf("$MeshFormat\n4.1 0 8\n"), "Gmsh MSH");
  EXPECT_EQ(nameOf(std::string("\x89HDF\r\n\x1a\n\0\0", 10)), "MED");
  EXPECT_EQ(nameOf(dyna), "LS-DYNA keyword");
  EXPECT_EQ(nameOf(abaqus), "Abaqus input");
  EXPECT_EQ(nameOf("v 0 0 0\n"), "Wavefront OBJ");
  EXPECT_EQ(nameOf("$ by hand\nGRID,1,,0.,0.,0.\n"), "Nastran bulk data");
  EXPECT_EQ(nameOf("SOL 101\nCEND\nBEGIN BULK\n"), "Nastran bulk data");
  EXPECT_EQ(nameOf("hello\n"), "(none)");
  EXPECT_EQ(nameOf(""), "(none)");
}

TEST(FormatTable, TellsTheTwoKeywordFormatsFromEachOtherAndFromNastran) {
  EXPECT_EQ(nameOf("$ a comment\n*NODE\n1,0,0,0\n*ELEMENT_SHELL\n"), "LS-DYNA keyword");
  EXPECT_EQ(nameOf("$\n*NODE\n1,0,0,0\n"), "LS-DYNA keyword");
  EXPECT_EQ(nameOf("** a comment\n*Heading\n"), "Abaqus input");
  EXPECT_EQ(nameOf("*NODE\n1,0,0,0\n*Element, type=S3\n"), "Abaqus input");
  EXPECT_EQ(nameOf("*PART, NAME=a_b\n*NODE\n"), "Abaqus input");
  EXPECT_EQ(nameOf("$ a comment\nGRID*   1\n*       0.0\nCTRIA3,1,1,1,2,3\n"), "Nastran bulk data");
}

TEST(FormatTable, KnowsAbaqusByItsKeywordsAndCommas) {
  for (const char* content :
       {"*HEADING\nA tile\n*NODE\n1, 0., 0., 0.\n",
        "*Heading\r\n** Job name: a Model name: b\r\n*Part, name=P_1\r\n",
        "** a comment first\n\n*Node\n      1,  0.,  0.,  0.\n*Element, type=S3\n1, 1, 2, 3\n",
        "*NODE, NSET=ALL_NODES\n", "*SHELL SECTION, ELSET=E_1\n"})
    EXPECT_EQ(nameOf(content), "Abaqus input") << content;
}

TEST(FormatTable, KnowsLsDynaByItsFirstKeywordItsCommentsAndItsUnderscores) {
  for (const char* content :
       {"*KEYWORD\n*NODE\n", "$ LS-DYNA keyword file\n$\n*KEYWORD\n",
        "*keyword 200000000\r\n*TITLE\r\nheading\r\n",
        "*NODE\n       1     0.0     0.0     0.0\n*ELEMENT_SHELL\n", "$# LS-DYNA\n*NODE\n"})
    EXPECT_EQ(nameOf(content), "LS-DYNA keyword") << content;
}

TEST(FormatTable, TakesOtherTextsForNeither) {
  for (const char* content : {"\n\n", "v 0 0 0\n*NODE\n", "solid a\nfacet\n", "GEOMETRIE\n*NODE\nc\n3\n",
                              "\n\n\n3\n*HEADING\n", "*", "* NODE\n", "**\n", "$\n", "*1, 2\n"})
    EXPECT_THAT(nameOf(content), testing::AnyOf("(none)", "Wavefront OBJ", "STL", "mesh deck")) << content;
}

TEST(FormatTable, EveryExtensionMeansOneFormat) {
  for (const Format& format : formatTable())
    for (const std::string_view extension : format.extensions)
      EXPECT_EQ(formatNamedBy("A B." + std::string(extension.substr(1))), &format) << extension;
  EXPECT_EQ(std::string(formatNamedBy("PART.STP")->name), "STEP");
  EXPECT_EQ(formatNamedBy("part"), nullptr);
}

TEST(MeshFile, TellsWhereTheNameMeansAnotherFormat) {
  const ScratchFolder folder;
  const Mesh mesh = readMeshFile(folder.write("part.inp", dyna));
  EXPECT_EQ(mesh.elements(), 1u);
  EXPECT_EQ(mesh.remarks[0],
            "the name means Abaqus input, but the content is LS-DYNA keyword and was read as that");
  EXPECT_TRUE(readMeshFile(folder.write("part.txt", abaqus)).remarks.empty());
}

TEST(MeshFile, RefusesPartsOfAFormatThatHasNone) {
  const ScratchFolder folder;
  const std::string path = folder.write("a.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
  EXPECT_EQ(refusal([&] {
              ReadOptions options;
              options.parts = {"1"};
              readMeshFile(path, options);
            }),
            path + ": --part: a file of format Wavefront OBJ has no parts");
}
