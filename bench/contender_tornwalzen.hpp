// The library's own solver by its steps, on work arrays of exactly the lengths that each step reports.
#pragma once

#include <cstdlib>
#include <new>

#include "contender.hpp"

namespace bench {

/// A host's array: kept by realloc, so that it grows and shrinks without a copy where the system can, and its
/// pages are touched only where the library writes.
template <class T>
class HostArray {
 public:
  HostArray() = default;
  HostArray(const HostArray&) = delete;
  HostArray& operator=(const HostArray&) = delete;
  ~HostArray() { std::free(first_); }

  /// Throws std::bad_alloc; the array then stays as it is.
  void resize(std::size_t size) {
    void* const moved = std::realloc(first_, (size > 0 ? size : 1) * sizeof(T));
    if (!moved) throw std::bad_alloc();
    first_ = static_cast<T*>(moved);
    size_ = size;
  }
  T* data() { return first_; }
  const T* data() const { return first_; }
  std::size_t size() const { return size_; }
  const T& operator[](std::size_t k) const { return first_[k]; }

 private:
  T* first_ = nullptr;
  std::size_t size_ = 0;
};

class Tornwalzen : public Contender {
 public:
  explicit Tornwalzen(const SymmetricMatrix& a) : a_(a) {}
  void analyse() override;
  void factorize() override;
  void solve(const std::vector<double>& b, std::vector<double>& x) override;
  Fill fill() const override;
  double storedEntries() const override;
  double peakBytes() const override { return peakBytes_; }

  /// Equation that stands at each place of the elimination, zero-based.
  std::vector<std::int32_t> eliminationOrder() const;

 private:
  void step(std::int32_t code, const double* b, double* x);
  void supplyLengths();

  const SymmetricMatrix& a_;
  HostArray<std::int32_t> work_;
  HostArray<double> rwork_;
  std::vector<double> wrhs_;
  double peakBytes_ = 0.0;
};

}  // namespace bench
