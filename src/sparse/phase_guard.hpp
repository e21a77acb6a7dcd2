// The factorization dispatcher: keeps the phases in order and WORK intact between them.
#pragma once

#include "ground/analysis.hpp"

namespace tornwalzen {

/// Sizes that the phases return to the front end.
struct PhaseSizes {
  Int s = 0, m = 0;           // phase 1: compressed subscripts, supernodes
  Int f1 = 0, f2 = 0, g = 0;  // phase 2: rows of the largest front and update matrix, growth of the real work
};

/// Runs phase 1 (ordering), 2 (symbolic) or 3 (numeric).
///
/// protocol: inout, what the phases of this system have done. phase: in, 1..3. COLS, ROWI, SYSM: in. WORK, RWORK:
/// inout, their lengths are those that the phases check. sizes: inout, what the phase determines.
/// IERR: out, 0 or negative as listed in phase_error.hpp. outOfOrder if an earlier phase is missing, by WORK(35) or
/// by the protocol; damaged if WORK changed since the last phase, with two lines to the host.
void runPhase(Analysis& run, SolverProtocol& protocol, Int phase, Vector<const Int> COLS,
              Vector<const Int> ROWI, Vector<const double> SYSM, Vector<Int> WORK, Vector<double> RWORK,
              PhaseSizes& sizes, Int& IERR);

/// True if WORK is still what phase 2 left, as phase 3 keeps it.
bool structureStands(const SolverProtocol& protocol, Vector<const Int> WORK, ThreadPool* pool);

/// WORK holds what phase 2 leaves, found in another way: phase 3 may follow. protocol: inout, as after the sizing step.
void noteStructure(SolverProtocol& protocol, Vector<Int> WORK, ThreadPool* pool);

/// The dense kernels that the analysis uses.
const DenseKernels& kernelsOf(const Analysis& run);

/// True if WORK is still what phase 3 left and a valid factor stands: what the solve needs. pool: in, threads that may
/// help; null: none.
bool factorStands(const SolverProtocol& protocol, Vector<const Int> WORK, ThreadPool* pool = nullptr);

}  // namespace tornwalzen
