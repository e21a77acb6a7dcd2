// The library's own solver by its steps, on work arrays of exactly the lengths that each step reports.
#pragma once

#include "contender.hpp"

namespace bench {

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
  std::vector<std::int32_t> work_;
  std::vector<double> rwork_, wrhs_;
  double peakBytes_ = 0.0;
};

}  // namespace bench
