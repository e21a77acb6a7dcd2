// The command line; see the header.
#include "command/arguments.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "command/help_examples.hpp"
#include "command/solve_options.hpp"
#include "system/failure.hpp"

namespace host {

namespace {

constexpr int mostThreads = 64;  // that the library takes

constexpr const char* partDescription =
    "the part, however it lies (drawn along z for --path fixed): a mesh (OBJ, STL, Nastran, Abaqus, LS-DYNA, "
    "PLY, OFF, VTU, VTK, MSH, MED), a "
    "mesh deck, or a CAD file (STEP, IGES, BREP)";

void describeHold(CLI::App* command, std::string& hold) {
  command
      ->add_option(
          "--hold", hold,
          "unknowns that are held: auto; x0, y0 or x0,y0 (symmetry planes); deck (what the mesh deck "
          "holds); or a file with one equation number per line (2n-1 is u, 2n is v of node n); "
          "default: deck for a mesh deck, else auto")
      ->type_name("auto|x0|y0|x0,y0|deck|FILE");
}

void describeLargest(CLI::App* command, bool& largest) {
  command->add_flag("--largest", largest, "of several pieces take the one with the most triangles");
}

void describeReading(CLI::App* command, ReadOptions& reading) {
  const char* group = "Reading the part";
  const CLI::Range fraction(0.0, 1.0), positive(1e-9, 1e9);
  command
      ->add_option("--part", reading.parts,
                   "of a finite-element file, the number or name of the part to take; several with commas")
      ->delimiter(',')
      ->type_name("ID")
      ->group(group);
  command->add_option("--skin", reading.skin, "of a thin solid, the skin that is taken")
      ->check(CLI::IsMember({"outer", "inner", "auto"}))
      ->capture_default_str()
      ->group(group);
  command
      ->add_option(
          "--fibre", reading.fibre,
          "of a thin solid, where the neutral fibre lies, from the inside of a bend in thicknesses (the "
          "K-factor)")
      ->check(fraction)
      ->capture_default_str()
      ->group(group);
  command
      ->add_option("--mesh", reading.meshSize,
                   "of a CAD file, the longest edges of the mesh, in the part's unit; default: from its area")
      ->check(positive)
      ->type_name("SIZE")
      ->group(group);
  command
      ->add_option("--weld", reading.weld,
                   "make one of border nodes that lie closer together, in the part's unit")
      ->check(positive)
      ->type_name("TOL")
      ->group(group);
  command
      ->add_option("--remesh", reading.remesh,
                   "mesh the part anew with edges of that length, in the part's unit")
      ->check(positive)
      ->type_name("SIZE")
      ->group(group);
  command
      ->add_option("--import-limit", reading.importLimit,
                   "seconds that reading a CAD or foreign file may take")
      ->check(positive)
      ->capture_default_str()
      ->type_name("SECONDS")
      ->group(group);
}

void describeMaterialsFile(CLI::App* command, std::string& file) {
  command
      ->add_option("--materials", file,
                   "own materials, in the form that \"tornwalzen materials --json\" prints")
      ->type_name("FILE.json");
}

void describeMaterial(CLI::App* solve, SolveOptions& options) {
  solve
      ->add_option("--material", options.material,
                   "flow curve 0, 1 or 2 (plastic work), 10 (geometric, no material), or a name that "
                   "\"tornwalzen materials\" lists")
      ->type_name("0|1|2|10|NAME")
      ->capture_default_str();
  describeMaterialsFile(solve, options.materials);
  CLI::Option* curve = solve->add_option("--curve", options.curve,
                                         "own flow curve in place of the material's: a table of plastic "
                                         "strain and flow stress (MPa), 3 to 49 points");
  curve->type_name("FILE.csv");
  solve
      ->add_option(
          "--law", options.law,
          "own flow curve as a hardening law, stresses in MPa: hollomon:K=,n= swift:K=,e0=,n= "
          "ludwik:s0=,K=,n= voce:s0=,ss=,rate= hockett-sherby:s0=,ss=,rate=,n= (to= the strain it is "
          "tabulated to)")
      ->type_name("swift:K=549.03,e0=0.007,n=0.22")
      ->excludes(curve);
  solve->add_option("--r", options.r, "mean normal anisotropy of the sheet")->capture_default_str();
}

void describeMethod(CLI::App* solve, SolveOptions& options) {
  solve
      ->add_option("--path", options.path,
                   "the way to the blank: sure, straight to the equilibrium, whatever way the part lies; or "
                   "fixed, by load increments from a development of its projection along z")
      ->check(CLI::IsMember({"sure", "fixed"}))
      ->capture_default_str();
  solve
      ->add_option("--energy", options.energy,
                   "the area that weighs an element's energy: its place on the part or in the blank")
      ->check(CLI::IsMember({"part", "blank"}))
      ->capture_default_str();
  solve
      ->add_option(
          "--tolerance", options.tolerance,
          "factors of the gradient tolerance, of the final increment and of those before it, above 0 and "
          "at most 1; default: 0.001,1, and where that does not converge the run is repeated with "
          "0.001,0.1 and 0.001,0.01")
      ->type_name("FINAL[,PATH]");
  solve
      ->add_option("--threads", options.threads,
                   "threads to work on; the results are the same for every number; default: one per core")
      ->check(CLI::Range(1, mostThreads))
      ->type_name("N");
  solve->add_option("--unit", options.unit, "unit of the part's coordinates and of the results")
      ->check(CLI::IsMember({"mm", "cm", "m", "inch"}))
      ->capture_default_str();
}

void describePress(CLI::App* solve, PressOptionTexts& press) {
  const char* group = "Press";
  const auto option = [&](const char* name, std::string& text, const char* type, const char* words) {
    return solve->add_option(name, text, words)->type_name(type)->group(group);
  };
  option("--model", press.model, "press|fixed",
         "press: the work of deformation itself, with what is known of the press; fixed: half its square; "
         "default: "
         "press where --thickness and a curve or law in MPa are given")
      ->check(CLI::IsMember({"press", "fixed"}));
  option("--thickness", press.thickness, "MM",
         "thickness of the sheet in mm, whatever the unit (default: measured on a thin solid)");
  option("--young", press.young, "MPA", "Young's modulus (default 206000)");
  option("--planar-r", press.planarR, "R0,R45,R90",
         "anisotropy along, diagonal and across the rolling direction");
  option("--rolling", press.rolling, "DEGREES", "rolling direction, from the blank's u axis");
  option("--mu", press.mu, "MU|PUNCH,DIE", "coefficients of friction; the binder's is the die's");
  option("--binder", press.binder, "NEWTON", "binder force on the part as meshed: a quarter takes a quarter");
  option("--flange", press.flange, "auto|FILE",
         "what the binder presses on: auto, the largest nearly flat area at the rim, or a file of element "
         "numbers; "
         "default with --binder: auto");
  solve
      ->add_option("--bead", press.beads,
                   "a draw bead along the nodes that the file names, and what it holds back per length; may "
                   "be repeated")
      ->type_name("FILE:N/MM")
      ->group(group);
  option("--bending", press.bending, "auto|off|released|kept",
         "bending: its own work taken off (released: developable parts stay exact) or kept (nearer on drawn "
         "parts)")
      ->check(CLI::IsMember({"auto", "off", "released", "kept"}));
  option("--edge", press.edge, "auto|on|off", "free edges bear no traction")
      ->check(CLI::IsMember({"auto", "on", "off"}));
  option("--mesh-side", press.meshSide, "middle|punch|die", "side of the sheet that the mesh shows")
      ->check(CLI::IsMember({"middle", "punch", "die"}));
  option("--punch", press.punch, "below|above", "side that the punch comes from")
      ->check(CLI::IsMember({"below", "above"}));
}

void describeShop(CLI::App* solve, ShopOptions& options) {
  solve
      ->add_option("--flc", options.flc,
                   "limit curve: a table of minor and major strain, logarithmic or, with % in its heading, "
                   "engineering strain in percent; or the formula for mild steels (default where it holds)")
      ->type_name("FILE.csv|keeler");
  solve->add_option("--n", options.n, "hardening exponent for that formula (default: the material's)")
      ->check(CLI::Range(0.001, 1.0));
  solve
      ->add_option("--dxf-tolerance", options.dxfTolerance,
                   "largest distance in mm between the drawn lines and arcs and the mesh's outline")
      ->check(CLI::Range(0.0001, 10.0))
      ->type_name("MM")
      ->capture_default_str();
  solve->add_option("--dxf", options.dxf, "release of blank.dxf")
      ->check(CLI::IsMember({"2000", "12"}))
      ->capture_default_str();
  solve
      ->add_option(
          "--web", options.web,
          "mm of sheet between blanks and beside them: looks for the best strip, of one row and of two")
      ->check(CLI::Range(0.0, 1000.0))
      ->type_name("MM");
  solve->add_flag("--square", options.square,
                  "stand the drawings into the smallest rectangle, a corner in 0,0");
  solve->add_flag("--bend-lines", options.bendLines, "draw on the layer BEND where the part is bent");
  solve->add_flag("--csv", options.csv, "write tables of triangles and nodes too");
}

CLI::App* describeSolve(CLI::App& app, SolveOptions& options) {
  CLI::App* solve = app.add_subcommand("solve", "Find the flat blank of a formed part.");
  solve->add_option("PART", options.part, partDescription)->required();
  describeMaterial(solve, options);
  describeMethod(solve, options);
  describePress(solve, options.press);
  describeHold(solve, options.hold);
  solve->add_option("--out", options.out, "folder for the results (default: the part's name with _blank)")
      ->type_name("DIR");
  solve
      ->add_option("--outcome", options.outcome,
                   "file to write that tells how the run ended, however that was")
      ->type_name("FILE.json");
  solve->add_flag("--force", options.force, "replace files in that folder that are not results of this part");
  describeLargest(solve, options.largest);
  describeReading(solve, options.reading);
  solve->add_flag(
      "--report,!--no-report", options.report,
      "write report.html, a page with part and blank in 3-D that needs no network (default), or leave it");
  solve->add_flag("--compress", options.compress,
                  "compress part.vtu and blank.vtu to about half their size, which takes longer");
  solve->add_flag("--eben", options.eben,
                  "write the blank as eben.t51 too, in mm (up to 99999 nodes and triangles)");
  solve->add_flag("--eben-start", options.ebenStart, "write the starting blank as eben_start.t51 too, in mm");
  describeShop(solve, options.shop);
  CLI::Option* verbose =
      solve->add_flag("--verbose", options.verbose, "show the library's messages, and where the time went");
  solve->add_flag("--quiet", options.quiet, "print nothing but refusals and failures")->excludes(verbose);
  solve->add_flag("--json", options.json, "print the summary as one JSON object in place of the table");
  solve->footer(solveExamples);
  return solve;
}

CLI::App* describeCheck(CLI::App& app, CheckOptions& options) {
  CLI::App* check = app.add_subcommand("check", "Tell whether a run of the part will go well.");
  check->add_option("PART", options.part, partDescription)->required();
  check
      ->add_option("--draw", options.draw,
                   "direction that the part is drawn along; auto looks for that with the least undercut")
      ->type_name("auto|X,Y,Z")
      ->capture_default_str();
  check->add_option("--unit", options.reading.unit, "unit of the part's coordinates")
      ->check(CLI::IsMember({"mm", "cm", "m", "inch"}))
      ->capture_default_str();
  check
      ->add_option("--out", options.out,
                   "grid to write for ParaView, with an array per finding that selects its triangles")
      ->type_name("FILE.vtu");
  describeLargest(check, options.largest);
  describeReading(check, options.reading);
  check->add_flag("--quiet", options.quiet, "print nothing: the exit status tells");
  check->add_flag("--json", options.json, "print one JSON object in place of the page");
  check->footer(checkExamples);
  return check;
}

CLI::App* describeDeck(CLI::App& app, DeckOptions& options) {
  CLI::App* deck = app.add_subcommand("deck", "Write a part and its held unknowns as a mesh deck.");
  deck->add_option("PART", options.part,
                   std::string(partDescription) + "; without it, the name of a deck is asked for");
  deck->add_option("-o,--output", options.out, "deck to write; without it, only tell what the part holds")
      ->type_name("FILE");
  describeHold(deck, options.hold);
  describeLargest(deck, options.largest);
  describeReading(deck, options.reading);
  deck->footer(deckExamples);
  return deck;
}

CLI::App* describeMaterials(CLI::App& app, MaterialsOptions& options) {
  CLI::App* materials =
      app.add_subcommand("materials", "List the materials and where their numbers come from.");
  describeMaterialsFile(materials, options.file);
  materials->add_flag("--quiet", options.quiet,
                      "print nothing: the exit status tells whether FILE.json is taken");
  materials->add_flag("--json", options.json, "print the program's own materials as a file");
  materials->footer(materialsExamples);
  return materials;
}

}  // namespace

Arguments readArguments(const std::vector<std::string>& words) {
  Arguments arguments;
  std::vector<const char*> pointers;  // as the parser wants them
  for (const std::string& word : words) pointers.push_back(word.c_str());
  CLI::App app("Inverse analysis of sheet-metal forming: from the finished part to its flat blank.",
               "tornwalzen");
  app.set_version_flag("--version", "tornwalzen " TORNWALZEN_VERSION);
  app.allow_windows_style_options(false);  // a path may begin with a slash
  app.require_subcommand(1);
  app.footer(programExamples);
  describeSolve(app, arguments.solve);
  const CLI::App* check = describeCheck(app, arguments.check);
  const CLI::App* deck = describeDeck(app, arguments.deck);
  const CLI::App* materials = describeMaterials(app, arguments.materials);
  const CLI::App* study = describeStudy(app, arguments.study);
  const CLI::App* collect = describeCollect(app, arguments.collect);
  try {
    app.parse(static_cast<int>(pointers.size()), pointers.data());
    if (check->parsed()) arguments.command = Command::check;
    if (deck->parsed()) arguments.command = Command::deck;
    if (materials->parsed()) arguments.command = Command::materials;
    if (study->parsed()) arguments.command = Command::study;
    if (collect->parsed()) arguments.command = Command::collect;
    arguments.study.program = words[0];
    arguments.solve.words.assign(words.begin() + 2, words.end());  // a command is required
    arguments.solve.rGiven = app.get_subcommand("solve")->count("--r") > 0;
    arguments.solve.reading.unit = arguments.solve.unit;
  } catch (const CLI::ParseError& outcome) {
    arguments.done = true;
    arguments.status = app.exit(outcome) == 0 ? exitConverged : exitRefused;
  }
  return arguments;
}

OptionKind solveOption(const std::string& name) {
  CLI::App app;
  SolveOptions options;
  const CLI::Option* option = describeSolve(app, options)->get_option_no_throw(name);
  if (option == nullptr) return OptionKind::unknown;
  return option->get_items_expected_max() == 0 ? OptionKind::flag : OptionKind::value;
}

std::string solveComplaint(const std::vector<std::string>& words) {
  CLI::App app;
  SolveOptions options;
  describeSolve(app, options);
  std::vector<std::string> reversed(words.rbegin(), words.rend());  // as the parser wants them
  reversed.push_back("solve");
  try {
    app.parse(reversed);
    return "";
  } catch (const CLI::ParseError& outcome) {
    return outcome.what();
  }
}

}  // namespace host
