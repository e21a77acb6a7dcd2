// A strain measure f of a singular value s, with what its derivatives as a function of the map J need.
//
// Above the threshold s0 the measure is the true one; below it the quadratic that continues f, f' and f'' goes
// on, finite for s ≤ 0 (after A. Stomakhin et al., Energetically consistent invertible elasticity, 2012): a
// triangle that is flat or turned over has a finite energy and is pushed back.
//   logarithmic  f(s) = -ln s   strain of the sheet, e = -ln s
//   metric       f(s) = 1/s²    eigenvalue of the metric C of kinematics.hpp
//
// f[a,b] = (f(a) - f(b))/(a - b) and f[a,a,b] = (f'(a) - f[a,b])/(a - b) are divided differences. All are formed
// without a difference of neighbours, so that s1 = s2, the unstrained sheet, is a point like any other.
#pragma once

#include <cmath>

#include "element/density.hpp"

namespace tornwalzen {

enum class Measure { logarithmic, metric };

struct Spectrum {
  double f1, f2;           // f(s1), f(s2)
  double d1, d2;           // f'
  double dd1, dd2;         // f''
  double f12, f112, f122;  // f[s1,s2], f[s1,s1,s2], f[s1,s2,s2]
};

/// The true measure at a ≥ b > 0: f1, d1, dd1 at a, f2, d2, dd2 at b.
template <Measure measure>
Spectrum trueSpectrum(Order order, double a, double b);

/// With m the mean of a and b and y half their difference over it, ln(a/b) = 2·artanh y; A = artanh(y)/y = 1 + y²·h
/// with h = Σ y²ᵏ/(2k + 3).
template <>
inline Spectrum trueSpectrum<Measure::logarithmic>(Order order, double a, double b) {
  constexpr double seriesLimit = 0.1;  // nine terms: the tenth is below 1e-19
  Spectrum s{};
  s.f1 = -std::log(a);
  s.f2 = -std::log(b);
  if (order == Order::value) return s;
  s.d1 = -1.0 / a;
  s.d2 = -1.0 / b;
  s.dd1 = s.d1 * s.d1;
  s.dd2 = s.d2 * s.d2;
  const double m = 0.5 * (a + b), y = 0.5 * (a - b) / m, yy = y * y;
  double h = 1.0 / 19.0;
  if (y < seriesLimit)
    for (int k = 7; k >= 0; --k) h = h * yy + 1.0 / (2.0 * k + 3.0);
  else
    h = (0.5 * (s.f2 - s.f1) / y - 1.0) / yy;
  s.f12 = -(1.0 + yy * h) / m;
  const double half = 0.5 / (m * m);
  s.f112 = half * (1.0 / (1.0 + y) + y * h);
  s.f122 = half * (1.0 / (1.0 - y) - y * h);
  return s;
}

template <>
inline Spectrum trueSpectrum<Measure::metric>(Order, double a, double b) {
  const double ra = 1.0 / a, rb = 1.0 / b, aa = ra * ra, bb = rb * rb;
  return {aa,
          bb,
          -2.0 * aa * ra,
          -2.0 * bb * rb,
          6.0 * aa * aa,
          6.0 * bb * bb,
          -(a + b) * aa * bb,
          (a + 2.0 * b) * aa * ra * bb,
          (2.0 * a + b) * aa * bb * rb};
}

/// order: in, Order::value fills f1 and f2 alone. s1, s2: in, s1 ≥ |s2|. s0: in, > 0 (dimensionless).
template <Measure measure>
Spectrum extendedSpectrum(Order order, double s1, double s2, double s0) {
  if (s2 >= s0) return trueSpectrum<measure>(order, s1, s2);
  const Spectrum at = trueSpectrum<measure>(Order::hessian, s0, s0);
  const double c0 = at.f1, c1 = at.d1, c2 = 0.5 * at.dd1;
  const auto below = [&](double s, double& f, double& d, double& dd) {
    f = c0 + (c1 + c2 * (s - s0)) * (s - s0);
    d = c1 + 2.0 * c2 * (s - s0);
    dd = 2.0 * c2;
  };
  Spectrum s{};
  below(s2, s.f2, s.d2, s.dd2);
  if (s1 < s0) {
    below(s1, s.f1, s.d1, s.dd1);
    s.f12 = c1 + c2 * (s1 + s2 - 2.0 * s0);
    s.f112 = s.f122 = c2;
    return s;
  }
  // s1 ≥ s0 > s2: every difference is a mean, weighted by θ, of one above and one below the threshold
  const Spectrum above = trueSpectrum<measure>(order, s1, s0);
  const double theta = (s1 - s0) / (s1 - s2), rest = 1.0 - theta;
  s.f1 = above.f1;
  s.d1 = above.d1;
  s.dd1 = above.dd1;
  s.f12 = theta * above.f12 + rest * (c1 + c2 * (s2 - s0));
  const double middle = theta * above.f122 + rest * c2;
  s.f112 = theta * above.f112 + rest * middle;
  s.f122 = rest * c2 + theta * middle;
  return s;
}

}  // namespace tornwalzen
