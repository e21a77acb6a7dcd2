// The dense kernels for plain C++, two doubles at a time (any processor).
#include "sparse/dense_kernels.hpp"
#include "sparse/front_layout.hpp"

namespace tornwalzen {
namespace kernels_portable {

constexpr int VL = 2;
constexpr int MV = 2;
constexpr int NR = 4;

#include "sparse/dense_kernels_body.hpp"

}  // namespace kernels_portable

const DenseKernels portableKernels = {"portable", kernels_portable::factorFront, kernels_portable::forward, kernels_portable::backward};

}  // namespace tornwalzen
