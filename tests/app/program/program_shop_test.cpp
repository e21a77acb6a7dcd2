// The files for the workshop, from whole runs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/mesh/sample_meshes.hpp"
#include "app/program/program.hpp"

using testing::HasSubstr;
using testing::Not;

namespace {

nlohmann::json summaryOf(const ScratchFolder& folder, const std::string& run) {
  return nlohmann::json::parse(folder.read(run + "/summary.json"));
}

std::string pythonWithDxf(const ScratchFolder& folder) {
  for (const std::string python : {"python3", "/usr/bin/python3"})
    if (shell(folder, python + " -c 'import ezdxf, numpy, shapely'").status == 0) return python;
  return "";
}

std::string placement(const nlohmann::json& summary) {
  std::ostringstream text;
  text.precision(17);
  text << " " << summary["drawing"]["turned_by_deg"].get<double>() << " "
       << summary["drawing"]["then_shifted_x_mm"].get<double>() << " "
       << summary["drawing"]["then_shifted_y_mm"].get<double>();
  return text.str();
}

}  // namespace

TEST(ProgramShop, TheDrawingIsCleanAndFollowsTheBlank) {
  const ScratchFolder folder;
  const std::string python = pythonWithDxf(folder);
  if (python.empty()) GTEST_SKIP() << "no python3-ezdxf, python3-shapely";
  folder.write("pipe.obj", halfPipeObj(60, 24));
  struct Case {
    std::string options, tolerance;
  };
  for (const Case& c :
       {Case{"", "0.05"}, Case{"--square --bend-lines", "0.05"},
        Case{"--dxf 12 --dxf-tolerance 0.4 --square", "0.4"}, Case{"--dxf-tolerance 0.001", "0.001"}}) {
    const Outcome run = tornwalzen(folder, "solve pipe.obj --out r --thickness 1.5 " + c.options);
    ASSERT_EQ(run.status, 0) << run.err;
    const Outcome check =
        shell(folder, python + " " + quoted(TORNWALZEN_DXF_CHECK) + " r/blank.dxf r/blank.obj " +
                          c.tolerance + " 1" + placement(summaryOf(folder, "r")));
    EXPECT_EQ(check.status, 0) << c.options << "\n" << check.out << check.err;
  }
}

TEST(ProgramShop, HolesOfARealPanelAreInTheDrawing) {
  const ScratchFolder folder;
  const std::string part = TORNWALZEN_PARTS "/sheet_panel_13holes.obj", python = pythonWithDxf(folder);
  if (!std::filesystem::exists(part)) GTEST_SKIP() << "no folder of real parts";
  const Outcome run = tornwalzen(folder, "solve " + quoted(part) + " --square --out r");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("outline             13 holes; "));
  const auto summary = summaryOf(folder, "r");
  EXPECT_EQ(summary["drawing"]["holes"], 13);
  EXPECT_EQ(summary["drawing"]["crossings"], 0);
  if (python.empty()) GTEST_SKIP() << "no python3-ezdxf, python3-shapely";
  const Outcome check = shell(folder, python + " " + quoted(TORNWALZEN_DXF_CHECK) +
                                          " r/blank.dxf r/blank.obj 0.05 1" + placement(summary));
  EXPECT_EQ(check.status, 0) << check.out << check.err;
}

TEST(ProgramShop, InchesAreDrawnInMillimetres) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(20, 8));
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --square --out mm").status, 0);
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --unit cm --square --out cm").status, 0);
  const auto width = [&](const std::string& run) {
    const std::string svg = folder.read(run + "/blank.svg");
    const std::size_t at = svg.find("width=\"") + 7;
    EXPECT_THAT(svg.substr(at, svg.find('"', at) - at), testing::EndsWith("mm"));
    return std::stod(svg.substr(at));
  };
  EXPECT_NEAR(width("cm"), 10.0 * width("mm"), 0.2);  // the lines and arcs of either hold 0.05 mm
}

