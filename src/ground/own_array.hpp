// Memory that the library owns: arrays that say whether they could be had, and hand out one-based views.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

#include "ground/array_view.hpp"

namespace tornwalzen {

template <class T>
class OwnArray {
 public:
  explicit OwnArray(const char* name) : name_(name) {}
  /// The other array is empty then.
  OwnArray(OwnArray&& other) noexcept : OwnArray(other.name_) { *this = std::move(other); }
  OwnArray& operator=(OwnArray&& other) noexcept {
    name_ = other.name_;
    first_ = std::move(other.first_);
    length_ = std::exchange(other.length_, 0);
    room_ = std::exchange(other.room_, 0);
    return *this;
  }

  /// Room for `length` elements, their values undefined; what was held is given back first. length: in, >= 0.
  /// False without memory: the array is then empty.
  [[nodiscard]] bool allocate(Int64 length) {
    release();
    if (length > static_cast<Int64>(PTRDIFF_MAX / sizeof(T))) return false;  // what `new` would throw at
    first_.reset(new (std::nothrow) T[static_cast<std::size_t>(std::max<Int64>(length, 1))]);
    if (first_) length_ = room_ = length;
    return first_ != nullptr;
  }
  /// The same, with every element `value`.
  [[nodiscard]] bool allocate(Int64 length, T value) {
    if (!allocate(length)) return false;
    fill(value);
    return true;
  }
  /// Changes the length and keeps what both have. What was had for a greater length before stays with the array, so that
  /// only growth beyond that can fail. False without memory: the array is then as it was.
  [[nodiscard]] bool resize(Int64 length) {
    if (first_ && length <= room_) {
      length_ = length;
      return true;
    }
    std::unique_ptr<T[]> other(new (std::nothrow) T[static_cast<std::size_t>(std::max<Int64>(length, 1))]);
    if (!other) return false;
    std::copy(first_.get(), first_.get() + std::min(length, length_), other.get());
    first_ = std::move(other);
    length_ = room_ = length;
    return true;
  }
  void release() {
    first_.reset();
    length_ = room_ = 0;
  }
  void fill(T value) { std::fill(first_.get(), first_.get() + length_, value); }

  Int64 length() const { return length_; }
  T* data() { return first_.get(); }
  const T* data() const { return first_.get(); }
  Vector<const T> vector() const { return {name_, first_.get(), length_}; }
  Vector<T> vector() { return {name_, first_.get(), length_}; }
  /// As a table of `columns` columns.
  Table<T> table(Int64 columns) { return {name_, first_.get(), length_ / columns, columns}; }

 private:
  const char* name_;
  std::unique_ptr<T[]> first_;
  Int64 length_ = 0, room_ = 0;
};

}  // namespace tornwalzen
