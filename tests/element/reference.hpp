// The element potential once more, written from its definition over the six blank coordinates, without
// branches: eigenvalues of the metric, logarithms, integral of the flow curve. Any number type serves, so it
// is differentiated by dual numbers or evaluated in long double; nothing is shared with the library but the
// table FC.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <type_traits>

#include "dual.hpp"
#include "host_kit/default_run.hpp"
#include "material/material_setup.hpp"

namespace reference {

using tornwalzen::Int;
using tornwalzen::run;
using Part = std::array<double, 9>;   // x y z of corner 1, then 2, then 3 (mm)
using Blank = std::array<double, 6>;  // u1 v1 u2 v2 u3 v3 (mm)

template <class T>
struct Metric {
  T D, C11, C22, C12;
};

template <class T>
Metric<T> metric(const std::array<T, 6>& w, const Part& part) {
  const T u1 = w[0], v1 = w[1], u2 = w[2], v2 = w[3], u3 = w[4], v3 = w[5];
  const T D = u1 * (v2 - v3) + u2 * (v3 - v1) + u3 * (v1 - v2);
  T a[3], b[3];
  for (int i = 0; i < 3; ++i) {
    const T x1(part[i]), x2(part[3 + i]), x3(part[6 + i]);
    const T d1 = x3 - x2, d2 = x1 - x3, d3 = x2 - x1;
    a[i] = (v1 * d1 + v2 * d2 + v3 * d3) / D;
    b[i] = T(0.0) - (u1 * d1 + u2 * d2 + u3 * d3) / D;
  }
  return {D, a[0] * a[0] + a[1] * a[1] + a[2] * a[2], b[0] * b[0] + b[1] * b[1] + b[2] * b[2],
          a[0] * b[0] + a[1] * b[1] + a[2] * b[2]};
}

template <class T>
T geometricDensity(const Metric<T>& C) {
  const T half(0.5), one(1.0);
  const T E11 = (C.C11 - one) * half, E22 = (C.C22 - one) * half, E12 = C.C12 * half;
  return E11 * E11 + E22 * E22 + E12 * E12;
}

/// A constant with all the digits of the innermost number.
template <class T>
T scaled(long double factor) {
  if constexpr (std::is_arithmetic_v<T>)
    return static_cast<T>(factor);
  else
    return T(scaled<decltype(T{}.value)>(factor), decltype(T{}.value){});
}

/// ½·W² of the principal logarithmic strains.
template <class T>
T workDensity(const T& e1, const T& e2) {
  using std::sqrt;
  const auto FC = tornwalzen::flowCurve();
  const double r = tornwalzen::run.options.anisotropy;
  const T S = e1 * e1 + e2 * e2 + T(2.0 * r / (1.0 + r)) * e1 * e2 + T(1e-10);
  const long double factor = (1.0L + r) / std::sqrt(1.0L + 2.0L * r) * std::sqrt(3.0L) / 2.0L;
  const T strain = T(1.154700517654419) * scaled<T>(factor) * sqrt(S);
  const auto integral = [&](Int k, const T& to) {
    const T from(FC(k, 1)), from2 = from * from, to2 = to * to;
    return T(FC(k, 4)) * (to2 * to2 - from2 * from2) / T(4.0) +
           T(FC(k, 5)) * (to2 * to - from2 * from) / T(3.0) + T(FC(k, 6)) * (to2 - from2) / T(2.0) +
           T(FC(k, 7)) * (to - from);
  };
  Int j = 2;
  while (j < run.npkt && FC(j, 1) < plain(strain)) ++j;
  T W(0.0);
  for (Int k = 1; k <= j - 2; ++k) W = W + integral(k, T(FC(k + 1, 1)));
  W = W + integral(j - 1, strain);
  return T(0.5) * W * W;
}

template <class T>
T plasticDensity(const Metric<T>& C) {
  using std::log;
  using std::sqrt;
  const T m = (C.C11 + C.C22) * T(0.5), d = C.C11 - C.C22;
  const T r = sqrt(d * d * T(0.25) + C.C12 * C.C12);
  return workDensity(T(0.5) * log(m + r), T(0.5) * log(m - r));
}

/// Twice the area of the part's triangle, from its three edges (Heron's formula).
inline long double twiceArea(const Part& part) {
  const auto edge = [&part](int a, int b) {
    long double square = 0.0L;
    for (int i = 0; i < 3; ++i) {
      const long double d = static_cast<long double>(part[3 * a + i]) - part[3 * b + i];
      square += d * d;
    }
    return std::sqrt(square);
  };
  const long double a = edge(0, 1), b = edge(1, 2), c = edge(2, 0), s = (a + b + c) / 2.0L;
  return 2.0L * std::sqrt(s * (s - a) * (s - b) * (s - c));
}

template <class T>
T potential(const std::array<T, 6>& w, const Part& part) {
  const Metric<T> C = metric(w, part);
  const T weight = tornwalzen::run.options.partReference ? scaled<T>(twiceArea(part)) : C.D;
  return weight * (run.istat == 0 ? geometricDensity(C) : plasticDensity(C));
}

/// Exact derivatives of the unbranched potential in long double; not where the eigenvalues meet exactly.
inline void differentiate(const Blank& blank, const Part& part, double& value, double (&gradient)[6],
                          double (&hessian)[36]) {
  using Number = Dual<Dual<long double>>;
  for (int k = 0; k < 6; ++k) {
    for (int l = 0; l < 6; ++l) {
      std::array<Number, 6> w;
      for (int i = 0; i < 6; ++i) {
        w[i].value = {static_cast<long double>(blank[i]), i == l ? 1.0L : 0.0L};
        w[i].slope.value = i == k ? 1.0L : 0.0L;
      }
      const Number P = potential(w, part);
      value = static_cast<double>(P.value.value);
      gradient[k] = static_cast<double>(P.slope.value);
      hessian[6 * k + l] = static_cast<double>(P.slope.slope);
    }
  }
}

/// A triangle of the part whose metric over `blank` is C11, C22, C12 (up to rounding), somewhere in space.
/// turn: three angles (radians) of its attitude; place: of its first corner (mm).
inline Part partOfMetric(const Blank& blank, double C11, double C22, double C12, const double (&turn)[3],
                         const double (&place)[3]) {
  using L = long double;
  const L ax = std::sqrt(L(C11)), bx = C12 / ax, by = std::sqrt(C22 - bx * bx);
  L frame[2][3];  // two orthonormal vectors
  const L c0 = std::cos(L(turn[0])), s0 = std::sin(L(turn[0])), c1 = std::cos(L(turn[1]));
  const L s1 = std::sin(L(turn[1])), c2 = std::cos(L(turn[2])), s2 = std::sin(L(turn[2]));
  const L first[3] = {c0 * c1, s0 * c1, -s1};
  const L second[3] = {c0 * s1 * s2 - s0 * c2, s0 * s1 * s2 + c0 * c2, c1 * s2};
  for (int i = 0; i < 3; ++i) frame[0][i] = first[i], frame[1][i] = second[i];
  Part part;
  for (int n = 0; n < 3; ++n) {
    const L u = L(blank[2 * n]) - blank[0], v = L(blank[2 * n + 1]) - blank[1];
    const L x = ax * u + bx * v, y = by * v;
    for (int i = 0; i < 3; ++i)
      part[3 * n + i] = static_cast<double>(place[i] + x * frame[0][i] + y * frame[1][i]);
  }
  return part;
}

/// Random blanks with corners within `size` mm and a height of at least a tenth of it, turned the right way
/// round.
class RandomTriangles {
 public:
  explicit RandomTriangles(unsigned seed) : engine_(seed) {}
  double between(double low, double high) { return std::uniform_real_distribution<>(low, high)(engine_); }
  Blank blank(double size) {
    for (;;) {
      Blank w;
      for (double& x : w) x = between(-size, size);
      const double D = (w[2] - w[0]) * (w[5] - w[1]) - (w[3] - w[1]) * (w[4] - w[0]);
      if (D < 0.0) std::swap(w[2], w[4]), std::swap(w[3], w[5]);
      if (std::fabs(D) > 0.2 * size * size) return w;
    }
  }
  Part part(const Blank& blank, double C11, double C22, double C12, double distance) {
    const double turn[3] = {between(-3, 3), between(-3, 3), between(-3, 3)};
    const double place[3] = {between(-distance, distance), between(-distance, distance),
                             between(-distance, distance)};
    return partOfMetric(blank, C11, C22, C12, turn, place);
  }

 private:
  std::mt19937 engine_;
};

}  // namespace reference
