// CHOLMOD, simplicial L·D·Lᵀ: no BLAS.
#include "contender_cholmod.hpp"

namespace bench {

std::unique_ptr<Contender> makeCholmodSimplicial(const SymmetricMatrix& a) {
  return std::make_unique<Cholmod>(a, CHOLMOD_SIMPLICIAL);
}

}  // namespace bench