TEST(ProgramShop, TablesCarryThicknessInMillimetres) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(10, 4));
  ASSERT_EQ(tornwalzen(folder, "solve pipe.obj --csv --thickness 2 --out r").status, 0);
  std::istringstream triangles(folder.read("r/triangles.csv"));
  std::string heading, row;
  std::getline(triangles, heading);
  EXPECT_EQ(heading,
            "element_number_in_file,node_1,node_2,node_3,thickness_ratio_Ablank_by_Apart,"
            "thickness_strain_ln_Ablank_by_Apart,thickness_mm,strain_major_log,strain_minor_log,"
            "strain_equivalent,flow_stress_MPa,minus_E11_plus_E22,density,smallest_angle_deg,part_area_mm2,"
            "blank_area_mm2");
  int rows = 0;
  while (std::getline(triangles, row)) {
    std::istringstream cells(row);
    std::vector<double> values;
    for (std::string cell; std::getline(cells, cell, ',');) values.push_back(std::stod(cell));
    ASSERT_EQ(values.size(), 16u);
    EXPECT_DOUBLE_EQ(values[6], 2.0 * values[4]);
    EXPECT_NEAR(values[6], 2.0 * values[15] / values[14], 1e-12);
    ++rows;
  }
  EXPECT_EQ(rows, 80);
  std::istringstream nodes(folder.read("r/nodes.csv"));
  std::getline(nodes, heading);
  EXPECT_EQ(heading,
            "node_number_in_file,part_x_mm,part_y_mm,part_z_mm,u_blank_mm,v_blank_mm,"
            "thickness_strain_node_mean,held_u,held_v");
  EXPECT_THAT(folder.read("r/part.vtu"), HasSubstr("Name=\"thickness_mm\""));
  EXPECT_EQ(summaryOf(folder, "r")["thickness_mm"], 2.0);
}

TEST(ProgramShop, AHostileNameStaysText) {
  const ScratchFolder folder;
  const std::string name = "a<script>alert(1)<%%u\n 0\nEOF\xff.obj";
  folder.write(name, halfPipeObj(10, 4));
  const Outcome run = tornwalzen(folder, "solve " + quoted(name) + " --out r");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(folder.read("r/blank.svg"), Not(HasSubstr("<script>")));
  EXPECT_THAT(folder.read("r/report.html"), Not(HasSubstr("<script>alert")));
  EXPECT_THAT(folder.read("r/blank.dxf"),
              HasSubstr("\n  1\na<script>alert(1)<\\U+0025\\U+0025u? 0?EOF?.obj\n"));
  const std::string python = pythonWithDxf(folder);
  if (python.empty()) GTEST_SKIP() << "no python3-ezdxf, python3-shapely";
  EXPECT_EQ(shell(folder, python + " -c 'import ezdxf; a = ezdxf.readfile(\"r/blank.dxf\").audit(); "
                                   "exit(len(a.errors) + len(a.fixes))'")
                .status,
            0);
}

TEST(ProgramShop, AHostileMaterialStaysText) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(10, 4));
  folder.write(
      "m.json",
      R"({"format": "tornwalzen materials 1", "materials": [{"name": "<script>alert(1)</script>",)"
      R"("standard": "</script><script>alert(2)</script>", "class": "mild steel", "limit_curve": "keeler",)"
      R"("values": {"n": {"value": 0.2, "source": "<img src=x onerror=alert(3)>"},)"
      R"("density_kg_per_m3": {"value": 7850, "source": "]]>"}}}]})");
  const Outcome run = tornwalzen(folder,
                                 "solve pipe.obj --materials m.json --material '<script>alert(1)</script>' "
                                 "--thickness 1 --web 3 --out r --outcome r/outcome.json");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(summaryOf(folder, "r")["material_by_name"]["name"], "<script>alert(1)</script>");
  ASSERT_EQ(tornwalzen(folder, "collect r").status, 0);
  for (const char* page : {"report.html", "overview.html", "blank.svg", "fld.svg", "strip.svg"}) {
    EXPECT_THAT(folder.read(std::string("r/") + page), Not(HasSubstr("<script>alert"))) << page;
    EXPECT_THAT(folder.read(std::string("r/") + page), Not(HasSubstr("<img"))) << page;
  }
}

