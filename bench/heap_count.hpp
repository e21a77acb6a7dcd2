// Bytes on the heap, for contenders that do not count their own. Counts what this program's own objects
// allocate by malloc and operator new; what shared libraries call is not seen.
#pragma once

namespace bench {

double heapBytes();  // held now
double heapPeak();   // largest held since the last reset
void resetHeapPeak();

}  // namespace bench
