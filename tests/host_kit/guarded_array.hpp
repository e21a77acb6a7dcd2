// An array whose first or last byte lies against a page that nobody may touch: a write or read past that end
// ends the process. The rest of its pages holds guard bytes, which `whole` compares.
#pragma once

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#undef far  // words of 16-bit days
#undef near
#else
#include <sys/mman.h>
#include <unistd.h>
#endif
#if __has_include(<valgrind/memcheck.h>)
#include <valgrind/memcheck.h>
#else
#define VALGRIND_MAKE_MEM_UNDEFINED(first, length)
#endif

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace host_kit {

enum class Access { none, read, readAndWrite };

/// Pages of the system's memory, without access at first.
class Pages {
 public:
#ifdef _WIN32
  static unsigned char* take(std::size_t length) {
    return static_cast<unsigned char*>(
        VirtualAlloc(nullptr, length, MEM_RESERVE | MEM_COMMIT, PAGE_NOACCESS));
  }
  static void give(unsigned char* block, std::size_t) {
    VirtualFree(block, 0, MEM_RELEASE);
  }
  static bool allow(unsigned char* first, std::size_t length, Access access) {
    constexpr DWORD words[] = {PAGE_NOACCESS, PAGE_READONLY, PAGE_READWRITE};
    DWORD before;
    return VirtualProtect(first, length, words[static_cast<int>(access)], &before) != 0;
  }
  static std::size_t size() {
    SYSTEM_INFO info;
    GetSystemInfo(&info);
    return info.dwPageSize;
  }
#else
  static unsigned char* take(std::size_t length) {
    void* const block = mmap(nullptr, length, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    return block == MAP_FAILED ? nullptr : static_cast<unsigned char*>(block);
  }
  static void give(unsigned char* block, std::size_t length) {
    munmap(block, length);
  }
  static bool allow(unsigned char* first, std::size_t length, Access access) {
    constexpr int words[] = {PROT_NONE, PROT_READ, PROT_READ | PROT_WRITE};
    return mprotect(first, length, words[static_cast<int>(access)]) == 0;
  }
  static std::size_t size() {
    return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  }
#endif
};

enum class Flush { end, start };  // the end of the array that lies against its guard page

/// Raw pages between two guard pages.
class GuardedBytes {
 public:
  GuardedBytes(std::size_t length, Flush flush) : length_(length) {
    const std::size_t page = Pages::size();
    used_ = (length + page - 1) / page * page;
    block_ = Pages::take(used_ + 2 * page);
    if (block_ == nullptr) std::abort();
    pages_ = block_ + page;
    first_ = flush == Flush::end ? pages_ + (used_ - length) : pages_;
    allow(Access::readAndWrite);
    if (used_ == 0) return;
    std::memset(pages_, guardByte, used_);
    std::memset(first_, unsetByte, length);
    VALGRIND_MAKE_MEM_UNDEFINED(first_, length);
  }
  ~GuardedBytes() { Pages::give(block_, used_ + 2 * Pages::size()); }
  GuardedBytes(const GuardedBytes&) = delete;
  GuardedBytes& operator=(const GuardedBytes&) = delete;

  void* first() const { return first_; }
  std::size_t length() const { return length_; }
  void allow(Access access) const {
    if (used_ > 0 && !Pages::allow(pages_, used_, access)) std::abort();
  }
  bool whole() const {
    const auto guard = [](unsigned char byte) { return byte == guardByte; };
    return std::all_of(pages_, first_, guard) && std::all_of(first_ + length_, pages_ + used_, guard);
  }

 private:
  static constexpr unsigned char guardByte = 0xA5;
  static constexpr unsigned char unsetByte = 0xFF;  // every double a NaN, every integer -1
  std::size_t length_, used_ = 0;
  unsigned char *block_ = nullptr, *pages_ = nullptr, *first_ = nullptr;
};

/// `length` elements of T, unset. Zero-based for the test that fills it.
template <class T>
class GuardedArray {
 public:
  GuardedArray(std::string name, Flush flush, std::int64_t length = 0)
      : name_(std::move(name)), flush_(flush), bytes_(new GuardedBytes(sizeof(T) * length, flush)) {}
  ~GuardedArray() { delete bytes_; }
  GuardedArray(const GuardedArray&) = delete;
  GuardedArray& operator=(const GuardedArray&) = delete;

  /// New memory with the old front, as realloc gives it; the old address becomes unusable.
  void resize(std::int64_t length) {
    auto* const moved = new GuardedBytes(sizeof(T) * length, flush_);
    const std::size_t kept = std::min(moved->length(), bytes_->length());
    if (kept > 0) std::memcpy(moved->first(), bytes_->first(), kept);
    delete bytes_;
    bytes_ = moved;
  }
  void move() { resize(length()); }
  template <class Values>
  void set(const Values& values) {
    resize(static_cast<std::int64_t>(values.size()));
    std::copy(values.begin(), values.end(), data());
  }

  const std::string& name() const { return name_; }
  T* data() const { return static_cast<T*>(bytes_->first()); }
  std::int64_t length() const { return static_cast<std::int64_t>(bytes_->length() / sizeof(T)); }
  T& operator[](std::int64_t i) const { return data()[i]; }
  T* begin() const { return data(); }
  T* end() const { return data() + length(); }
  bool whole() const { return bytes_->whole(); }
  void readOnly(bool on) const { bytes_->allow(on ? Access::read : Access::readAndWrite); }

 private:
  std::string name_;
  Flush flush_;
  GuardedBytes* bytes_;
};

/// Memory of a FixedHost whose every array lies between guards.
struct GuardedMemory {
  template <class T>
  using Array = GuardedArray<T>;
  Flush flush;

  template <class T>
  Array<T> make(const char* name, std::int64_t length) const {
    return Array<T>(name, flush, length);
  }
  template <class T>
  static void resize(Array<T>& array, std::int64_t length) {
    array.resize(length);
  }
};

}  // namespace host_kit
