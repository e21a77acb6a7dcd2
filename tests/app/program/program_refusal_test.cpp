// What the program answers to wrong arguments and damaged parts: the sentence, the status, and no files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/mesh/sample_meshes.hpp"
#include "app/program/program.hpp"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

struct Damage {
  const char* name;
  const char* content;
  const char* sentence;
};

void PrintTo(const Damage& damage, std::ostream* stream) {
  *stream << damage.name;
}

const Damage damages[] = {
    {"Pentagon", "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 0 2 0\nf 1 2 3 5 4\n",
     "part.obj, line 6: element 1 has 5 corners; only triangles and quads are taken"},
    {"IndexOutOfRange", "v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\nf 1 3 4\n",
     "part.obj: element 2 names node 4, but the nodes run from 1 to 3"},
    {"IndexZero", "v 0 0 0\nv 1 0 0\nv 1 1 0\nf 0 2 3\n",
     "part.obj: element 1 names node 0, but the nodes run from 1 to 3"},
    {"NanCoordinate", "v 0 0 0\nv 1 nan 0\nv 1 1 0\nf 1 2 3\n",
     "part.obj: node 2 (1, nan, 0) has a coordinate that is not finite"},
    {"InfiniteCoordinate", "v 0 0 0\nv 1 0 0\nv 1 1e999 0\nf 1 2 3\n",
     "part.obj: node 3 (1, inf, 0) has a coordinate that is not finite"},
    {"ZeroArea", "v 0 0 0\nv 1 0 0\nv 2 0 0\nv 1 1 0\nf 1 2 4\nf 1 2 3\n",
     "part.obj: element 2 (nodes 1, 2, 3) has no area"},
    {"ThreeTrianglesAtAnEdge", "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 -1 0\nv 0 0 1\nf 1 2 3\nf 2 1 4\nf 1 2 5\n",
     "part.obj: the edge between node 1 (0, 0, 0) and node 2 (1, 0, 0) belongs to 3 triangles (elements 1, "
     "2, 3)"},
    {"TwoPieces", "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 5 0 0\nv 6 0 0\nv 5 1 0\nf 1 2 3\nf 4 5 6\n",
     "part.obj: the mesh has 2 pieces that no edge joins; the largest has 1 of 2 triangles and contains "
     "element 1 "
     "(--largest takes it alone); their nearest borders are 4 mm apart"},
    {"Unwelded", "v 0 0 0\nv 10 0 0\nv 0 10 0\nv 10 0 0.001\nv 10 10 0\nv 0 10 0.002\nf 1 2 3\nf 4 5 6\n",
     "part.obj: the mesh has 2 pieces that no edge joins, but node 2 (10, 0, 0) and node 4 (10, 0, 0.001) of "
     "two of them are 0.001 mm apart: the triangles are not joined. --weld TOL joins them, with a tolerance "
     "above that gap and below the shortest edge there, 10 mm"},
    {"Rubbish", "these are\nno coordinates\n",
     "part.obj: the content is of no format that is read (STL, STEP, IGES, BREP, PLY, OFF, VTU, VTK, Gmsh "
     "MSH, MED, LS-DYNA keyword, Abaqus input, Nastran bulk data, mesh deck, Wavefront OBJ)"},
    {"Empty", "", "part.obj: the file is empty"},
    {"NotANumber", "v 0 0 0\nv 1 o 0\n", "part.obj, line 2: node 2: \"o\" is not a number"},
    {"Abaqus", "*HEADING\nA block\n*NODE\n1, 0., 0., 0.\n*ELEMENT, TYPE=C3D4\n1, 1, 2, 3, 4\n",
     "part.obj, line 5: elements of type C3D4 are solids; only shells are read"},
    {"LsDyna", "*KEYWORD\n*NODE\n$ a comment\n       1             0.0             0.0             0.0\n",
     "part.obj: no shell element in the file"},
    {"CutOffStl", "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0",
     "part.obj, line 5: a coordinate expected, found the end of the file"},
};

class DamagedPart : public testing::TestWithParam<Damage> {};

}  // namespace

TEST_P(DamagedPart, IsRefusedByNameAndLeavesNoFiles) {
  const ScratchFolder folder;
  folder.write("part.obj", GetParam().content);
  const Outcome outcome = tornwalzen(folder, "solve part.obj --out results");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "tornwalzen: " + std::string(GetParam().sentence) + "\n");
  EXPECT_THAT(folder.names(), ElementsAre("part.obj"));
}

INSTANTIATE_TEST_SUITE_P(Refusals, DamagedPart, testing::ValuesIn(damages),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Arguments, HelpTellsTheOptions) {
  const ScratchFolder folder;
  const Outcome help = tornwalzen(folder, "solve --help");
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.err, "");
  for (const char* option :
       {"PART", "--material", "--hold", "auto|x0|y0|x0,y0|deck|FILE", "--out", "--largest", "--verbose"})
    EXPECT_THAT(help.out, HasSubstr(option));
  EXPECT_THAT(tornwalzen(folder, "--help").out, HasSubstr("Exit status: 0 good or doubtful, 1 refused"));
}

TEST(Arguments, VersionIsTheProjects) {
  const ScratchFolder folder;
  const Outcome version = tornwalzen(folder, "--version");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "tornwalzen " TORNWALZEN_VERSION "\n");
}

TEST(Arguments, WrongOnesAreRefused) {
  const ScratchFolder folder;
  for (const char* arguments :
       {"", "solve", "bend part.obj", "solve part.obj --material 3", "solve part.obj --material x",
        "solve part.obj --colour", "solve part.obj other.obj"}) {
    const Outcome outcome = tornwalzen(folder, arguments);
    EXPECT_EQ(outcome.status, 1) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    EXPECT_NE(outcome.err, "") << arguments;
  }
}

TEST(Arguments, AMissingPartIsNamed) {
  const ScratchFolder folder;
  const Outcome outcome = tornwalzen(folder, "solve none.obj");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "tornwalzen: cannot read none.obj: No such file or directory\n");
}

TEST(Arguments, ADistanceIsToldInTheUsersUnit) {
  const ScratchFolder folder;
  folder.write("part.obj", "v 0.1 0 0\nv 0.3 0 0\nv 0.1 0.2 0\nf 1 2 3\n");
  const Outcome outcome = tornwalzen(folder, "solve part.obj --unit m --hold x0");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err,
            "tornwalzen: --hold x0: no node lies on the plane x = 0; the nearest is 0.1 m away\n");
}

TEST(Arguments, AHoldThatDoesNotFitThePartIsRefused) {
  const ScratchFolder folder;
  folder.write("part.obj", "v 1 0 0\nv 21 0 0\nv 1 20 0\nf 1 2 3\n");
  const Outcome outcome = tornwalzen(folder, "solve part.obj --hold x0");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err,
            "tornwalzen: --hold x0: no node lies on the plane x = 0; the nearest is 1 mm away\n");
  EXPECT_THAT(folder.names(), ElementsAre("part.obj"));
}
