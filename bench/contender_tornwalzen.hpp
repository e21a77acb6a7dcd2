// The library's own solver by its steps, on work arrays of exactly the lengths that each step reports.
#pragma once

#include <memory>
#include <new>
#include <utility>

#include "contender.hpp"

namespace bench {

/// Leaves new elements as the heap gives them, as a host's malloc does: the page faults of the factor's
/// memory then count where it is written, in the first factorization, for all contenders alike.
template <class T>
struct Untouched : std::allocator<T> {
  template <class U>
  struct rebind {
    using other = Untouched<U>;
  };
  template <class U>
  void construct(U* p) {
    ::new (static_cast<void*>(p)) U;
  }
  template <class U, class... Args>
  void construct(U* p, Args&&... args) {
    ::new (static_cast<void*>(p)) U(std::forward<Args>(args)...);
  }
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
  std::vector<std::int32_t, Untouched<std::int32_t>> work_;
  std::vector<double, Untouched<double>> rwork_;
  std::vector<double> wrhs_;
  double peakBytes_ = 0.0;
};

}  // namespace bench