TEST(ProgramShop, DrawingsGoIntoFoldersOfAnyNameOrAreRefused) {
  const ScratchFolder folder;
  folder.write("t\u00fcr gro\u00df.obj", halfPipeObj(10, 4));
  const std::string part = quoted("t\u00fcr gro\u00df.obj");
  for (const char* name : {"a blank", "\u00e4 \u00f6", "down/and down", "-dash", "tick'", "<b>"}) {
    const Outcome run = tornwalzen(folder, "solve " + part + " --out=" + quoted(name));
    EXPECT_EQ(run.status, 0) << name << run.err;
    EXPECT_TRUE(folder.names(name).contains("blank.dxf")) << name;
    EXPECT_THAT(folder.read(std::string(name) + "/blank.dxf"), HasSubstr("t\\U+00FCr gro\\U+00DF.obj"));
  }
  // what stands where the drawing goes is no file: told, and nothing in it is touched
  std::filesystem::create_directories(folder.file("r/blank.dxf"));
  folder.write("r/blank.dxf/mine", "mine");
  const Outcome refused = tornwalzen(folder, "solve " + part + " --out r --force");
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.err, HasSubstr("tornwalzen: cannot remove r/blank.dxf, which is of an earlier run: "));
  EXPECT_EQ(folder.read("r/blank.dxf/mine"), "mine");
  EXPECT_FALSE(folder.names("r").contains("summary.json"));
  const std::string longest(300, 'a');
  EXPECT_EQ(tornwalzen(folder, "solve " + part + " --out " + longest).err,
            "tornwalzen: cannot make the folder " + longest + ": File name too long\n");
}

// A strip of more than a turn lies over itself when it is unrolled. Nobody must find a drawing to cut it by, not even one
// that an earlier run left.
TEST(ProgramShop, ABlankThatCrossesItselfIsNotDrawn) {
  const ScratchFolder folder;
  const double slope = 0.6;
  // a cone's strip: its blank is an annular strip of the angle 2 pi turns sin(half opening) > 2 pi
  const double half = 1.2, turns = 1.2;
  folder.write("cone.obj", gridObj(120, 3, [=](int i, int j) {
                 const double angle = 2 * pi * turns * i / 120, s = 60.0 + 5.0 * j + slope * angle;
                 std::ostringstream xyz;
                 xyz.precision(17);
                 xyz << s * std::sin(half) * std::cos(angle) << " " << s * std::sin(half) * std::sin(angle)
                     << " " << -s * std::cos(half);
                 return xyz.str();
               }));
  const std::string command = "solve cone.obj --material 10 --web 2 --out r";
  tornwalzen(folder, command);
  for (const char* name : {"r/blank.dxf", "r/blank.svg", "r/strip.svg"}) folder.write(name, "of yesterday");
  const Outcome run = tornwalzen(folder, command);
  EXPECT_NE(run.status, 0);
  const auto summary = summaryOf(folder, "r");
  ASSERT_GT(summary["drawing"]["crossings"], 0) << run.out << run.err << "this part no longer crosses itself";
  EXPECT_THAT(run.err, HasSubstr("warning: no drawing of the blank was written: "));
  EXPECT_THAT(run.out, HasSubstr("drawings            none: "));
  EXPECT_TRUE(summary["drawing"]["why_none"].is_string());
  EXPECT_TRUE(summary["strip"]["why_none"].is_string());
  for (const char* name : {"blank.dxf", "blank.svg", "strip.svg"})
    EXPECT_FALSE(folder.names("r").contains(name)) << name;
}

// A flat part does not converge by the rules of the fixed path.
TEST(ProgramShop, ARunThatDoesNotConvergeLeavesNoDrawing) {
  const ScratchFolder folder;
  folder.write("plate.obj", plateObj(4, 4));
  ASSERT_EQ(tornwalzen(folder, "solve plate.obj --out r").status, 0);
  EXPECT_TRUE(folder.names("r").contains("blank.dxf"));
  const Outcome run = tornwalzen(folder, "solve plate.obj --path fixed --out r");
  ASSERT_EQ(run.status, 2) << run.out << run.err;
  EXPECT_THAT(run.out, HasSubstr("drawings            none: the run did not converge\n"));
  EXPECT_FALSE(folder.names("r").contains("blank.dxf"));
  EXPECT_FALSE(folder.names("r").contains("blank.svg"));
}

