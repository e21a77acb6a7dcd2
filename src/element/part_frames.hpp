// The part's triangles in axes of their own: what is fixed while the blank moves.
//
// The first axis runs along the edge from corner 1 to corner 2, the second to the side of corner 3. With l the
// length of that edge and (c, h) the place of corner 3, the edges are P = (l, 0), Q = (c, h), and the map from
// the part's triangle to the blank's is J = [p q]·[P Q]⁻¹ with p, q the blank's edges: linear in the blank.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// Rows of FRAMES. [P Q]⁻¹ = (alongFirst, tilt; 0, acrossFirst).
namespace frame {
constexpr Int along = 1;   // 1/l (1/mm)
constexpr Int tilt = 2;    // -c/(l·h) (1/mm)
constexpr Int across = 3;  // 1/h (1/mm)
constexpr Int weight = 4;  // l·h: twice the area (mm²)
constexpr Int rows = 4;
}  // namespace frame

/// FRAMES: out, 4 × NE, rows as above. INTA: in, NE × 3 incidences. KNG: in, the part's nodes (mm), NN × 3.
/// Returns 0, or the number of the first triangle without area: a height or an edge that is not positive and
/// finite, or a height below 1e-12 of the longest edge. FRAMES is then complete up to that triangle.
Int measurePartFrames(Table<const Int> INTA, Table<const double> KNG, Table<double> FRAMES);

}  // namespace tornwalzen
