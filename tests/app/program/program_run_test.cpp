// Whole runs: what appears on the screen, in the files, and whether it is right.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/mesh/sample_meshes.hpp"
#include "app/program/program.hpp"

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

nlohmann::json summaryOf(const ScratchFolder& folder, const std::string& results) {
  return nlohmann::json::parse(folder.read(results + "/summary.json"));
}

std::vector<double> verticesOf(const std::string& obj) {
  std::vector<double> points;
  std::istringstream text(obj);
  for (std::string line; std::getline(text, line);)
    if (line.starts_with("v ")) {
      std::istringstream numbers(line.substr(2));
      for (double value; numbers >> value;) points.push_back(value);
    }
  return points;
}

// The system's Python has Debian's packages, another one may come first on the path. Empty: none has VTK.
std::string pythonWithVtk(const ScratchFolder& folder) {
  for (const std::string python : {"python3", "/usr/bin/python3"})
    if (shell(folder, python + " -c 'import vtkmodules.vtkIOXML'").status == 0) return python;
  return "";
}

const char* const shearedStl =
    "solid tile\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 10 0 0\nvertex 10 10 "
    "2\nendloop\nendfacet\n"
    "facet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 10 10 2\nvertex 0 10 "
    "0\nendloop\nendfacet\nendsolid\n";

}  // namespace

TEST(Run, ABentPipeUnrollsToItsRectangle) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(24, 8));
  const Outcome outcome = tornwalzen(folder, "solve pipe.obj");
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(folder.names("pipe_blank"),
              ElementsAre("blank.dxf", "blank.obj", "blank.svg", "blank.vtu", "part.vtu", "report.html",
                          "summary.json", "tornwalzen.log"));
  const auto json = summaryOf(folder, "pipe_blank");
  EXPECT_EQ(json["converged"], true);
  EXPECT_EQ(json["nodes"], 225);
  EXPECT_EQ(json["triangles"], 384);
  EXPECT_EQ(json["progress_reached"], 1.0);
  // 24 chords of the arc are shorter than it by (angle / 24)^2 / 24 of its length; the gradient tolerance
  // leaves some tenths of a millimetre
  const double exact = 24 * 2 * 30 * std::sin(75.0 / 24 * pi / 180);
  EXPECT_NEAR(json["blank_size_x_mm"], exact, 0.3);
  EXPECT_NEAR(json["blank_size_y_mm"], 40.0, 0.3);
  EXPECT_NEAR(json["blank_area_mm2"], json["part_area_mm2"].get<double>(), 0.01 * 40 * exact);
}

TEST(Run, ThePageCarriesTheRunAndIsLeftOnDemand) {
  const ScratchFolder folder;
  const std::string name = "a<script>hacked=1<!--.obj";
  folder.write(name, halfPipeObj(8, 4));
  ASSERT_EQ(tornwalzen(folder, "solve '" + name + "' --path fixed --out with").status, 0);
  ASSERT_EQ(tornwalzen(folder, "solve '" + name + "' --out without --no-report").status, 0);
  EXPECT_THAT(folder.names("without"), Not(testing::Contains("report.html")));
  const std::string page = folder.read("with/report.html"), lead = "id=\"report-data\">";
  EXPECT_THAT(page, Not(HasSubstr("<script>hacked")));
  const std::size_t begin = page.find(lead) + lead.size();
  const auto data = nlohmann::json::parse(page.substr(begin, page.find("</script>", begin) - begin));
  EXPECT_EQ(data["part"], name);
  EXPECT_EQ(data["mesh"]["triangles"], 64);
  EXPECT_EQ(data["trust"]["level"], "good");
  const auto summary = summaryOf(folder, "with");
  std::size_t iterations = 0;
  for (const auto& increment : data["convergence"]["increments"]) iterations += increment["gradient"].size();
  EXPECT_GE(iterations,
            summary["newton_iterations"]);  // a step with the factor that stands is not counted there
  EXPECT_EQ(data["convergence"]["increments"].back()["progress"], 1.0);
  EXPECT_NEAR(data["convergence"]["increments"].back()["gradient"].back(),
              summary["last_largest_gradient_mm"].get<double>(),
              1e-5 * summary["last_largest_gradient_mm"].get<double>());
}

TEST(Run, TheTableAndTheProgressAreOnTheirStreams) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(8, 4));
  const Outcome outcome = tornwalzen(folder, "solve pipe.obj --material 0 --out deep/results");
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, StartsWith("nodes               45\ntriangles           64\nblank size "));
  EXPECT_THAT(
      outcome.out,
      HasSubstr("\nresults in          deep/results\nconverged           yes\nverdict             good\n"));
  EXPECT_THAT(outcome.out, Not(HasSubstr("MAX.GRAD")));
  EXPECT_THAT(outcome.err, StartsWith("building the structure of the equations\nordering the equations\n"
                                      "laying out the factor\nlaying out the starting blank\n"));
  EXPECT_THAT(outcome.err, EndsWith("\n100 % of the part\n"));
  EXPECT_THAT(outcome.err, Not(HasSubstr("\r")));
}

