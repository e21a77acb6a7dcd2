// A process that ends without the way back through main has the counts of a coverage build written here.
#pragma once

#ifdef TORNWALZEN_COVERAGE
extern "C" void __gcov_dump(void);
#endif

inline void keepCounts() {
#ifdef TORNWALZEN_COVERAGE
  __gcov_dump();
#endif
}
