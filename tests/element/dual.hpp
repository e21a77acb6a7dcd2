// Forward differentiation for the reference solutions: a value with its derivative along one direction.
// Nested once, Dual<Dual<R>> carries the exact second derivative along two directions.
#pragma once

#include <cmath>

namespace reference {

template <class T>
struct Dual {
  T value{}, slope{};
  Dual() = default;
  Dual(double v) : value(v) {}
  Dual(const T& v, const T& s) : value(v), slope(s) {}
  friend Dual operator+(const Dual& a, const Dual& b) { return {a.value + b.value, a.slope + b.slope}; }
  friend Dual operator-(const Dual& a, const Dual& b) { return {a.value - b.value, a.slope - b.slope}; }
  friend Dual operator*(const Dual& a, const Dual& b) {
    return {a.value * b.value, a.slope * b.value + a.value * b.slope};
  }
  friend Dual operator/(const Dual& a, const Dual& b) {
    const T quotient = a.value / b.value;
    return {quotient, (a.slope - quotient * b.slope) / b.value};
  }
  friend Dual sqrt(const Dual& a) {
    using std::sqrt;
    const T root = sqrt(a.value);
    return {root, a.slope / (T(2.0) * root)};
  }
  friend Dual log(const Dual& a) {
    using std::log;
    return {log(a.value), a.slope / a.value};
  }
};

inline long double plain(double a) {
  return a;
}
inline long double plain(long double a) {
  return a;
}
template <class T>
long double plain(const Dual<T>& a) {
  return plain(a.value);
}

}  // namespace reference
