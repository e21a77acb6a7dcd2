// The choice among the lane tables.
#include "element/lanes/element_lanes.hpp"

namespace tornwalzen {

namespace {

struct LanesChoice {
  const ElementLanes* available[3] = {&portableElementLanes, nullptr, nullptr};
  int count = 1;
  const ElementLanes* inUse = nullptr;

  LanesChoice() {
#ifdef TORNWALZEN_X86_KERNELS
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2")) available[count++] = &avx2ElementLanes;
    if (__builtin_cpu_supports("avx512f")) available[count++] = &avx512ElementLanes;
#endif
    inUse = available[count - 1];
  }
} choice;

}  // namespace

const ElementLanes& elementLanes() {
  return *choice.inUse;
}

const ElementLanes* const* availableElementLanes(int& count) {
  count = choice.count;
  return choice.available;
}

void useElementLanes(const ElementLanes& lanes) {
  choice.inUse = &lanes;
}

}  // namespace tornwalzen
