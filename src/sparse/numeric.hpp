// Phase 3: numeric factorization A = L·D·Lᵀ by the multifrontal method.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

struct DenseKernels;
struct FactorTeam;

/// Factors SYSM in the order and structure of phases 1 and 2, without pivoting. The matrix may be indefinite.
///
/// kernels: in. team: inout, the threads that do it; null: the calling thread alone, and in all cases the same bits. COLS: in, NEQ + 1; ROWI, SYSM: in, NNZ. WORK: inout, as phase 2 left it, its length is checked; the places of
/// the matrix entries are found when `first` and kept for later calls. RWORK: out, D from element 1, L by
/// supernodes behind it, then scratch; its length is checked.
/// IERR: out, 0, shortWork3, noPlace, or zeroPivot (exact comparison; a NaN pivot passes).
void numericPhase(const DenseKernels& kernels, FactorTeam* team, bool first, Vector<const Int> COLS,
                  Vector<const Int> ROWI, Vector<const double> SYSM, Vector<Int> WORK, Vector<double> RWORK,
                  Int& IERR);

/// First place of WORK that phase 3 does not use.
Int64 numericEnd(Vector<Int> WORK, Int64 firstFree, Int64 NEQ, Int64 NNZ, Int64 m);

}  // namespace tornwalzen
