// The choice among versions of one set of kernels for several processors: made at load, constant after it.
#pragma once

namespace tornwalzen {

enum class Instructions { avx2, avx512 };

/// Whether this processor has them, and the system keeps their registers.
inline bool processorHas([[maybe_unused]] Instructions wanted) {
#ifdef TORNWALZEN_X86_KERNELS
  __builtin_cpu_init();
  return wanted == Instructions::avx2 ? __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")
                                      : __builtin_cpu_supports("avx512f");
#else
  return false;
#endif
}

/// All tables that this processor can run, the portable one first, the widest last.
template <class Table>
struct KernelTables {
  const Table* available[3];
  int count = 1;

  explicit KernelTables(const Table& portable) : available{&portable, nullptr, nullptr} {}
  void add(const Table& table, Instructions needed) {
    if (processorHas(needed)) available[count++] = &table;
  }
  const Table& best() const { return *available[count - 1]; }
};

}  // namespace tornwalzen
