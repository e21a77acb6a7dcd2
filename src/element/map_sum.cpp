// Eigenvalues of the four-by-four tangents in J.
#include "element/map_sum.hpp"

#include <cmath>

namespace tornwalzen {

namespace {

/// Adds factor·λ·v·vᵀ for the negative eigenvalues λ of the block (i, j).
void softenBlock(double factor, int i, int j, double (&H)[4][4]) {
  const double m = 0.5 * (H[i][i] + H[j][j]), d = 0.5 * (H[i][i] - H[j][j]), o = H[i][j];
  const double r = std::sqrt(d * d + o * o);
  if (m - r >= 0.0) return;
  const double shift[2] = {std::fmin(m + r, 0.0) * factor, (m - r) * factor};
  // H = m + r·(cos, sin; sin, -cos): the projectors on its axes are ½·(1 ± that)
  const double c = r > 0.0 ? d / r : 1.0, s = r > 0.0 ? o / r : 0.0;
  const double sum = 0.5 * (shift[0] + shift[1]), difference = 0.5 * (shift[0] - shift[1]);
  H[i][i] += sum + difference * c;
  H[j][j] += sum - difference * c;
  H[i][j] += difference * s;
  H[j][i] = H[i][j];
}

/// One Jacobi rotation in the plane (p, q) of A; V collects the axes in its columns.
void rotate(int p, int q, double (&A)[4][4], double (&V)[4][4]) {
  const double apq = A[p][q];
  if (apq == 0.0) return;
  const double ratio = 0.5 * (A[q][q] - A[p][p]) / apq;
  const double t = (ratio >= 0.0 ? 1.0 : -1.0) / (std::fabs(ratio) + std::sqrt(1.0 + ratio * ratio));
  const double c = 1.0 / std::sqrt(1.0 + t * t), s = t * c;
  A[p][p] -= t * apq;
  A[q][q] += t * apq;
  A[p][q] = A[q][p] = 0.0;
  for (int k = 0; k < 4; ++k) {
    if (k != p && k != q) {
      const double kp = A[k][p], kq = A[k][q];
      A[k][p] = A[p][k] = c * kp - s * kq;
      A[k][q] = A[q][k] = s * kp + c * kq;
    }
    const double vp = V[k][p], vq = V[k][q];
    V[k][p] = c * vp - s * vq;
    V[k][q] = s * vp + c * vq;
  }
}

void softenWhole(double factor, double (&H)[4][4]) {
  constexpr int sweeps = 12;  // quadratic convergence: six reach rounding
  double A[4][4], V[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
  for (int i = 0; i < 4; ++i)
    for (int j = 0; j < 4; ++j) A[i][j] = H[i][j];
  for (int sweep = 0; sweep < sweeps; ++sweep) {
    double off = 0.0, on = 0.0;
    for (int p = 0; p < 4; ++p) {
      on += A[p][p] * A[p][p];
      for (int q = p + 1; q < 4; ++q) off += A[p][q] * A[p][q];
    }
    if (!(off > 1e-30 * on)) break;
    for (int p = 0; p < 4; ++p)
      for (int q = p + 1; q < 4; ++q) rotate(p, q, A, V);
  }
  for (int k = 0; k < 4; ++k) {
    if (A[k][k] >= 0.0) continue;
    for (int i = 0; i < 4; ++i)
      for (int j = 0; j < 4; ++j) H[i][j] += factor * A[k][k] * (V[i][k] * V[j][k]);
  }
}

}  // namespace

void softenNegative(double theta, MapSum& sum) {
  using namespace entry;
  if (theta == 0.0) return;
  if (sum.coupled) return softenWhole(-theta, sum.H);
  softenBlock(-theta, k11, k22, sum.H);
  softenBlock(-theta, k21, k12, sum.H);
}

}  // namespace tornwalzen