// A closed thin solid: a tube's wall of 2 mm, unrolled to 1 mm under its outside.
TEST(ProgramShop, AThicknessMeasuredOnThePartIsTheDefault) {
  const ScratchFolder folder;
  folder.write("solid.obj", halfPipeSolidObj(60, 12, 2.0));
  const std::string law = " --law swift:K=500,e0=0.01,n=0.2";
  const Outcome run = tornwalzen(folder, "solve solid.obj --material DC04 --out r");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("sheet               1.9995 mm, DC04 (measured on the part)\n"));
  auto summary = summaryOf(folder, "r");
  EXPECT_EQ(summary["thickness_is"], "measured on the part");
  EXPECT_NEAR(summary["thickness_mm"], 2.0, 2e-3);  // of the chords of a polygon
  const double perArea = 7850e-9 * summary["thickness_mm"].get<double>();
  EXPECT_NEAR(summary["weight_kg"], perArea * summary["blank_area_mm2"].get<double>(), 1e-9);
  EXPECT_THAT(summary["forming_limit"]["basis"].get<std::string>(), HasSubstr("t 1.9995 mm"));
  EXPECT_EQ(summary["model"], "fixed");
  ASSERT_EQ(tornwalzen(folder, "solve solid.obj --material DC04 --out r" + law).status, 0);
  summary = summaryOf(folder, "r");
  EXPECT_EQ(summary["model"], "press");
  EXPECT_EQ(summary["press"]["thickness_mm"], summary["thickness_mm"]);
  const Outcome other = tornwalzen(folder, "solve solid.obj --material DC04 --thickness 1.5 --out r" + law);
  ASSERT_EQ(other.status, 0) << other.err;
  EXPECT_THAT(
      other.err,
      HasSubstr(
          "warning: --thickness says 1.5 mm, the part measures 1.9995 mm; that of the option is taken"));
  summary = summaryOf(folder, "r");
  EXPECT_EQ(summary["thickness_is"], "given");
  EXPECT_EQ(summary["press"]["thickness_mm"], 1.5);
}

TEST(ProgramShop, NumbersThatAreNoneAreRefused) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(10, 4));
  EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --thickness nan").err,
            "tornwalzen: --thickness wants millimetres from 0.01 to 100, not \"nan\"\n");
  EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --thickness -1").status, 1);
  EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --dxf-tolerance 0").status, 1);
  EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --dxf 2007").status, 1);
  EXPECT_TRUE(folder.names().contains("pipe.obj"));
  EXPECT_EQ(folder.names().size(), 1u);
}

TEST(ProgramShop, AMaterialByNameLimitsTheStrains) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(20, 8));
  const Outcome run = tornwalzen(folder, "solve pipe.obj --material DC04 --thickness 1 --csv --out r");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.err, HasSubstr("DC04 has no flow curve with a source: built-in curve 1 stands in"));
  EXPECT_THAT(run.err, HasSubstr("a minimum of r90, 1.6: the run is made with r = 1"));
  // a developed pipe is hardly strained
  EXPECT_THAT(run.out,
              HasSubstr("forming limit       split 0 (0.0 %), marginal 0 (0.0 %), wrinkling tendency 0 "
                        "(0.0 %), safe 320 (100.0 %)\n"));
  const auto summary = summaryOf(folder, "r");
  EXPECT_EQ(summary["material_by_name"]["r90"]["bound"], "minimum");
  EXPECT_EQ(summary["material_by_name"]["n"]["source"], "EN 10130:2006, n90, thickness from 0.5 mm");
  EXPECT_EQ(summary["forming_limit"]["safe"]["triangles"], 320);
  EXPECT_NEAR(summary["forming_limit"]["safe"]["part_area_mm2"], summary["part_area_mm2"], 1e-6);
  EXPECT_THAT(folder.read("r/part.vtu"), HasSubstr("limit_zone_0safe_1marginal_2split_3wrinkling"));
  EXPECT_THAT(folder.read("r/triangles.csv"), HasSubstr(",limit_zone,limit_distance_percent,"));
  EXPECT_THAT(folder.read("r/fld.svg"), HasSubstr("safe: 320 triangles"));
}

