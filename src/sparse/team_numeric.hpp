// The numeric phase on several threads.
#pragma once

#include "sparse/factor_team.hpp"
#include "sparse/fronts.hpp"

namespace tornwalzen {

/// Eliminates all supernodes; the factor has the bits of eliminateRange's. BIGMAP, STACK: scratch, NEQ and m, of the
/// calling thread. IERR: out, as eliminateRange's for the first supernode that fails in the order of elimination; the
/// factor is then incomplete.
void eliminateInTeam(const Elimination& a, FactorTeam& team, Vector<Int> BIGMAP, Vector<Int> STACK,
                     Int& IERR);

}  // namespace tornwalzen
