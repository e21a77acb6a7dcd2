// Triangular solves with the factor of the numeric phase.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

struct DenseKernels;
struct FactorTeam;

/// Solves A·x = b with A = Pᵀ·L·D·Lᵀ·P. kernels: in. team: inout, the threads that do it; null: the calling thread alone,
/// and in all cases the same bits.
/// RWORK: inout, L and D are kept, the scratch behind them is used. WORK: in, as phases 2 and 3 left it; its length is
/// checked. WRHS: scratch, NEQ. SOLUTION: inout, b on entry, x on return.
/// IERR: out, 0 or shortWorkSolve. That a factorization exists is for the caller to know.
void triangularSolve(const DenseKernels& kernels, FactorTeam* team, Vector<double> RWORK, Vector<Int> WORK,
                     Vector<double> WRHS, Vector<double> SOLUTION, Int& IERR);

}  // namespace tornwalzen
