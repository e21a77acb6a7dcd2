// CHOLMOD, whatever its factorization and ordering: the parts that all kinds share.
#pragma once

#include <suitesparse/cholmod.h>

#include "contender.hpp"

namespace bench {

class Cholmod : public Contender {
 public:
  /// kind: CHOLMOD_SUPERNODAL (L·Lᵀ) or CHOLMOD_SIMPLICIAL (L·D·Lᵀ). ordering: CHOLMOD_AMD or CHOLMOD_METIS. threads: of
  /// its own loops; those of BLAS are set by the environment.
  Cholmod(const SymmetricMatrix& a, int kind, int ordering = CHOLMOD_AMD, int threads = 1);
  ~Cholmod() override;
  Cholmod(const Cholmod&) = delete;
  Cholmod& operator=(const Cholmod&) = delete;
  void analyse() override;
  void factorize() override;
  void solve(const std::vector<double>& b, std::vector<double>& x) override;
  Fill fill() const override { return {common_.lnz, common_.fl}; }
  double storedEntries() const override;
  double peakBytes() const override { return static_cast<double>(common_.memory_usage); }

 private:
  void test(bool good) const;

  cholmod_common common_{};
  cholmod_sparse matrix_{};  // a view of the caller's arrays
  cholmod_factor* L_ = nullptr;
  cholmod_dense *X_ = nullptr, *Y_ = nullptr, *E_ = nullptr;  // kept between solves
};

}  // namespace bench
