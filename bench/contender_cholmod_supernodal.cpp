// CHOLMOD, supernodal L·Lᵀ on BLAS: the peer that the ratios are against.
#include "contender_cholmod.hpp"

namespace bench {

std::unique_ptr<Contender> makeCholmodSupernodal(const SymmetricMatrix& a) {
  return std::make_unique<Cholmod>(a, CHOLMOD_SUPERNODAL);
}

}  // namespace bench
