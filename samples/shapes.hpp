// Part meshes to try the analysis on: drawn and bent sheets as one manifold, consistently oriented piece.
//
// All lengths in mm, all angles in degrees, drawing direction +z; a part is meshed counter-clockwise seen
// from +z. A mesh is structured in the shape's own parameters, with finer rows at the radii, and is the same
// bit for bit for the same request on the same machine.
//
// A developable shape also carries its exact blank: that of the triangulated sheet itself, so blank and part
// agree in every edge length to rounding. It differs from the smooth sheet's development by the chords of the
// bends alone, which is of second order in the mesh size: a bend of the turn t (radians) in n rows comes out
// shorter by the fraction (t/n)²/24.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace shapes {

/// A triangulated sheet. Node and triangle counts follow from the lengths.
struct Sheet {
  std::vector<double> knots;       // x, y, z of node 1, of node 2, ... (mm)
  std::vector<std::int32_t> inzi;  // the three nodes of triangle 1, of triangle 2, ...; index base 1
  std::vector<double> blank;       // u, v of node 1, of node 2, ... (mm); empty where no exact blank is known

  std::int32_t nodes() const { return static_cast<std::int32_t>(knots.size() / 3); }
  std::int32_t triangles() const { return static_cast<std::int32_t>(inzi.size() / 3); }
};

/// How to mesh a shape.
struct MeshChoice {
  double size = 0.0;  // wanted edge length (mm); 0: chosen to meet `triangles`
  std::int32_t triangles =
      5000;                // wanted number, met to a tenth or better; read where size is 0. Below what edges
                           // of a sixth of the part give, that coarse mesh, or see `strict`
  std::uint64_t seed = 0;  // 0: regular mesh with alternating diagonals; else nodes moved by up to a fifth of
                           // a cell within the sheet and diagonals drawn at random, reproducible by the seed
  bool quarter = false;    // only the quarter x ≥ 0, y ≥ 0 of a shape with two planes of symmetry
  bool strict = false;  // small numbers of triangles are met with longer edges, as near as whole rows come to
                        // them; a number below the least that the shape's radii allow is refused
};

/// One dimension of a shape, with its default.
struct Dimension {
  std::string name;
  double value;         // mm or degrees, as `meaning` says
  std::string meaning;  // with its unit
};

struct ShapeInfo {
  std::string name;
  std::string summary;  // one line
  std::vector<Dimension> dimensions;
  bool hasQuarter;  // MeshChoice::quarter is allowed
  bool hasBlank;    // carries its exact blank
};

/// Every shape there is.
const std::vector<ShapeInfo>& catalogue();

/// A dimension to be changed from its default.
struct Change {
  std::string name;
  double value;
};

/// Meshes the shape `name`. Throws std::invalid_argument, which names the cause, for an unknown shape or
/// dimension, a quarter of a shape that has none, dimensions that make no sheet, a size that is not positive
/// and finite, with `strict` a number of triangles below the least, or a mesh of more than 20 million triangles.
Sheet makeShape(std::string_view name, const MeshChoice& choice = {},
                const std::vector<Change>& changes = {});

/// Writes the part, or with `blank` its exact blank in the plane z = 0, as Wavefront OBJ: shortest decimals
/// that read back to the same bits, node order kept. Throws std::runtime_error where the file cannot be
/// written, std::invalid_argument where a blank is asked for and none is known.
void writeObj(const Sheet& sheet, const std::string& path, const std::string& comment, bool blank = false);

}  // namespace shapes
