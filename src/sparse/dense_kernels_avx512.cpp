// The dense kernels for AVX-512F.
#include "sparse/dense_kernels.hpp"
#include "sparse/front_layout.hpp"

namespace tornwalzen {
namespace kernels_avx512 {

constexpr int VL = 8;
constexpr int MV = 3;
constexpr int NR = 8;

#include "sparse/dense_kernels_body.hpp"

}  // namespace kernels_avx512

const DenseKernels avx512Kernels = {"avx512", kernels_avx512::factorFront, kernels_avx512::forward, kernels_avx512::backward};

}  // namespace tornwalzen
