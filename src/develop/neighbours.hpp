// Which triangles share an edge.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// NEIGHBOUR: out, 3 × NE: the triangle across the side from corner k to corner k + 1 of triangle e in (k, e), 0
/// where there is none; across an edge of more than two triangles each is joined to the next in number. SIDE: out,
/// 3 × NE, which of its sides (1..3) the neighbour shares. INTA: in, NE × 3, 1..NN. SCRATCH: NN + 1 + 3·NE.
void findNeighbours(Int nodes, Table<const Int> INTA, Vector<Int> SCRATCH, Table<Int> NEIGHBOUR,
                    Table<Int> SIDE);

}  // namespace tornwalzen
