// A flat sheet of squares, two triangles each, under a uniform map, for loads that a hand can calculate.
#pragma once

#include <cmath>
#include <vector>

#include "forces/sheet_loads.hpp"

namespace forces {

using tornwalzen::Int;
using tornwalzen::Table;
using tornwalzen::Vector;

struct FlatSheet {
  Int columns, rows, nodes, elements;
  double side;                  // of a square on the part (mm)
  double stretchU, stretchV;    // of the blank over the part
  std::vector<Int> INTA, TWIN;  // NE × 3; 3 × NE
  std::vector<double> KNG, RX, MAPS, AXES, AREA, CURVATURE, FORCES, SLIP;

  FlatSheet(Int columns_, Int rows_, double side_, double stretchU_, double stretchV_)
      : columns(columns_),
        rows(rows_),
        nodes((columns_ + 1) * (rows_ + 1)),
        elements(2 * columns_ * rows_),
        side(side_),
        stretchU(stretchU_),
        stretchV(stretchV_) {
    const auto n = static_cast<std::size_t>(nodes), e = static_cast<std::size_t>(elements);
    INTA.resize(3 * e), TWIN.assign(3 * e, 0), KNG.resize(3 * n), RX.resize(2 * n), MAPS.resize(4 * e);
    AXES.assign(6 * e, 0.0), AREA.assign(e, 0.5 * side * side), CURVATURE.assign(3 * e, 0.0);
    FORCES.assign(3 * e, 0.0), SLIP.assign(2 * e, 0.0);
    for (Int j = 0; j <= rows; ++j)
      for (Int i = 0; i <= columns; ++i) {
        const Int k = node(i, j);
        knots()(k, 1) = side * i, knots()(k, 2) = side * j, knots()(k, 3) = 0.0;
        RX[2 * static_cast<std::size_t>(k) - 2] = stretchU * side * i;
        RX[2 * static_cast<std::size_t>(k) - 1] = stretchV * side * j;
      }
    for (Int j = 0; j < rows; ++j)
      for (Int i = 0; i < columns; ++i) {
        const Int lower = 2 * (j * columns + i) + 1, upper = lower + 1;
        const Int a = node(i, j), b = node(i + 1, j), c = node(i + 1, j + 1), d = node(i, j + 1);
        const Int corners[2][3] = {{a, b, c}, {d, a, c}};  // the second axis of both stands on the first
        for (Int k = 1; k <= 3; ++k)
          triangles()(lower, k) = corners[0][k - 1], triangles()(upper, k) = corners[1][k - 1];
        twins()(1, lower) = j > 0 ? lower + 1 - 2 * columns : 0;
        twins()(2, lower) = i + 1 < columns ? upper + 2 : 0;
        twins()(3, lower) = upper;
        twins()(1, upper) = i > 0 ? lower - 2 : 0;
        twins()(2, upper) = lower;
        twins()(3, upper) = j + 1 < rows ? lower + 2 * columns : 0;
      }
    for (Int& f : TWIN) f *= 3;  // as half edges
    for (Int e1 = 1; e1 <= elements; ++e1) {
      Table<double> M("MAPS", MAPS.data(), 4, elements), A("AXES", AXES.data(), 6, elements);
      M(1, e1) = stretchU, M(4, e1) = stretchV;  // axes along x and y
      A(1, e1) = 1.0, A(5, e1) = 1.0;
    }
  }

  Int node(Int i, Int j) const { return j * (columns + 1) + i + 1; }
  Table<Int> triangles() { return {"INTA", INTA.data(), elements, 3}; }
  Table<Int> twins() { return {"TWIN", TWIN.data(), 3, elements}; }
  Table<double> knots() { return {"KNG", KNG.data(), nodes, 3}; }
  tornwalzen::SheetView view(double thickness) {
    return {triangles(),
            {"MAPS", MAPS.data(), 4, elements},
            {"AXES", AXES.data(), 6, elements},
            {"AREA", AREA.data(), elements},
            {"CURVATURE", CURVATURE.data(), 3, elements},
            {"FORCES", FORCES.data(), 3, elements},
            {"SLIP", SLIP.data(), 2, elements},
            thickness};
  }
};

}  // namespace forces
