// The command line; see the header.
#include "arguments.hpp"

#include <CLI/CLI.hpp>

#include "failure.hpp"

namespace host {

namespace {

void describeSolve(CLI::App& app, SolveOptions& options) {
  CLI::App* solve = app.add_subcommand("solve", "Find the flat blank of a formed part.");
  solve
      ->add_option("PART", options.part,
                   "mesh of the part: Wavefront OBJ or STL, triangles, mm, drawn along z")
      ->required();
  solve
      ->add_option("--material", options.material,
                   "flow curve 0, 1 or 2 (plastic work), or 10 (geometric, no material)")
      ->check(CLI::IsMember({0, 1, 2, 10}))
      ->capture_default_str();
  solve
      ->add_option(
          "--hold", options.hold,
          "unknowns that are held: auto; x0, y0 or x0,y0 (symmetry planes); or a file with one equation "
          "number per line (2n-1 is u, 2n is v of node n)")
      ->type_name("auto|x0|y0|x0,y0|FILE")
      ->capture_default_str();
  solve->add_option("--out", options.out, "folder for the results (default: the part's name with _blank)")
      ->type_name("DIR");
  solve->add_flag("--largest", options.largest, "of several pieces take the one with the most triangles");
  solve->add_flag("--verbose", options.verbose, "show the library's messages");
}

}  // namespace

Arguments readArguments(int argc, const char* const* argv) {
  Arguments arguments;
  CLI::App app("Inverse analysis of sheet-metal forming: from the finished part to its flat blank.",
               "tornwalzen");
  app.set_version_flag("--version", "tornwalzen " TORNWALZEN_VERSION);
  app.require_subcommand(1);
  app.footer(
      "Results: blank.obj, part.vtu, blank.vtu, summary.json, tornwalzen.log.\n"
      "Exit status: 0 converged, 1 refused or not written, 2 not converged, 3 the library failed.");
  describeSolve(app, arguments.solve);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& outcome) {
    arguments.done = true;
    arguments.status = app.exit(outcome) == 0 ? exitConverged : exitRefused;
  }
  return arguments;
}

}  // namespace host
