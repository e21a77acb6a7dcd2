// The linker sends this program's malloc, calloc, realloc and free here (--wrap); operator new is replaced.
#include "heap_count.hpp"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

double held = 0.0, peak = 0.0;  // bytes

void* taken(void* p) {
  held += static_cast<double>(malloc_usable_size(p));
  peak = std::max(peak, held);
  return p;
}
void given(void* p) {
  held -= static_cast<double>(malloc_usable_size(p));
}

}  // namespace

extern "C" {
void* __real_malloc(std::size_t);
void* __real_calloc(std::size_t, std::size_t);
void* __real_realloc(void*, std::size_t);
void __real_free(void*);

void* __wrap_malloc(std::size_t bytes) {
  return taken(__real_malloc(bytes));
}
void* __wrap_calloc(std::size_t n, std::size_t bytes) {
  return taken(__real_calloc(n, bytes));
}
void* __wrap_realloc(void* p, std::size_t bytes) {
  given(p);
  return taken(__real_realloc(p, bytes));
}
void __wrap_free(void* p) {
  given(p);
  __real_free(p);
}
}

void* operator new(std::size_t bytes) {
  void* p = __wrap_malloc(bytes);
  if (p == nullptr) throw std::bad_alloc();
  return p;
}
void* operator new[](std::size_t bytes) {
  return operator new(bytes);
}
void operator delete(void* p) noexcept {
  __wrap_free(p);
}
void operator delete[](void* p) noexcept {
  __wrap_free(p);
}
void operator delete(void* p, std::size_t) noexcept {
  __wrap_free(p);
}
void operator delete[](void* p, std::size_t) noexcept {
  __wrap_free(p);
}

namespace bench {

double heapBytes() {
  return held;
}
double heapPeak() {
  return peak;
}
void resetHeapPeak() {
  peak = held;
}

}  // namespace bench
