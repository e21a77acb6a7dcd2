// Kinematics of one membrane triangle: the linear map from its flat blank (mm) to its place in space (mm).
//
// The blank enters through two edge vectors only, p = (u2-u1, v2-v1) and q = (u3-u1, v3-v1), so four numbers
// are the unknowns of a triangle. With the part's edges P = x2-x1, Q = x3-x1 the map's columns are
//   a = ∂x/∂u = (q_v·P - p_v·Q)/D,   b = ∂x/∂v = (p_u·Q - q_u·P)/D,   D = p_u·q_v - p_v·q_u,
// and the right Cauchy-Green metric is C11 = a·a, C22 = b·b, C12 = a·b (dimensionless). It is measured in the
// global axes u, v: there is no element frame, and the place and attitude of the part triangle do not matter.
//
// Derivatives come in closed form. Let N2, N3 be the gradients of the shape functions of corners 2 and 3 (the
// rows of the inverse of [p q]). A move of corner n by (δu, δv) changes the map [a b] to first order by -[a
// b]·G with G(i,k) = δ(i)·Nn(k), and so
//   δC = -(C·G + Gᵀ·C),   δN = -N·G,   δD = D·tr G.
#pragma once

#include "ground/array_view.hpp"
#include "ground/triangle.hpp"

namespace tornwalzen {

/// Real: double, or a vector of doubles that holds one element per lane.
template <class Real>
struct KinematicsOf {
  Real D;         // twice the blank area (mm²), positive for an accepted triangle
  Real DN[2][2];  // D·∇N of corners 2 and 3 (mm): [corner - 2][0 along u, 1 along v]
  Real C11, C22, C12;
};
using Kinematics = KinematicsOf<double>;

/// D and D·∇N from the blank's edges p and q (mm).
template <class Real>
void blankOfEdges(Real pu, Real pv, Real qu, Real qv, KinematicsOf<Real>& K) {
  K.D = pu * qv - pv * qu;
  K.DN[0][0] = qv;
  K.DN[0][1] = -qu;
  K.DN[1][0] = -pv;
  K.DN[1][1] = pu;
}

/// The metric from the part's edges P and Q (mm), after blankOfEdges.
template <class Real>
void metricOfEdges(const Real (&P)[3], const Real (&Q)[3], KinematicsOf<Real>& K) {
  const Real scale = 1.0 / K.D;
  Real a[3], b[3];
  for (int i = 0; i < 3; ++i) {
    a[i] = (K.DN[0][0] * P[i] + K.DN[1][0] * Q[i]) * scale;
    b[i] = (K.DN[0][1] * P[i] + K.DN[1][1] * Q[i]) * scale;
  }
  K.C11 = a[0] * a[0] + a[1] * a[1] + a[2] * a[2];
  K.C22 = b[0] * b[0] + b[1] * b[1] + b[2] * b[2];
  K.C12 = a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

/// Part of the kinematics that the degeneracy test needs: D and D·∇N. n1, n2, n3: nodes in incidence order.
inline void blankKinematics(Int n1, Int n2, Int n3, Vector<const double> RX, Kinematics& K) {
  const double u1 = RX(2 * n1 - 1), v1 = RX(2 * n1);
  blankOfEdges(RX(2 * n2 - 1) - u1, RX(2 * n2) - v1, RX(2 * n3 - 1) - u1, RX(2 * n3) - v1, K);
}

/// True if the blank triangle is flat or turned over. A D that is not a number is not: it travels on, and the
/// residual norm shows it.
inline bool degenerate(const Kinematics& K) {
  return 0.0 >= K.D;
}

/// The metric, after blankKinematics. KNZ: the part's nodes (mm).
inline void metric(Int n1, Int n2, Int n3, Table<const double> KNZ, Kinematics& K) {
  double P[3], Q[3];
  for (int i = 0; i < 3; ++i) {
    const double x1 = KNZ(n1, i + 1);
    P[i] = KNZ(n2, i + 1) - x1;
    Q[i] = KNZ(n3, i + 1) - x1;
  }
  metricOfEdges(P, Q, K);
}

/// Twice the area of the part's triangle (mm²).
inline double twicePartArea(Int n1, Int n2, Int n3, Table<const double> KNZ) {
  double P[3], Q[3];
  for (int i = 0; i < 3; ++i) {
    P[i] = KNZ(n2, i + 1) - KNZ(n1, i + 1);
    Q[i] = KNZ(n3, i + 1) - KNZ(n1, i + 1);
  }
  return twiceArea(P, Q);
}

}  // namespace tornwalzen
