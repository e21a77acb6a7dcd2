// One-based views of the arrays that the host owns: a view knows its array's name and bounds, never its memory.
//
// Inside the library element 1 is the first element and two-index arrays are column-major. Zero-based
// arithmetic stays in this file and in the dense kernels. In builds with TORNWALZEN_CHECKED every access tests
// its subscripts and ends the process with the subscript message: that finds our own errors. What a host passes
// in is tested once per call by interface/subscript_check.hpp and never ends the process.
#pragma once

#include <cstdint>
#include <type_traits>

namespace tornwalzen {

using Int = std::int32_t;    // counts, node numbers, equation numbers: the width of the host's integers
using Int64 = std::int64_t;  // sums and products of counts, before they are known to fit an Int

/// Prints the subscript message on standard error and aborts (checked builds only).
/// `value`: the offending subscript, one-based; `position`: 1 or 2; `upper`: the array's upper bound.
[[noreturn]] void subscriptAbort(const char* name, int position, Int64 value, Int64 upper);

/// A vector of `length` elements of T, subscripts 1..length. Copying copies the view, not the elements.
template <class T>
class Vector {
 public:
  Vector() = default;
  Vector(const char* name, T* first, Int64 length) : name_(name), first_(first), length_(length) {}
  /// A view to write through serves wherever one to read through is asked for.
  template <class U, class = std::enable_if_t<std::is_same_v<const U, T>>>
  Vector(const Vector<U>& other) : name_(other.name()), first_(other.data()), length_(other.length()) {}

  T& operator()(Int64 i) const {
#ifdef TORNWALZEN_CHECKED
    if (i < 1 || i > length_) subscriptAbort(name_, 1, i, length_);
#endif
    return first_[i - 1];
  }
  const char* name() const {
    return name_;
  }
  Int64 length() const {
    return length_;
  }
  /// The first element's address, for kernels that work zero-based on contiguous memory.
  T* data() const {
    return first_;
  }

 private:
  const char* name_ = "";
  T* first_ = nullptr;
  Int64 length_ = 0;
};

/// A column-major table of `rows` × `columns` elements of T, subscripts from 1, leading dimension `rows`.
template <class T>
class Table {
 public:
  Table() = default;
  Table(const char* name, T* first, Int64 rows, Int64 columns)
      : name_(name), first_(first), rows_(rows), columns_(columns) {}
  template <class U, class = std::enable_if_t<std::is_same_v<const U, T>>>
  Table(const Table<U>& other)
      : name_(other.name()), first_(other.data()), rows_(other.rows()), columns_(other.columns()) {}

  T& operator()(Int64 i, Int64 j) const {
#ifdef TORNWALZEN_CHECKED
    if (i < 1 || i > rows_) subscriptAbort(name_, 1, i, rows_);
    if (j < 1 || j > columns_) subscriptAbort(name_, 2, j, columns_);
#endif
    return first_[(j - 1) * rows_ + (i - 1)];
  }
  const char* name() const {
    return name_;
  }
  Int64 rows() const {
    return rows_;
  }
  Int64 columns() const {
    return columns_;
  }
  T* data() const {
    return first_;
  }

 private:
  const char* name_ = "";
  T* first_ = nullptr;
  Int64 rows_ = 0;
  Int64 columns_ = 0;
};

}  // namespace tornwalzen
