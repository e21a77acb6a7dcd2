// tornwalzen_samples: makes part meshes to try the analysis on.
//
//   tornwalzen_samples --list
//   tornwalzen_samples square_cup --triangles 20000 --quarter -o cup.obj
//   tornwalzen_samples half_pipe --size 2.5 --set radius=40 --blank exact.obj -o pipe.obj
//   tornwalzen_samples s_rail --size 2 --seed 7 -o rail.obj
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <stdexcept>

#include "shapes.hpp"

namespace {

void printList() {
  for (const shapes::ShapeInfo& shape : shapes::catalogue()) {
    std::printf("%-13s %s%s\n", shape.name.c_str(), shape.summary.c_str(),
                shape.hasQuarter ? " (whole or quarter)" : "");
  }
}

void printDimensions(const std::string& name) {
  for (const shapes::ShapeInfo& shape : shapes::catalogue()) {
    if (shape.name != name) continue;
    std::printf("%s: %s\n", shape.name.c_str(), shape.summary.c_str());
    for (const shapes::Dimension& d : shape.dimensions) {
      std::printf("  %-17s %7g  %s\n", d.name.c_str(), d.value, d.meaning.c_str());
    }
    return;
  }
  throw std::invalid_argument("there is no shape \"" + name + "\"; --list names them all");
}

shapes::Change parseChange(const std::string& text) {
  const std::size_t equals = text.find('=');
  std::size_t read = 0;
  try {
    const double value =
        std::stod(text.substr(equals == std::string::npos ? text.size() : equals + 1), &read);
    if (equals + 1 + read == text.size()) return {text.substr(0, equals), value};
  } catch (const std::exception&) {
    // falls through to the message below
  }
  throw std::invalid_argument("--set wants DIMENSION=VALUE, not \"" + text + "\"");
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Makes triangle meshes of drawn and bent sheets as OBJ (mm, drawing direction +z)."};
  std::string name, output, blank;
  std::vector<std::string> changes;
  shapes::MeshChoice choice;
  bool list = false, dimensions = false;
  app.add_option("NAME", name, "shape, one of --list");
  app.add_flag("--list", list, "names all shapes");
  app.add_flag("--dimensions", dimensions, "names the dimensions of the shape, with their defaults");
  auto* triangles =
      app.add_option("--triangles", choice.triangles, "wanted number of triangles, default 5000");
  app.add_option("--size", choice.size, "wanted edge length (mm)")->excludes(triangles);
  app.add_option("--seed", choice.seed,
                 "moves nodes and draws diagonals at random; 0 (default): regular mesh");
  app.add_flag("--quarter", choice.quarter, "only the quarter x >= 0, y >= 0");
  app.add_option("--set", changes, "DIMENSION=VALUE, mm or degrees; may be repeated")->take_all();
  app.add_option("--blank", blank, "also writes the exact blank, where it is known, to this OBJ file");
  app.add_option("-o,--output", output, "OBJ file of the part");
  CLI11_PARSE(app, argc, argv);

  try {
    if (list) return printList(), 0;
    if (name.empty()) throw std::invalid_argument("no shape named; --list names them all");
    if (dimensions) return printDimensions(name), 0;
    if (output.empty()) throw std::invalid_argument("no output file; give one with -o FILE");
    std::vector<shapes::Change> parsed;
    for (const std::string& text : changes) parsed.push_back(parseChange(text));
    choice.strict = true;
    const shapes::Sheet sheet = shapes::makeShape(name, choice, parsed);
    if (!blank.empty()) shapes::writeObj(sheet, blank, name + ", exact blank", true);
    shapes::writeObj(sheet, output, name);
    std::printf("%s: %d nodes, %d triangles\n", output.c_str(), sheet.nodes(), sheet.triangles());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tornwalzen_samples: %s\n", error.what());
    return 1;
  }
  return 0;
}
