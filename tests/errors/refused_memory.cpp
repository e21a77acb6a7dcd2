// Replaces the allocation functions of the whole program, so that all of them belong together.
#include "errors/refused_memory.hpp"

#include <cstdlib>
#include <new>

namespace {
bool refused = false;
}

hostile::NoMemory::NoMemory() {
  refused = true;
}
hostile::NoMemory::~NoMemory() {
  refused = false;
}

void* operator new(std::size_t length) {
  if (void* const block = std::malloc(length > 0 ? length : 1)) return block;
  throw std::bad_alloc();
}
void* operator new[](std::size_t length) {
  return operator new(length);
}
void* operator new(std::size_t length, const std::nothrow_t&) noexcept {
  return refused ? nullptr : std::malloc(length > 0 ? length : 1);
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
