// Faster fixed-point iterations: the next step from the last few (D. G. Anderson, Iterative procedures for nonlinear integral
// equations, 1965; H. F. Walker, P. Ni, Anderson acceleration for fixed-point iterations, 2011).
//
// f(x) = 0 is iterated with x + f(x). Of the last steps that combination is sought that leaves the least of f,
//   γ = argmin |f - ΔF·γ|,   x + f - (ΔX + ΔF)·γ.
#pragma once

#include "ground/own_array.hpp"

namespace tornwalzen {

class StepMixing {
 public:
  static constexpr Int depth = 5;  // steps that are remembered

  /// Memory for n unknowns; 2·depth + 2 vectors. False without it.
  bool prepare(Int64 n);
  /// Forgets all steps: f is another function from now on.
  void restart() { known_ = 0, first_ = true; }
  /// F: inout, n: in f at X, out the mixed step. X: in, n.
  void mix(Vector<const double> X, Vector<double> F);

 private:
  Vector<double> dX(Int k) { return {"DX", differences_.data() + 2 * Int64{k} * n_, n_}; }
  Vector<double> dF(Int k) { return {"DF", differences_.data() + (2 * Int64{k} + 1) * n_, n_}; }
  void remember(Vector<const double> X, Vector<const double> F);

  OwnArray<double> differences_{"DIFFERENCES"}, lastX_{"LASTX"}, lastF_{"LASTF"};
  Int64 n_ = 0;
  Int known_ = 0, newest_ = 0;
  bool first_ = true;
};

}  // namespace tornwalzen
