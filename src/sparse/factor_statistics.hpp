// What the report tells of the last numeric factorization.
#pragma once

#include "ground/analysis.hpp"

namespace tornwalzen {

/// Fills the record's factor entries and operations from the structure in WORK, and the count of negative
/// pivots and the smallest magnitude from D in RWORK. Where no valid factor stands, the record stays as it
/// is. WORK, RWORK: in, as step 44 and the solves left them. Held unknowns have the pivot 1.
void recordFactor(RunRecord& record, const SolverProtocol& protocol, Vector<Int> WORK,
                  Vector<const double> RWORK);

}  // namespace tornwalzen
