// The dense kernels for AVX2 and FMA.
#include <immintrin.h>

#include "sparse/kernels/dense_kernels.hpp"
#include "sparse/kernels/front_layout.hpp"

namespace tornwalzen {
namespace kernels_avx2 {

constexpr int VL = 4;
constexpr int MV = 3;
constexpr int NR = 4;

// Rounded once.
inline __m256d minusProduct(__m256d c, __m256d a, __m256d b) {
  return _mm256_fnmadd_pd(a, b, c);
}
inline __m256d plusProduct(__m256d c, __m256d a, __m256d b) {
  return _mm256_fmadd_pd(a, b, c);
}
inline double minusProduct(double c, double a, double b) {
  return __builtin_fma(-a, b, c);
}

#include "sparse/kernels/dense_kernels_body.hpp"
#include "sparse/kernels/solve_kernels_body.hpp"

}  // namespace kernels_avx2

const DenseKernels avx2Kernels = {"avx2",
                                  kernels_avx2::factorFront,
                                  kernels_avx2::factorDiagonal,
                                  kernels_avx2::factorRows,
                                  kernels_avx2::scaleBlock,
                                  kernels_avx2::updateRows,
                                  kernels_avx2::forward,
                                  kernels_avx2::forwardTop,
                                  kernels_avx2::forwardRows,
                                  kernels_avx2::backward};

}  // namespace tornwalzen
