// The factor's structure of one equation per node from that of two, which have the same rows and so stand side by side
// in every order that the ordering finds: half of everything, and no second ordering of the same graph.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// Length of WORK that halveStructure needs.
Int64 halvedLength(Vector<Int> PAIRS);

/// PAIRS: in, WORK of a system of two equations per node as phase 2 left it. WORK: out, the same for one equation per
/// node, in the layout of phase 2, all of it. f1, f2, g: out, as of symbolicPhase. IERR: out, as there; inconsistent where
/// the equations of a node do not stand side by side.
void halveStructure(Vector<Int> PAIRS, Vector<Int> WORK, Int& f1, Int& f2, Int& g, Int& IERR);

}  // namespace tornwalzen
