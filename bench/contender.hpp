// A sparse symmetric solver in the race: one object factors one matrix. All use one core and hold what they
// allocate until they end, so that a repeated factorization finds its memory.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "membrane_matrix.hpp"

namespace bench {

/// What the ordering asks for, before supernodes are merged.
struct Fill {
  double entries = 0.0;  // nnz(L), diagonal included
  double flops = 0.0;    // Σ c², c the entries of a column of L, diagonal included
};

class Contender {
 public:
  virtual ~Contender() = default;
  /// Ordering and symbolic factorization; then the numeric one, the first or a repeated one; then a solve of
  /// A·x = b. Throw std::runtime_error on failure.
  virtual void analyse() = 0;
  virtual void factorize() = 0;
  virtual void solve(const std::vector<double>& b, std::vector<double>& x) = 0;
  virtual Fill fill() const = 0;
  /// Entries of L as stored, explicit zeros included.
  virtual double storedEntries() const = 0;
  /// Largest number of bytes held at one time since the start, the input matrix and b left out, x included.
  virtual double peakBytes() const = 0;
};

using MakeContender = std::unique_ptr<Contender> (*)(const SymmetricMatrix&);

/// The matrix must outlive the contender.
std::unique_ptr<Contender> makeTornwalzen(const SymmetricMatrix& a);
std::unique_ptr<Contender> makeCholmodSupernodal(const SymmetricMatrix& a);
std::unique_ptr<Contender> makeCholmodMetis(const SymmetricMatrix& a);
std::unique_ptr<Contender> makeCholmodSimplicial(const SymmetricMatrix& a);
std::unique_ptr<Contender> makeEigenSimplicial(const SymmetricMatrix& a);

}  // namespace bench
