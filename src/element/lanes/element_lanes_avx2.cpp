// Lanes for AVX2: four doubles.
#include <immintrin.h>

#include "element/density_plastic_body.hpp"
#include "element/expansion.hpp"
#include "element/kinematics.hpp"
#include "element/lanes/element_lanes.hpp"

namespace {
constexpr int VL = 4;
using Lanes = double __attribute__((vector_size(VL * sizeof(double))));
inline Lanes squareRoot(Lanes x) {
  return _mm256_sqrt_pd(x);
}
}  // namespace

#include "element/lanes/element_lanes_body.hpp"
#include "element/lanes/map_lanes_body.hpp"

namespace tornwalzen {

const ElementLanes avx2ElementLanes = {"avx2", evaluate, evaluateOverPart};

}  // namespace tornwalzen
