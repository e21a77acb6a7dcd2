// Least squares over the last steps.
#include "driver/step_mixing.hpp"

#include <utility>

namespace tornwalzen {

namespace {

constexpr double dependent = 1e-10;  // of a step's square: what is left of it beside the others is rounding

double dot(Vector<const double> a, Vector<const double> b) {
  double sum = 0.0;
  for (Int64 i = 1; i <= a.length(); ++i) sum += a(i) * b(i);
  return sum;
}

}  // namespace

bool StepMixing::prepare(Int64 n) {
  n_ = n;
  restart();
  return differences_.allocate(2 * depth * n) && lastX_.allocate(n) && lastF_.allocate(n);
}

void StepMixing::remember(Vector<const double> X, Vector<const double> F) {
  const Vector<double> lastX = lastX_.vector(), lastF = lastF_.vector();
  if (!first_) {
    newest_ = known_ == 0 ? 0 : (newest_ + 1) % depth;
    known_ = known_ < depth ? known_ + 1 : depth;
    const Vector<double> DX = dX(newest_), DF = dF(newest_);
    for (Int64 i = 1; i <= n_; ++i) DX(i) = X(i) - lastX(i), DF(i) = F(i) - lastF(i);
  }
  for (Int64 i = 1; i <= n_; ++i) lastX(i) = X(i), lastF(i) = F(i);
  first_ = false;
}

void StepMixing::mix(Vector<const double> X, Vector<double> F) {
  remember(X, F);
  // normal equations, newest step first, solved as far as the steps are independent
  double A[depth][depth + 1], gamma[depth] = {};
  Int place[depth], used = 0;
  for (Int k = 0; k < known_; ++k) {
    place[k] = (newest_ - k + depth) % depth;
    for (Int j = 0; j <= k; ++j) A[k][j] = A[j][k] = dot(dF(place[k]), dF(place[j]));
    A[k][depth] = dot(dF(place[k]), F);
  }
  double own[depth];
  for (Int k = 0; k < known_; ++k) own[k] = A[k][k];
  for (Int k = 0; k < known_; ++k, ++used) {  // no pivoting: positive definite
    if (!(A[k][k] > dependent * own[k])) break;
    for (Int i = k + 1; i < known_; ++i) {
      const double factor = A[i][k] / A[k][k];
      for (Int j = k; j < known_; ++j) A[i][j] -= factor * A[k][j];
      A[i][depth] -= factor * A[k][depth];
    }
  }
  for (Int k = used - 1; k >= 0; --k) {
    gamma[k] = A[k][depth];
    for (Int j = k + 1; j < used; ++j) gamma[k] -= A[k][j] * gamma[j];
    gamma[k] /= A[k][k];
  }
  for (Int k = 0; k < used; ++k) {
    const Vector<double> DX = dX(place[k]), DF = dF(place[k]);
    for (Int64 i = 1; i <= n_; ++i) F(i) -= gamma[k] * (DX(i) + DF(i));
  }
}

}  // namespace tornwalzen
