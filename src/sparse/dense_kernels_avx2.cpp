// The dense kernels for AVX2 and FMA.
#include "sparse/dense_kernels.hpp"
#include "sparse/front_layout.hpp"

namespace tornwalzen {
namespace kernels_avx2 {

constexpr int VL = 4;
constexpr int MV = 3;
constexpr int NR = 4;

#include "sparse/dense_kernels_body.hpp"

}  // namespace kernels_avx2

const DenseKernels avx2Kernels = {"avx2", kernels_avx2::factorFront, kernels_avx2::forward, kernels_avx2::backward};

}  // namespace tornwalzen
