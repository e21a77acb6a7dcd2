// An array that the host owns and hands to the library: it may grow or shrink and keeps its front.
#ifndef TORNWALZEN_APP_HOST_ARRAY_HPP
#define TORNWALZEN_APP_HOST_ARRAY_HPP

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <type_traits>

namespace host {

template <class T>
class HostArray {
  static_assert(std::is_trivial_v<T>);

 public:
  HostArray() = default;
  explicit HostArray(std::int64_t length) { resize(length); }
  ~HostArray() { std::free(data_); }
  HostArray(const HostArray&) = delete;
  HostArray& operator=(const HostArray&) = delete;

  // New entries are not initialised: the pages of a large work array are touched only where it is used.
  // Throws std::bad_alloc and keeps the array if there is no memory.
  void resize(std::int64_t length) {
    const std::size_t entries = length > 0 ? static_cast<std::size_t>(length) : 1;  // never null
    if (entries > SIZE_MAX / sizeof(T)) throw std::bad_alloc();
    void* moved = std::realloc(data_, entries * sizeof(T));
    if (moved == nullptr) throw std::bad_alloc();
    data_ = static_cast<T*>(moved);
    length_ = length;
  }
  void fill(T value) {
    for (std::int64_t k = 0; k < length_; ++k) data_[k] = value;
  }

  T* data() { return data_; }
  const T* data() const { return data_; }
  std::int64_t length() const { return length_; }
  T& operator[](std::int64_t k) { return data_[k]; }
  const T& operator[](std::int64_t k) const { return data_[k]; }

 private:
  T* data_ = nullptr;
  std::int64_t length_ = 0;
};

}  // namespace host

#endif
