// Work over the total strain.
#include "material/sheet_work.hpp"

#include <algorithm>
#include <cmath>

namespace tornwalzen {

namespace {
constexpr double footShare = 0.1;       // E' over Young's modulus
constexpr double leastDivisor = 0.1;    // of 1 + σ'/E': a curve that softens faster than the foot unloads
constexpr double strainDigits = 1e-14;  // of the total strain
constexpr Int mostIterations = 30;
}  // namespace

SheetWork::SheetWork(const FlowCurve& CURVE, double modulus, double scale)
    : CURVE_(CURVE), modulus_(footShare * modulus), scale_(scale) {
  const double yield = flowStress(CURVE, 0.0).sigma;
  footStrain_ = yield / modulus_;
  footWork_ = 0.5 * yield * footStrain_;
}

void SheetWork::choose(double exponent) {
  exponent_ = exponent;
  zero_ = exponent == 1.0 ? 0.0 : scale_ * std::pow(footWork_ / scale_, exponent) / exponent;
}

/// εp + σ(εp)/E' = ε by Newton's method from the tangent's foot: the curves are concave, so it comes from below.
double SheetWork::plasticStrain(double strain, Stress& stress) const {
  double plastic = strain - footStrain_;
  for (Int k = 0; k < mostIterations; ++k) {
    stress = flowStress(CURVE_, plastic);
    const double excess = plastic + stress.sigma / modulus_ - strain;
    if (std::fabs(excess) <= strainDigits * strain) break;
    plastic = std::max(0.0, plastic - excess / std::max(leastDivisor, 1.0 + stress.slope / modulus_));
  }
  return plastic;
}

WorkOfSquare SheetWork::at(double square) const {
  WorkOfSquare work{};
  const double strain = std::sqrt(square);
  if (strain <= footStrain_) {
    work = {0.5 * modulus_ * square, 0.5 * modulus_, 0.0, modulus_ * strain};
  } else {
    Stress stress;
    plasticStrain(strain, stress);
    const double slope = stress.slope / std::max(leastDivisor, 1.0 + stress.slope / modulus_);
    work.value = stress.work + 0.5 * stress.sigma * stress.sigma / modulus_;
    work.rate = 0.5 * stress.sigma / strain;
    work.curve = 0.25 * (slope - stress.sigma / strain) / square;
    work.sigma = stress.sigma;
  }
  if (exponent_ == 1.0) return work;
  const double base = (work.value + footWork_) / scale_, power = std::pow(base, exponent_ - 1.0);
  const double bend = (exponent_ - 1.0) * power / (base * scale_);
  work.value = scale_ * power * base / exponent_ - zero_;
  work.curve = power * work.curve + bend * work.rate * work.rate;
  work.rate *= power;
  return work;
}

}  // namespace tornwalzen
