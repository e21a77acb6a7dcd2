// The command line; see the header.
#include "arguments.hpp"

#include <CLI/CLI.hpp>

#include "failure.hpp"

namespace host {

namespace {

constexpr const char* partDescription =
    "mesh of the part: Wavefront OBJ or STL, triangles, mm, drawn along z; or a mesh deck";

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

void describeSolve(CLI::App& app, SolveOptions& options) {
  CLI::App* solve = app.add_subcommand("solve", "Find the flat blank of a formed part.");
  solve->add_option("PART", options.part, partDescription)->required();
  solve
      ->add_option("--material", options.material,
                   "flow curve 0, 1 or 2 (plastic work), or 10 (geometric, no material)")
      ->check(CLI::IsMember({0, 1, 2, 10}))
      ->capture_default_str();
  describeHold(solve, options.hold);
  solve->add_option("--out", options.out, "folder for the results (default: the part's name with _blank)")
      ->type_name("DIR");
  describeLargest(solve, options.largest);
  solve->add_flag("--eben", options.eben,
                  "write the blank as eben.t51 too (up to 99999 nodes and triangles)");
  solve->add_flag("--eben-start", options.ebenStart, "write the starting blank as eben_start.t51 too");
  solve->add_flag("--verbose", options.verbose, "show the library's messages");
}

CLI::App* describeDeck(CLI::App& app, DeckOptions& options) {
  CLI::App* deck = app.add_subcommand("deck", "Write a part and its held unknowns as a mesh deck.");
  deck->add_option("PART", options.part,
                   std::string(partDescription) + "; without it, the name of a deck is asked for");
  deck->add_option("-o,--output", options.out, "deck to write; without it, only tell what the part holds")
      ->type_name("FILE");
  describeHold(deck, options.hold);
  describeLargest(deck, options.largest);
  return deck;
}

}  // namespace

Arguments readArguments(int argc, const char* const* argv) {
  Arguments arguments;
  CLI::App app("Inverse analysis of sheet-metal forming: from the finished part to its flat blank.",
               "tornwalzen");
  app.set_version_flag("--version", "tornwalzen " TORNWALZEN_VERSION);
  app.require_subcommand(1);
  app.footer(
      "Results of solve: blank.obj, part.vtu, blank.vtu, summary.json, tornwalzen.log.\n"
      "Exit status: 0 converged, 1 refused or not written, 2 not converged, 3 the library failed.");
  describeSolve(app, arguments.solve);
  const CLI::App* deck = describeDeck(app, arguments.deck);
  try {
    app.parse(argc, argv);
    if (deck->parsed()) arguments.command = Command::deck;
  } catch (const CLI::ParseError& outcome) {
    arguments.done = true;
    arguments.status = app.exit(outcome) == 0 ? exitConverged : exitRefused;
  }
  return arguments;
}

}  // namespace host
