// The supernode step: from the elements of the minimum degree search to the supernode partition of the factor.
#pragma once

#include "sparse/minimum_degree.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

/// What the supernode step returns.
struct SupernodeSizes {
  Int m = 0;                // supernodes
  Int64 s = 0;              // compressed subscripts: sum of the supernodes' rows
  Int64 factorEntries = 0;  // entries of L below the diagonal
  Int64 leanEntries = 0;    // the same before supernodes are merged
};

/// Merges elements into supernodes where the extra fill is allowed, renumbers them in a postorder of the
/// elimination tree that keeps the update stack low (J. W. H. Liu, On the storage requirement in the out-of-core
/// multifrontal method, ACM TOMS 12, 1986), the roots in ascending order, and numbers the columns.
///
/// g: inout, the search's result: QSIZE, ABSORB, COUNT of `nodes` nodes; all its arrays serve as scratch.
/// nodes: of the compressed graph. WORK: inout, in phase 1 layout; on entry INVP holds the node of each equation.
/// On return WORK holds PERM, INVP, SUPMAP, XSUP, PARENT, COLCNT in the layout of orderedStructure.
SupernodeSizes supernodeStep(const EliminationGraph& g, Int nodes, Vector<Int> WORK, Int NEQ, Int NADJ);

/// May a child supernode with its parent become one of w columns, c rows and `zeros` explicit zeros among its
/// entries? Chosen by measurement, see docs/numerics.md.
bool mergeAllowed(Int64 w, Int64 c, Int64 zeros);

}  // namespace tornwalzen
