// The kernel tables of this processor.
#include "sparse/kernels/dense_kernels.hpp"

#include "ground/kernel_tables.hpp"

namespace tornwalzen {

const KernelTables<DenseKernels>& denseKernelTables() {
  static const KernelTables<DenseKernels> tables = [] {
    KernelTables<DenseKernels> t(portableKernels);
#ifdef TORNWALZEN_X86_KERNELS
    t.add(avx2Kernels, Instructions::avx2);
    t.add(avx512Kernels, Instructions::avx512);
#endif
    return t;
  }();
  return tables;
}

}  // namespace tornwalzen
