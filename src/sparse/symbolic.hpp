// Phase 2: the compressed subscripts of the factor and the places of update matrices in their parents' fronts.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

/// Supernodal symbolic factorization on the partition of phase 1. The adjacency is dropped: on return WORK is laid
/// out as factorStructure reads it.
///
/// WORK: inout, as phase 1 left it; its length is checked against symbolicLength. NNZ: in, stored entries.
/// f1, f2: out, rows of the largest front and of the largest update matrix. g: out, at least NEQ; if larger, the
/// real work array must grow by 2·g doubles, so that fronts, update stack and packing space fit behind L and D.
/// IERR: out, 0, shortWork2, inconsistent or tooLarge.
void symbolicPhase(Int NNZ, Vector<Int> WORK, Int& f1, Int& f2, Int& g, Int& IERR);

/// The last part of it: from rows and tree of the supernodes to places in the parents, blocks of L and lengths. WORK: inout,
/// in the layout of factorStructure with PERM to LINDX and the header up to factorEntries.
void layOutFactor(Vector<Int> WORK, Int& f1, Int& f2, Int& g, Int& IERR);

}  // namespace tornwalzen
