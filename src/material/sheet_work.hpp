// The work of deformation per volume of the sheet over the total strain, as the press models need it (stresses and work
// dimensionless: over the curve's smallest stress).
//
// The total strain is ε = εp + σ(εp)/E', the plastic strain and an elastic foot of modulus E' = E/10: W = ∫ σ dε is a
// smooth quadratic ½·E'·ε² near zero, where the plastic work alone has a kink, and
//   W = ∫ σ dεp + σ²/(2E') beyond.
// A tenth of Young's modulus rounds the kink over a strain of some percent and leaves the work of larger strains as it is.
//
// On the way to W stands the family W_p = S·((W + c)/S)^p/p with p from 2 to 1: its members for p > 1 are stiff only
// where the sheet is strained much, and W_1 is W but for a constant. c is the work of the foot; it leaves an unstrained
// sheet some stiffness.
#pragma once

#include "material/flow_curve.hpp"

namespace tornwalzen {

struct WorkOfSquare {
  double value;        // W_p of the equivalent strain, its constant such that it is 0 at 0
  double rate, curve;  // first and second derivative with respect to ε̄²
  double sigma;        // flow stress at the total strain
};

class SheetWork {
 public:
  /// CURVE: in, outlives the object. modulus: in, Young's modulus over the curve's smallest stress, > 0. scale: in, S,
  /// over the curve's smallest stress, > 0.
  SheetWork(const FlowCurve& CURVE, double modulus, double scale);

  /// exponent: in, p >= 1.
  void choose(double exponent);
  double exponent() const { return exponent_; }

  /// square: in, ε̄² ≥ 0 of the total strain.
  WorkOfSquare at(double square) const;

 private:
  double plasticStrain(double strain, Stress& stress) const;

  const FlowCurve& CURVE_;
  double modulus_, scale_, footStrain_, footWork_;
  double exponent_ = 1.0, zero_ = 0.0;
};

}  // namespace tornwalzen
