// The triangular solves on several threads.
#pragma once

#include "sparse/factor_team.hpp"

namespace tornwalzen {

struct DenseKernels;

/// As triangularSolve, with the same bits. f: in, the structure; RWORK: in, D and L; WRHS: scratch, NEQ; SOLUTION: inout.
void solveInTeam(const DenseKernels& kernels, const FactorStructure& f, FactorTeam& team,
                 Vector<const double> RWORK, Vector<double> WRHS, Vector<double> SOLUTION);

}  // namespace tornwalzen
