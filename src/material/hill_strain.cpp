// The inverse of Hill's matrix, and its turn.
#include "material/hill_strain.hpp"

namespace tornwalzen {

StrainQuadratic hillStrain(const Anisotropy& r) {
  const double G = 1.0 / (1.0 + r.r0), H = r.r0 * G, F = H / r.r90;
  const double N = (r.r45 + 0.5) * (F + G), determinant = (F + H) - H * H;
  // H12 stands for both shears: its factor is (2·H12)²/(2N)
  return {(F + H) / determinant, 1.0 / determinant, 2.0 / N, H / determinant, 0.0, 0.0};
}

StrainQuadratic turned(const StrainQuadratic& Q, double c, double s) {
  // X of Q's axes from Y of the turned ones
  const double T[3][3] = {
      {c * c, s * s, -2.0 * c * s}, {s * s, c * c, 2.0 * c * s}, {c * s, -c * s, c * c - s * s}};
  const double A[3][3] = {{Q.a11, Q.a12, Q.a13}, {Q.a12, Q.a22, Q.a23}, {Q.a13, Q.a23, Q.a33}};
  double B[3][3] = {};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      for (int k = 0; k < 3; ++k)
        for (int l = 0; l < 3; ++l) B[i][j] += T[k][i] * A[k][l] * T[l][j];
  return {B[0][0], B[1][1], B[2][2], B[0][1], B[0][2], B[1][2]};
}

}  // namespace tornwalzen
