// The map J from a triangle of the part to its place in the blank, and its singular values.
//
//   J = U·diag(s1, s2)·Vᵀ,   U and V rotations,   s1 ≥ |s2|,
// so that s2 is negative where the triangle is turned over. J is the inverse of the deformation gradient; the
// principal logarithmic strains of the sheet are -ln s1 and -ln s2 (dimensionless).
#pragma once

#include <cmath>

#include "element/part_frames.hpp"

namespace tornwalzen {

struct BlankMap {
  double J11, J12, J21, J22;

  double determinant() const { return J11 * J22 - J12 * J21; }
};

/// J of triangle e at the blank RX (mm). INTA: in, NE × 3; FRAMES: in, 4 × NE of part_frames.hpp.
inline BlankMap blankMap(Int e, Table<const Int> INTA, Table<const double> FRAMES, Vector<const double> RX) {
  const Int n1 = INTA(e, 1), n2 = INTA(e, 2), n3 = INTA(e, 3);
  const double a = FRAMES(frame::along, e), b = FRAMES(frame::tilt, e), c = FRAMES(frame::across, e);
  const double u1 = RX(2 * n1 - 1), v1 = RX(2 * n1);
  const double pu = RX(2 * n2 - 1) - u1, pv = RX(2 * n2) - v1;
  const double qu = RX(2 * n3 - 1) - u1, qv = RX(2 * n3) - v1;
  return {a * pu, b * pu + c * qu, a * pv, b * pv + c * qv};
}

struct SingularValues {
  double s1, s2;
};

/// With the halves E, H of what J has of a rotation and F, G of a reflection s1 = |(E,H)| + |(F,G)|; s2 as
/// det J/s1 keeps its digits.
inline SingularValues singularValues(const BlankMap& J) {
  const double E = 0.5 * (J.J11 + J.J22), H = 0.5 * (J.J21 - J.J12);
  const double F = 0.5 * (J.J11 - J.J22), G = 0.5 * (J.J21 + J.J12);
  const double s1 = std::sqrt(E * E + H * H) + std::sqrt(F * F + G * G);
  return {s1, s1 > 0.0 ? J.determinant() / s1 : 0.0};
}

/// Singular values and the first columns (cu, su) of U, (cv, sv) of V; the second columns are (-su, cu) and
/// (-sv, cv).
struct PrincipalMap {
  double s1, s2, cu, su, cv, sv;
};

/// V turns by half the angle of (F + iG)·(E - iH), the first column of U is J·v1/s1. Where J is a multiple of
/// a rotation every V serves, and V = 1 is taken; the same where it is one of a reflection.
inline PrincipalMap principalMap(const BlankMap& J) {
  const double E = 0.5 * (J.J11 + J.J22), H = 0.5 * (J.J21 - J.J12);
  const double F = 0.5 * (J.J11 - J.J22), G = 0.5 * (J.J21 + J.J12);
  const SingularValues s = singularValues(J);
  const double x = F * E + G * H, y = G * E - F * H, size = std::sqrt(x * x + y * y);
  PrincipalMap m{s.s1, s.s2, 1.0, 0.0, 1.0, 0.0};
  if (size > 0.0) {
    m.cv = x >= 0.0 ? size + x : y;  // of the two half-angle formulas the one that adds
    m.sv = x >= 0.0 ? y : size - x;
    const double length = std::sqrt(m.cv * m.cv + m.sv * m.sv);
    m.cv /= length;
    m.sv /= length;
  }
  const double u = J.J11 * m.cv + J.J12 * m.sv, v = J.J21 * m.cv + J.J22 * m.sv,
               length = std::sqrt(u * u + v * v);
  if (length > 0.0) {
    m.cu = u / length;
    m.su = v / length;
  }
  return m;
}

}  // namespace tornwalzen
