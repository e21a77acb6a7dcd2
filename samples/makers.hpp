// The makers behind the catalogue. Each meshes one family of shapes with the edge length choice.size and
// throws std::invalid_argument where the dimensions make no sheet.
#pragma once

#include <string_view>

#include "shapes.hpp"

namespace shapes {

/// The dimensions of one request, by name. The names are those of the catalogue.
class Dimensions {
 public:
  explicit Dimensions(const std::vector<Dimension>& values) : values_(values) {}
  double operator[](std::string_view name) const;
  /// The same; throws std::invalid_argument if the value is not above zero.
  double positive(std::string_view name) const;

 private:
  const std::vector<Dimension>& values_;
};

// Sheets bent along one direction, with their exact blanks: strips.cpp
Sheet makePlate(const Dimensions& dims, const MeshChoice& choice);
Sheet makeLBend(const Dimensions& dims, const MeshChoice& choice);
Sheet makeHalfPipe(const Dimensions& dims, const MeshChoice& choice);
Sheet makeHat(const Dimensions& dims, const MeshChoice& choice);
Sheet makeConeSector(const Dimensions& dims, const MeshChoice& choice);
// The hat section along an S-shaped line: strips.cpp
Sheet makeSRail(const Dimensions& dims, const MeshChoice& choice);

// Sheets of rows round an axis, quarter or whole: rings.cpp
Sheet makeSquareCup(const Dimensions& dims, const MeshChoice& choice);
Sheet makeRoundCup(const Dimensions& dims, const MeshChoice& choice);
Sheet makeBox(const Dimensions& dims, const MeshChoice& choice);
Sheet makeFlangedHole(const Dimensions& dims, const MeshChoice& choice);

}  // namespace shapes
