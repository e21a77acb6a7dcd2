// From the derivatives of a density to the gradient and Hessian of the element potential Π = D·φ over the six
// blank coordinates of a triangle, D being twice its blank area (mm²).
//
// With S = ∂φ/∂C (symmetric, S12 = ½·∂φ/∂C12), T = C·S, the shape gradients Nn of kinematics.hpp and
// ∂C/∂(n,i) the derivative of the metric with respect to coordinate i of corner n:
//   ∂Π/∂(n,i)         = D·Σk (φ·δik - 2·Tik)·Nn(k)
//   ∂²Π/∂(n,i)∂(m,j)  = D·[ ∂C/∂(n,i) : ∂²φ/∂C² : ∂C/∂(m,j) + 2·Cij·(Nn·S·Nm) + (φ - 2·tr T)·εij·(Nn × Nm) ].
// Products of area and metric derivatives have gone into the last term: together they are antisymmetric in i,
// j. D·(N2 × N3) = 1, so that term is ±(φ - 2·tr T). Corner 1 is minus the sum of the others: a translation
// of the blank changes nothing.
#pragma once

#include "element/density.hpp"
#include "element/kinematics.hpp"

namespace tornwalzen {

/// GRADIENT: out, 6 (mm), order u1 v1 u2 v2 u3 v3.
template <class Real>
void potentialGradient(const KinematicsOf<Real>& K, const DensityOf<Real>& F, Real (&GRADIENT)[6]) {
  const Real S12 = 0.5 * F.g3;
  const Real T11 = K.C11 * F.g1 + K.C12 * S12, T12 = K.C11 * S12 + K.C12 * F.g2;
  const Real T21 = K.C12 * F.g1 + K.C22 * S12, T22 = K.C12 * S12 + K.C22 * F.g2;
  const Real P11 = F.phi - 2.0 * T11, P22 = F.phi - 2.0 * T22, P12 = -2.0 * T12, P21 = -2.0 * T21;
  for (int n = 0; n < 2; ++n) {
    GRADIENT[2 * n + 2] = P11 * K.DN[n][0] + P12 * K.DN[n][1];
    GRADIENT[2 * n + 3] = P21 * K.DN[n][0] + P22 * K.DN[n][1];
  }
  GRADIENT[0] = -(GRADIENT[2] + GRADIENT[4]);
  GRADIENT[1] = -(GRADIENT[3] + GRADIENT[5]);
}

/// The Hessian in the four coordinates of corners 2 and 3, order u2 v2 u3 v3. EDGE: out, both triangles.
template <class Real>
void edgeHessian(const KinematicsOf<Real>& K, const DensityOf<Real>& F, Real (&EDGE)[4][4]) {
  const Real scale = 1.0 / K.D, S12 = 0.5 * F.g3;
  Real c1[4], c2[4], c3[4];  // D times the derivatives of C11, C22, C12 (mm)
  for (int n = 0; n < 2; ++n) {
    const Real Nu = K.DN[n][0], Nv = K.DN[n][1];
    c1[2 * n] = -2.0 * K.C11 * Nu;
    c1[2 * n + 1] = -2.0 * K.C12 * Nu;
    c2[2 * n] = -2.0 * K.C12 * Nv;
    c2[2 * n + 1] = -2.0 * K.C22 * Nv;
    c3[2 * n] = -(K.C12 * Nu + K.C11 * Nv);
    c3[2 * n + 1] = -(K.C22 * Nu + K.C12 * Nv);
  }
  for (int k = 0; k < 4; ++k) {
    const Real f1 = F.h11 * c1[k] + F.h12 * c2[k] + F.h13 * c3[k];
    const Real f2 = F.h12 * c1[k] + F.h22 * c2[k] + F.h23 * c3[k];
    const Real f3 = F.h13 * c1[k] + F.h23 * c2[k] + F.h33 * c3[k];
    for (int l = 0; l <= k; ++l) EDGE[k][l] = (f1 * c1[l] + f2 * c2[l] + f3 * c3[l]) * scale;
  }

  const Real(&N)[2] = K.DN[0];
  const Real(&M)[2] = K.DN[1];
  const auto curvature = [&](const Real(&A)[2], const Real(&B)[2]) {
    return 2.0 * scale * (F.g1 * (A[0] * B[0]) + F.g2 * (A[1] * B[1]) + S12 * (A[0] * B[1] + A[1] * B[0]));
  };
  const Real nn = curvature(N, N), nm = curvature(N, M), mm = curvature(M, M);
  EDGE[0][0] += K.C11 * nn;
  EDGE[1][0] += K.C12 * nn;
  EDGE[1][1] += K.C22 * nn;
  EDGE[2][2] += K.C11 * mm;
  EDGE[3][2] += K.C12 * mm;
  EDGE[3][3] += K.C22 * mm;
  const Real trace = K.C11 * F.g1 + K.C22 * F.g2 + 2.0 * (K.C12 * S12);
  const Real turn = F.phi - 2.0 * trace;
  EDGE[2][0] += K.C11 * nm;
  EDGE[2][1] += K.C12 * nm - turn;
  EDGE[3][0] += K.C12 * nm + turn;
  EDGE[3][1] += K.C22 * nm;
  for (int k = 0; k < 4; ++k)
    for (int l = k + 1; l < 4; ++l) EDGE[k][l] = EDGE[l][k];
}

/// From the four coordinates of corners 2 and 3 to all six. HESSIAN: out, 6 × 6 column-major (dimensionless),
/// both triangles, equal to the bit.
template <class Real>
void expandHessian(const Real (&EDGE)[4][4], Real (&HESSIAN)[36]) {
  for (int k = 0; k < 4; ++k) {
    Real* column = HESSIAN + 6 * (k + 2);
    for (int l = 0; l < 4; ++l) column[l + 2] = EDGE[k][l];
    for (int i = 0; i < 2; ++i) HESSIAN[6 * i + k + 2] = column[i] = -(EDGE[k][i] + EDGE[k][i + 2]);
  }
  HESSIAN[0] = -(HESSIAN[12] + HESSIAN[24]);
  HESSIAN[1] = HESSIAN[6] = -(HESSIAN[13] + HESSIAN[25]);
  HESSIAN[7] = -(HESSIAN[19] + HESSIAN[31]);
}

/// HESSIAN: out, 6 × 6 column-major (dimensionless).
template <class Real>
void potentialHessian(const KinematicsOf<Real>& K, const DensityOf<Real>& F, Real (&HESSIAN)[36]) {
  Real EDGE[4][4];
  edgeHessian(K, F, EDGE);
  expandHessian(EDGE, HESSIAN);
}

/// The potential A·φ with a weight A (mm²) that does not depend on the blank. Where φ itself vanishes but its
/// derivatives do not, the potential D·φ above has the gradient g = D·∇φ and the Hessian
/// H = D·∇²φ + ∇D·∇φᵀ + ∇φ·∇Dᵀ, and ∇D is D·∇N: so ∇φ = g/D and D·∇²φ = H - (∇D·gᵀ + g·∇Dᵀ)/D.
/// A: in (mm²). GRADIENT: out (mm), HESSIAN: out (dimensionless), as above.
template <class Real>
void weighedGradient(const KinematicsOf<Real>& K, DensityOf<Real> F, Real A, Real (&GRADIENT)[6]) {
  F.phi = Real{};
  potentialGradient(K, F, GRADIENT);
  const Real scale = A / K.D;
  for (Real& g : GRADIENT) g *= scale;
}

template <class Real>
void weighedHessian(const KinematicsOf<Real>& K, DensityOf<Real> F, Real A, Real (&HESSIAN)[36]) {
  F.phi = Real{};
  Real g[6], EDGE[4][4];
  potentialGradient(K, F, g);
  edgeHessian(K, F, EDGE);
  const Real dD[4] = {K.DN[0][0], K.DN[0][1], K.DN[1][0], K.DN[1][1]};
  const Real perD = 1.0 / K.D, scale = A * perD;
  for (int k = 0; k < 4; ++k)
    for (int l = 0; l < 4; ++l)
      EDGE[k][l] = scale * (EDGE[k][l] - (dD[k] * g[l + 2] + dD[l] * g[k + 2]) * perD);
  expandHessian(EDGE, HESSIAN);
}

/// What one element gives, for one element or one per lane.
template <class Real>
struct ElementOf {
  Real potential;    // mm²
  Real phi, strain;  // density and -(E11 + E22) (dimensionless), with Order::value alone
  Real gradient[6];  // mm, with Order::gradient and above
  Real hessian[36];  // dimensionless, with Order::hessian
};

/// The element from its kinematics and density. weighed: with the weight A (mm²) in place of twice the blank's area.
template <Order order, bool weighed, class Real>
void expandElement(const KinematicsOf<Real>& K, const DensityOf<Real>& F, [[maybe_unused]] Real A,
                   ElementOf<Real>& E) {
  if constexpr (weighed)
    E.potential = A * F.phi;
  else
    E.potential = K.D * F.phi;
  if constexpr (order == Order::value) {
    E.phi = F.phi;
    E.strain = -(0.5 * (K.C11 - 1.0) + 0.5 * (K.C22 - 1.0));
  } else if constexpr (weighed) {
    weighedGradient(K, F, A, E.gradient);
    if constexpr (order == Order::hessian) weighedHessian(K, F, A, E.hessian);
  } else {
    potentialGradient(K, F, E.gradient);
    if constexpr (order == Order::hessian) potentialHessian(K, F, E.hessian);
  }
}

}  // namespace tornwalzen
