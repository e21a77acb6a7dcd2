// The lane tables of this processor.
#include "element/lanes/element_lanes.hpp"

#include "ground/kernel_tables.hpp"

namespace tornwalzen {

const KernelTables<ElementLanes>& elementLanesTables() {
  static const KernelTables<ElementLanes> tables = [] {
    KernelTables<ElementLanes> t(portableElementLanes);
#ifdef TORNWALZEN_X86_KERNELS
    t.add(avx2ElementLanes, Instructions::avx2);
    t.add(avx512ElementLanes, Instructions::avx512);
#endif
    return t;
  }();
  return tables;
}

}  // namespace tornwalzen
