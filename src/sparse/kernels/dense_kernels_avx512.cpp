// The dense kernels for AVX-512F.
#include <immintrin.h>

#include "sparse/kernels/dense_kernels.hpp"
#include "sparse/kernels/front_layout.hpp"

namespace tornwalzen {
namespace kernels_avx512 {

constexpr int VL = 8;
constexpr int MV = 3;
constexpr int NR = 8;

// Rounded once.
inline __m512d minusProduct(__m512d c, __m512d a, __m512d b) {
  return _mm512_fnmadd_pd(a, b, c);
}
inline __m512d plusProduct(__m512d c, __m512d a, __m512d b) {
  return _mm512_fmadd_pd(a, b, c);
}
inline double minusProduct(double c, double a, double b) {
  return __builtin_fma(-a, b, c);
}

#include "sparse/kernels/dense_kernels_body.hpp"
#include "sparse/kernels/solve_kernels_body.hpp"

}  // namespace kernels_avx512

const DenseKernels avx512Kernels = {"avx512",
                                    kernels_avx512::factorFront,
                                    kernels_avx512::factorDiagonal,
                                    kernels_avx512::factorRows,
                                    kernels_avx512::scaleBlock,
                                    kernels_avx512::updateRows,
                                    kernels_avx512::forward,
                                    kernels_avx512::forwardTop,
                                    kernels_avx512::forwardRows,
                                    kernels_avx512::backward};

}  // namespace tornwalzen