TEST(Run, TheLogHoldsTheLibrarysMessagesAndVerboseShowsThem) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(8, 4));
  const Outcome outcome = tornwalzen(folder, "solve pipe.obj --path fixed --verbose --out results");
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const std::string log = folder.read("results/tornwalzen.log");
  EXPECT_THAT(log, HasSubstr("START INKRMEMENT"));
  EXPECT_THAT(log, HasSubstr("MAX.GRAD"));
  EXPECT_EQ(outcome.out.substr(0, log.size()), log);
  EXPECT_THAT(outcome.out.substr(log.size()), StartsWith("nodes "));
}

TEST(Run, NodesKeepTheirOrderAndThoseInNoTriangleTheirPlace) {
  const ScratchFolder folder;
  const std::string pipe = halfPipeObj(8, 4);
  folder.write("pipe.obj", pipe + "v 500 600 700\n");
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --out results").status, 0);
  const std::vector<double> part = verticesOf(pipe), blank = verticesOf(folder.read("results/blank.obj"));
  ASSERT_EQ(blank.size(), part.size() + 3);
  EXPECT_EQ(blank[part.size()], 500.0);
  EXPECT_EQ(blank[part.size() + 1], 600.0);
  // along the pipe every row stays where it is, up to a common shift
  for (std::size_t k = 0; k < part.size(); k += 3)
    EXPECT_NEAR(blank[k + 1] - blank[1], part[k + 1] - part[1], 0.3) << "node " << k / 3 + 1;
}

TEST(Run, TheLargestPieceAloneGivesTheSameBlank) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(8, 4));
  folder.write("two.obj", halfPipeObj(8, 4) + "v 500 0 0\nv 501 0 0\nv 500 1 0\nf 46 47 48\n");
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --out one").status, 0);
  const Outcome outcome = tornwalzen(folder, "solve two.obj --out two --largest");
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.err, StartsWith("took the largest of 2 pieces: 64 of 65 triangles\n"));
  const std::vector<double> one = verticesOf(folder.read("one/blank.obj"));
  std::vector<double> two = verticesOf(folder.read("two/blank.obj"));
  ASSERT_EQ(two.size(), one.size() + 9);
  two.resize(one.size());
  EXPECT_EQ(two, one);
}

TEST(Run, TurnedTrianglesGiveTheSameBlank) {
  const ScratchFolder folder;
  std::string turned = halfPipeObj(8, 4);
  folder.write("pipe.obj", turned);
  const std::size_t face = turned.find("f 1 2 11\n");
  ASSERT_NE(face, std::string::npos);
  folder.write("turned.obj", turned.replace(face, 9, "f 1 11 2\n"));
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --out one").status, 0);
  const Outcome outcome = tornwalzen(folder, "solve turned.obj --out two");
  ASSERT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.err, StartsWith("turned 1 triangle to the orientation of the others\n"));
  EXPECT_EQ(verticesOf(folder.read("two/blank.obj")), verticesOf(folder.read("one/blank.obj")));
}

TEST(Run, StlPartsRunToo) {
  const ScratchFolder folder;
  folder.write("tile.stl", shearedStl);
  const Outcome outcome = tornwalzen(folder, "solve tile.stl");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(summaryOf(folder, "tile_blank")["nodes"], 4);
}

TEST(Run, PathsWithBlanksAndUmlautsAreTaken) {
  const ScratchFolder folder;
  folder.write("ein Blech (groß).obj", halfPipeObj(8, 4));
  const Outcome outcome = tornwalzen(folder, "solve 'ein Blech (groß).obj' --out 'für später'");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(summaryOf(folder, "für später")["part"], "ein Blech (groß).obj");
}

TEST(Run, APartThroughAPipeIsTaken) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(8, 4));
  EXPECT_EQ(shell(folder, "cat pipe.obj | \"$TORNWALZEN\" solve /dev/stdin --out results").status, 0);
}

TEST(Run, TheSameInputGivesTheSameFiles) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(8, 4));
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --out one").status, 0);
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --out two").status, 0);
  for (const char* name : {"blank.obj", "part.vtu", "blank.vtu", "tornwalzen.log"})
    EXPECT_TRUE(folder.read(std::string("one/") + name) == folder.read(std::string("two/") + name)) << name;
}

// By load increments this pipe, turned by 45 degrees, came down crumpled.
TEST(Run, APartThatLiesAskewHasTheBlankOfThePartAsItLies) {
  const ScratchFolder folder;
  const std::string pipe = halfPipeObj(20, 8);
  folder.write("pipe.obj", pipe);
  std::vector<double> points = verticesOf(pipe);
  std::ostringstream askew;
  askew.precision(17);
  for (std::size_t k = 0; k < points.size(); k += 3)
    askew << "v " << std::sqrt(0.5) * (points[k] + points[k + 2]) << ' ' << points[k + 1] << ' '
          << std::sqrt(0.5) * (points[k + 2] - points[k]) << '\n';
  askew << pipe.substr(pipe.find("f "));
  folder.write("askew.obj", askew.str());
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --out lying").status, 0);
  const Outcome outcome = tornwalzen(folder, "solve askew.obj --out turned");
  EXPECT_EQ(outcome.status, 0) << outcome.out;
  const auto lying = summaryOf(folder, "lying"), turned = summaryOf(folder, "turned");
  EXPECT_EQ(turned["verdict"], "good");
  for (const char* figure : {"blank_rectangle_length_mm", "blank_rectangle_width_mm", "blank_area_mm2"})
    EXPECT_NEAR(turned[figure].get<double>(), lying[figure].get<double>(), 1e-6) << figure;
}

