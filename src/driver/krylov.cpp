// Arnoldi's basis and rotations.
#include "driver/krylov.hpp"

#include <cmath>

namespace tornwalzen {

double lengthOf(Vector<const double> a) {
  double sum = 0.0;
  for (Int64 i = 1; i <= a.length(); ++i) sum += a(i) * a(i);
  return std::sqrt(sum);
}

bool Krylov::prepare(Int64 n) {
  n_ = n;
  return basis_.allocate((depth + 1) * n);
}

double Krylov::solve(const std::function<void(Vector<const double>, Vector<double>)>& product,
                     Vector<const double> B, double tolerance, Vector<double> X) {
  const double size = lengthOf(B);
  for (Int64 i = 1; i <= n_; ++i) X(i) = 0.0;
  if (!(size > 0.0)) return 0.0;
  double H[depth + 1][depth] = {}, c[depth] = {}, s[depth] = {}, g[depth + 1] = {size};
  for (Int64 i = 1; i <= n_; ++i) basis(0)(i) = B(i) / size;
  Int used = 0;
  while (used < depth && std::fabs(g[used]) > tolerance * size) {
    const Int k = used++;
    const Vector<double> W = basis(used);
    product(basis(k), W);
    for (Int j = 0; j <= k; ++j) {  // modified Gram-Schmidt
      const Vector<double> V = basis(j);
      double dot = 0.0;
      for (Int64 i = 1; i <= n_; ++i) dot += V(i) * W(i);
      H[j][k] = dot;
      for (Int64 i = 1; i <= n_; ++i) W(i) -= dot * V(i);
    }
    const double rest = lengthOf(W);
    H[k + 1][k] = rest;
    for (Int j = 0; j < k; ++j) {
      const double a = H[j][k], b = H[j + 1][k];
      H[j][k] = c[j] * a + s[j] * b;
      H[j + 1][k] = -s[j] * a + c[j] * b;
    }
    const double r = std::hypot(H[k][k], H[k + 1][k]);
    if (!(r > 0.0) || !std::isfinite(r)) {
      --used;
      break;
    }
    c[k] = H[k][k] / r;
    s[k] = H[k + 1][k] / r;
    H[k][k] = r;
    g[k + 1] = -s[k] * g[k];
    g[k] *= c[k];
    if (!(rest > 1e-14 * size)) break;
    for (Int64 i = 1; i <= n_; ++i) W(i) /= rest;
  }
  double y[depth] = {};
  for (Int k = used - 1; k >= 0; --k) {
    y[k] = g[k];
    for (Int j = k + 1; j < used; ++j) y[k] -= H[k][j] * y[j];
    y[k] /= H[k][k];
  }
  for (Int k = 0; k < used; ++k)
    for (Int64 i = 1; i <= n_; ++i) X(i) += y[k] * basis(k)(i);
  return std::fabs(g[used]) / size;
}

}  // namespace tornwalzen
