// The choice among the kernel tables.
#include "sparse/kernels/dense_kernels.hpp"

namespace tornwalzen {

namespace {

struct KernelChoice {
  const DenseKernels* available[3] = {&portableKernels, nullptr, nullptr};
  int count = 1;
  const DenseKernels* inUse = nullptr;

  KernelChoice() {
#ifdef TORNWALZEN_X86_KERNELS
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) available[count++] = &avx2Kernels;
    if (__builtin_cpu_supports("avx512f")) available[count++] = &avx512Kernels;
#endif
    inUse = available[count - 1];
  }
} choice;

}  // namespace

const DenseKernels& denseKernels() {
  return *choice.inUse;
}

const DenseKernels* const* availableKernels(int& count) {
  count = choice.count;
  return choice.available;
}

void useDenseKernels(const DenseKernels& kernels) {
  choice.inUse = &kernels;
}

}  // namespace tornwalzen
