// Lanes for AVX-512: eight doubles.
#include <immintrin.h>

#include "element/density_plastic_body.hpp"
#include "element/expansion.hpp"
#include "element/kinematics.hpp"
#include "element/lanes/element_lanes.hpp"

namespace {
constexpr int VL = 8;
using Lanes = double __attribute__((vector_size(VL * sizeof(double))));
inline Lanes squareRoot(Lanes x) {
  return _mm512_maskz_sqrt_pd(0xFF, x);  // the plain form makes GCC 12 warn of its own header
}
}  // namespace

#include "element/lanes/element_lanes_body.hpp"
#include "element/lanes/map_lanes_body.hpp"

namespace tornwalzen {

const ElementLanes avx512ElementLanes = {"avx512", evaluate, evaluateOverPart};

}  // namespace tornwalzen
