// Where a binder can press: level areas at the rim of the part.
#pragma once

#include "forces/sheet_loads.hpp"

namespace tornwalzen {

/// FLANGE: out, NE: 1 on the flange, else 0. Level triangles, within 3 degrees across `draw`, join to pieces over shared
/// edges. The flange is those pieces at a free edge that lie at one height, within the sheet's thickness, and are largest
/// together; less than 2 percent of the part is none: the crown of a bend is level too. Returns its number of triangles,
/// 0 without one, -1 without memory. KNG: in, NN × 3 (mm); PLANE: in, see free_edges.hpp; draw: in, a unit vector;
/// SCRATCH: NE.
Int flangeOfRim(const SheetView& sheet, Table<const double> KNG, Table<const Int> TWIN,
                Vector<const Int> PLANE, const double (&draw)[3], Vector<Int> SCRATCH, Vector<Int> FLANGE);

}  // namespace tornwalzen
