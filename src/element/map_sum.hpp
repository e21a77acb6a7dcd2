// What the terms of the potential add up to in one triangle, as a function of its map J to the blank.
//
// In the frames of J = U·diag(s1, s2)·Vᵀ a change of the map is K = Uᵀ·dJ·V with the four entries k11, k22 (the
// stretches) and k21, k12 (what turns the axes). A term is a density of a symmetric strain X = U·diag(f(s1),
// f(s2))·Uᵀ in the blank, f a measure of extended_measure.hpp. Seen from the frame U its first and second
// changes are, with N = s1·k21 + s2·k12, γ = f[s1,s2]/(s1 + s2), w = 1/(s1 + s2):
//   X11'  = f'(s1)·k11,   X22' = f'(s2)·k22,   X12' = γ·N,
//   X11'' = f''(s1)·k11² + s1·A·k21² + (s1·f[112]·w + f[12]·(s1 + 2s2)·w²)·k12² + 2·s2·A·k12·k21,
//   X22'' = the same with 1 and 2 exchanged everywhere, k12 and k21 too,
//   X12'' = 2·k11·((s1·f[112]·w + f[12]·s2·w²)·k21 + s2·A·k12)
//         + 2·k22·((s2·f[122]·w + f[12]·s1·w²)·k12 + s1·B·k21),
//   A = (f[112] - f[12]·w)·w,   B = (f[122] - f[12]·w)·w.
// A density that does not turn the axes (g3 = h13 = h23 = 0: a function of the singular values) leaves two blocks
// of two: stretch, and twist with flip (B. Smith, F. de Goes, T. Kim, Analytic eigensystems for isotropic
// distortion energies, 2019).
#pragma once

#include <algorithm>

#include "element/blank_map.hpp"
#include "element/density.hpp"
#include "element/extended_measure.hpp"

namespace tornwalzen {

/// Order of the entries of K.
namespace entry {
constexpr int k11 = 0, k22 = 1, k21 = 2, k12 = 3;
}

struct MapSum {
  double value = 0.0;    // mm²
  double P[4] = {};      // ∂/∂K (mm²)
  double H[4][4] = {};   // ∂²/∂K∂K (mm²), both triangles
  bool coupled = false;  // does a term turn the axes, so that the two blocks are not alone?
};

/// Whose axes the strain of a density belongs to: X = U·diag·Uᵀ in the blank, or V·diag·Vᵀ on the part. The second is
/// the first with Jᵀ in place of J: k21 and k12 change places.
enum class StrainSide { blank, part };

/// Adds weight·F to the sum. X: in, spectrum of the term's measure at (s1, s2). F: in, the density and its
/// derivatives in X11, X22, X12 seen from the frame U (of the part: V), as far as `order` asks. weight: in, mm².
template <StrainSide side = StrainSide::blank>
inline void addDensity(Order order, const PrincipalMap& at, const Spectrum& X, const Density& F,
                       double weight, MapSum& sum) {
  constexpr bool swapped = side == StrainSide::part;
  constexpr int k11 = entry::k11, k22 = entry::k22, k21 = swapped ? entry::k12 : entry::k21,
                k12 = swapped ? entry::k21 : entry::k12;
  sum.value += weight * F.phi;
  if (order == Order::value) return;

  // A map that is a reflection has no axes: there the divisor is kept away from zero.
  const double s1 = at.s1, s2 = at.s2, w = 1.0 / std::max(s1 + s2, 1e-6 * s1 + 1e-300);
  const double gamma = X.f12 * w;
  const double g1 = weight * F.g1, g2 = weight * F.g2, g3 = weight * F.g3;
  sum.P[k11] += g1 * X.d1;
  sum.P[k22] += g2 * X.d2;
  sum.P[k21] += g3 * gamma * s1;
  sum.P[k12] += g3 * gamma * s2;
  if (order != Order::hessian) return;

  const double A = (X.f112 - gamma) * w, B = (X.f122 - gamma) * w;
  const double h11 = weight * F.h11, h22 = weight * F.h22, h12 = weight * F.h12, h33 = weight * F.h33;
  const auto put = [&sum](int i, int j, double h) {
    sum.H[i][j] += h;
    if (i != j) sum.H[j][i] += h;
  };
  put(k11, k11, h11 * X.d1 * X.d1 + g1 * X.dd1);
  put(k22, k22, h22 * X.d2 * X.d2 + g2 * X.dd2);
  put(k11, k22, h12 * X.d1 * X.d2);
  const double turn = h33 * gamma * gamma;
  put(k21, k21, turn * s1 * s1 + g1 * s1 * A + g2 * (s2 * X.f122 + gamma * (s2 + 2.0 * s1)) * w);
  put(k12, k12, turn * s2 * s2 + g2 * s2 * B + g1 * (s1 * X.f112 + gamma * (s1 + 2.0 * s2)) * w);
  put(k21, k12, turn * s1 * s2 + g1 * s2 * A + g2 * s1 * B);
  if (F.g3 == 0.0 && F.h13 == 0.0 && F.h23 == 0.0) return;
  sum.coupled = true;
  const double h13 = weight * F.h13 * gamma * X.d1, h23 = weight * F.h23 * gamma * X.d2;
  put(k11, k21, h13 * s1 + g3 * (s1 * X.f112 + gamma * s2) * w);
  put(k11, k12, h13 * s2 + g3 * s2 * A);
  put(k22, k21, h23 * s1 + g3 * s1 * B);
  put(k22, k12, h23 * s2 + g3 * (s2 * X.f122 + gamma * s1) * w);
}

/// Multiplies the negative eigenvalues of sum.H by 1 - theta (J. Teran et al., Robust quasistatic finite
/// elements and flesh simulation, 2005). theta: in, 0..1; 0 changes nothing. The eigenvalues come in closed form
/// where two blocks of two stand alone, by Jacobi rotations otherwise.
void softenNegative(double theta, MapSum& sum);

}  // namespace tornwalzen