// A pipe can be read once only.
TEST(ProgramShop, ACurveComesThroughAPipeAndInputsStay) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(10, 4));
  folder.write("curve.csv", "0,200\n0.1,300\n0.5,400\n");
  const Outcome run = shell(
      folder, "cat curve.csv | \"$TORNWALZEN\" solve pipe.obj --thickness 1 --curve /dev/stdin --out r");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(summaryOf(folder, "r")["model"], "press");
  folder.write("triangles.csv", "1\n2\n");
  const std::string press = "solve pipe.obj --thickness 1 --curve curve.csv --csv --out . --force ";
  for (const std::string input : {"--bead triangles.csv:50", "--binder 10 --flange triangles.csv"})
    EXPECT_THAT(tornwalzen(folder, press + input).err,
                HasSubstr("triangles.csv would be replaced, but it is read as triangles.csv"))
        << input;
  EXPECT_EQ(folder.read("triangles.csv"), "1\n2\n");
}

TEST(ProgramShop, ALimitCurveFromAFileAndItsRefusals) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(10, 4));
  folder.write("flc.csv", "minor,major\n-0.1,0.3\n0,0.2\n");
  const Outcome run = tornwalzen(folder, "solve pipe.obj --flc flc.csv --out r");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("--flc flc.csv, logarithmic strains\n"));
  folder.write("bad.csv", "0,0.3\n-1,0.2\n");
  EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --flc bad.csv").err,
            "tornwalzen: --flc bad.csv, line 2: the minor strain is not larger than the one before it\n");
  EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --flc keeler").err,
            "tornwalzen: --flc keeler: no material by name; --flc FILE gives a limit curve\n");
  EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --material DC04 --n nan").err,
            "tornwalzen: --n wants a finite number\n");
}

TEST(ProgramShop, MaterialsAreListed) {
  const ScratchFolder folder;
  const Outcome list = tornwalzen(folder, "materials");
  EXPECT_EQ(list.status, 0);
  EXPECT_THAT(list.out, HasSubstr("DC04                mild steel, 1.0338, EN 10130:2006\n"));
  folder.write("own.json", tornwalzen(folder, "materials --json").out);
  EXPECT_THAT(tornwalzen(folder, "materials --materials own.json").out, HasSubstr("(own.json)"));
  folder.write("bad.json", "{\"format\": 1");
  EXPECT_EQ(tornwalzen(folder, "materials --materials bad.json").status, 1);
  folder.write("pipe.obj", halfPipeObj(10, 4));
  EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --materials bad.json").status, 1);
  EXPECT_THAT(tornwalzen(folder, "solve pipe.obj --material 3").err,
              HasSubstr("there is no material \"3\"; known are 0, 1, 2, 10, DC01"));
}

TEST(ProgramShop, WeightAndStripOfADevelopedPipe) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(60, 24));  // a blank of 78.54 by 40 mm
  const Outcome run = tornwalzen(folder, "solve pipe.obj --material DC04 --thickness 1.5 --web 3 --out r");
  ASSERT_EQ(run.status, 0) << run.err;
  const auto summary = summaryOf(folder, "r");
  EXPECT_NEAR(summary["weight_kg"], 78.54 * 40 * 1.5 * 7850e-9, 1e-5);
  EXPECT_NEAR(summary["rectangle_utilisation"], 1.0, 1e-3);
  const auto& row = summary["strip"]["one_row"];
  EXPECT_NEAR(row["pitch_mm"], 43.0, 0.1);
  EXPECT_NEAR(row["strip_width_mm"], 84.54, 0.1);
  EXPECT_NEAR(row["utilisation"], 78.54 * 40 / (43.0 * 84.54), 0.004);
  EXPECT_NEAR(summary["strip"]["two_rows_turned_180_deg"]["utilisation"], 2 * 78.54 * 40 / (43.0 * 166.08),
              0.004);
  EXPECT_THAT(run.out, HasSubstr("weight              0.037 kg (7850 kg/m3)\n"));
  EXPECT_THAT(run.out, HasSubstr("strip               one row: 86."));
  EXPECT_THAT(folder.read("r/strip.svg"), HasSubstr("two rows turned by 180 degrees: "));
  EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --web nan").err, "tornwalzen: --web wants a finite number\n");
  EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --web -2").status, 1);
}
