// CHOLMOD, supernodal L·Lᵀ on BLAS: with AMD the peer that the ratios are against, and with METIS, whose nested dissection
// asks for fewer operations on large meshes.
#include "contender_cholmod.hpp"

namespace bench {

std::unique_ptr<Contender> makeCholmodSupernodal(const SymmetricMatrix& a) {
  return std::make_unique<Cholmod>(a, CHOLMOD_SUPERNODAL);
}

std::unique_ptr<Contender> makeCholmodMetis(const SymmetricMatrix& a) {
  return std::make_unique<Cholmod>(a, CHOLMOD_SUPERNODAL, CHOLMOD_METIS);
}

}  // namespace bench
