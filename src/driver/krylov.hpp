// Linear equations known by their products alone (Y. Saad, M. H. Schultz, GMRES: a generalized minimal residual algorithm
// for solving nonsymmetric linear systems, 1986), as Newton's method needs them where loads follow the blank: their
// tangent is unsymmetric and is never formed (D. A. Knoll, D. E. Keyes, Jacobian-free Newton-Krylov methods, 2004).
#pragma once

#include <functional>

#include "ground/own_array.hpp"

namespace tornwalzen {

class Krylov {
 public:
  static constexpr Int depth = 24;  // products at most

  /// Memory for n unknowns: depth + 1 vectors. False without it.
  bool prepare(Int64 n);
  /// product: W = A·V of n unknowns each. B: in, the right-hand side. X: out, the combination of the products that leaves
  /// the least of B - A·X, down to `tolerance` of B or as far as `depth` products reach. Returns what is left of B, 0..1.
  double solve(const std::function<void(Vector<const double> V, Vector<double> W)>& product,
               Vector<const double> B, double tolerance, Vector<double> X);

 private:
  Vector<double> basis(Int k) { return {"BASIS", basis_.data() + Int64{k} * n_, n_}; }

  OwnArray<double> basis_{"BASIS"};
  Int64 n_ = 0;
};

/// √Σ a².
double lengthOf(Vector<const double> a);

}  // namespace tornwalzen
