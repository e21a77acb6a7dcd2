// Replaces the allocation functions of the whole program, so that all of them belong together.
#include "errors/refused_memory.hpp"

#include <cstdlib>
#include <new>

namespace {
bool refused = false, throwingToo = false;
int left = 0;      // requests that are still granted
int refusals = 0;  // since the last NoMemory began

bool granted() {
  if (left-- > 0) return true;
  ++refusals;
  return false;
}
}  // namespace

hostile::NoMemory::NoMemory(int granted, Requests which) {
  refused = true;
  throwingToo = which == Requests::all;
  left = granted;
  ::refusals = 0;
}
hostile::NoMemory::~NoMemory() {
  refused = throwingToo = false;
}
int hostile::NoMemory::refusals() const {
  return ::refusals;
}

void* operator new(std::size_t length) {
  if (!throwingToo || granted())
    if (void* const block = std::malloc(length > 0 ? length : 1)) return block;
  throw std::bad_alloc();
}
void* operator new[](std::size_t length) {
  return operator new(length);
}
void* operator new(std::size_t length, const std::nothrow_t&) noexcept {
  if (refused && !granted()) return nullptr;
  return std::malloc(length > 0 ? length : 1);
}
void* operator new[](std::size_t length, const std::nothrow_t& tag) noexcept {
  return operator new(length, tag);
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete[](void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  std::free(block);
}
