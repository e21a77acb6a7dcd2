// Draw beads: lines of nodes that the sheet is drawn across against a given force per length, -b·l·m·s, m the normal of a
// piece of the line in the sheet, s = w/√(w² + 0.2²) with the way w across it (N, mm).
#pragma once

#include "forces/sheet_loads.hpp"

namespace tornwalzen {

/// One piece of a bead: an edge of the mesh.
struct BeadPiece {
  Int e;         // triangle that has it
  Int k;         // from its corner k to k + 1
  double force;  // N/mm
};

/// The triangle's side between nodes a and b: 3·(e - 1) + k of the first one in number, 0 where the mesh has no such edge.
Int sideBetween(Table<const Int> INTA, Int a, Int b);

/// Adds the force of the piece to FORCE, 2 × NE (N), on the triangles at both sides. TWIN: in, 3 × NE.
void addBeadForce(const SheetView& sheet, Table<const Int> TWIN, const BeadPiece& piece,
                  Table<const double> KNG, Table<double> FORCE);

}  // namespace tornwalzen