TEST(Run, AFlatPlateIsItsOwnBlankAndSaysWhyItDoesNotConverge) {
  const ScratchFolder folder;
  folder.write("plate.obj", plateObj(4, 3));
  folder.write("held", "2\n15\n16\n");  // nodes 1 and 8, between which no rounding enters the gradient
  const Outcome outcome =
      tornwalzen(folder, "solve plate.obj --path fixed --material 10 --hold held --out results");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.out, HasSubstr("converged           NO: the part is flat and is its own blank"));
  const auto json = summaryOf(folder, "results");
  EXPECT_EQ(json["converged"], false);
  EXPECT_THAT(json["reason"].get<std::string>(), StartsWith("the part is flat"));
  EXPECT_THAT(folder.read("results/blank.obj"), HasSubstr("# NOT CONVERGED: the part is flat"));
  EXPECT_THAT(folder.read("results/part.vtu"), HasSubstr("<!-- NOT CONVERGED: the part is flat"));
  EXPECT_NEAR(json["blank_area_mm2"], 1200.0, 1e-12 * 1200.0);  // rounding only
}

TEST(Run, AFlatPlateWithAFlowCurveConvergesOrSaysWhyNot) {
  // only rounding is left of the gradient, so it is up to rounding whether the line search finds descent
  for (const std::string material : {"0", "1", "2"}) {
    const ScratchFolder folder;
    folder.write("plate.obj", plateObj(4, 3));
    const Outcome outcome = tornwalzen(folder, "solve plate.obj --out results --material " + material);
    const auto json = summaryOf(folder, "results");
    EXPECT_EQ(outcome.status, json["converged"] ? 0 : 2);
    if (!json["converged"]) {
      EXPECT_THAT(json["reason"].get<std::string>(), StartsWith("the part is flat"));
    }
    EXPECT_NEAR(json["blank_area_mm2"], 1200.0, 1e-9 * 1200.0);
  }
}

// Walls of which one can only open where the other closes: the development gives up, but nothing is inverted.
TEST(Run, APartThatCannotBeDevelopedIsToldByPlaceAndWithoutStrains) {
  const ScratchFolder folder;
  folder.write("part.obj",
               "v 0 0 0\nv 10 0 0\nv 10 10 0\nv 0 10 0\nv 5.3 5 200\nf 4 1 5\nf 1 2 5\nf 2 3 5\n");
  folder.write("held", "1\n2\n3\n4\n5\n6\n7\n8\n10\n");
  const Outcome outcome = tornwalzen(folder, "solve part.obj --path fixed --hold held --out results");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(
      outcome.out,
      HasSubstr("converged           NO: the part could not be developed onto the plane: no triangle of "
                "the starting blank is inverted, but element 1 at (1.767, 5.000, 66.667) mm stayed at 2.5 "
                "% of its area, too close to a line; its nodes are held, so hold fewer unknowns there, or "
                "try --hold auto\n"));
  EXPECT_THAT(outcome.out, HasSubstr("\nblank               none\n"));
  EXPECT_THAT(outcome.out, Not(HasSubstr("strain")));
  EXPECT_TRUE(summaryOf(folder, "results")["thinnest"].is_null());
}

TEST(Run, VtkReadsTheGridsAsTheyWereMeant) {
  const ScratchFolder folder;
  const std::string python = pythonWithVtk(folder);
  if (python.empty()) GTEST_SKIP() << "skipped: no VTK for Python here (Debian: python3-vtk9)";
  folder.write("pipe.obj", halfPipeObj(8, 4));
  for (const char* more : {"", " --compress"}) {
    ASSERT_EQ(tornwalzen(folder, std::string("solve pipe.obj --out results") + more).status, 0);
    const Outcome check = shell(folder, python + " " + quoted(TORNWALZEN_VTK_CHECK) +
                                            " results/part.vtu results/blank.vtu pipe.obj results/blank.obj");
    EXPECT_EQ(check.status, 0) << more << check.out << check.err;
  }
}

TEST(RealParts, ConvergeWithAutomaticHolds) {
  for (const char* name : {"sheet_panel_13holes", "sheet_rail_channel"}) {
    const std::string part = std::string(TORNWALZEN_PARTS) + "/" + name + ".obj";
    if (!std::filesystem::exists(part)) GTEST_SKIP() << "skipped: no " << part;
    const ScratchFolder folder;
    const Outcome outcome = tornwalzen(folder, "solve " + quoted(part) + " --out results");
    EXPECT_EQ(outcome.status, 0) << name << outcome.out << outcome.err;
    EXPECT_EQ(summaryOf(folder, "results")["triangles_folded_in_blank"], 0) << name;
  }
}
