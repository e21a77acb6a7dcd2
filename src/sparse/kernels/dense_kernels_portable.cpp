// The dense kernels for plain C++, two doubles at a time (any processor).
#include "sparse/kernels/dense_kernels.hpp"
#include "sparse/kernels/front_layout.hpp"

namespace tornwalzen {
namespace kernels_portable {

constexpr int VL = 2;
constexpr int MV = 2;
constexpr int NR = 4;

// Rounded twice: not every processor can do it once.
template <class Number>
inline Number minusProduct(Number c, Number a, Number b) {
  return c - a * b;
}
template <class Number>
inline Number plusProduct(Number c, Number a, Number b) {
  return c + a * b;
}

#include "sparse/kernels/dense_kernels_body.hpp"
#include "sparse/kernels/solve_kernels_body.hpp"

}  // namespace kernels_portable

const DenseKernels portableKernels = {"portable",
                                      kernels_portable::factorFront,
                                      kernels_portable::factorDiagonal,
                                      kernels_portable::factorRows,
                                      kernels_portable::scaleBlock,
                                      kernels_portable::updateRows,
                                      kernels_portable::forward,
                                      kernels_portable::forwardTop,
                                      kernels_portable::forwardRows,
                                      kernels_portable::backward};

}  // namespace tornwalzen
