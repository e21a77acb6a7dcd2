// Equivalent strain of an orthotropic sheet under plane stress, dual to the yield condition of R. Hill (A theory of
// the yielding and plastic flow of anisotropic metals, Proc. R. Soc. A 193, 1948):
//   σ̄² = (G+H)·σ11² - 2H·σ11·σ22 + (F+H)·σ22² + 2N·σ12²,   G + H = 1,
//   r0 = H/G,   r90 = H/F,   r45 = N/(F+G) - ½,
// so ε̄² = εᵀ·M⁻¹·ε is a quadratic in the strains H11, H22, H12 along and across the rolling direction (all
// dimensionless). With r0 = r45 = r90 = r it is the square of equivalent_strain.hpp, the same in all axes.
#pragma once

namespace tornwalzen {

/// ε̄² = a11·X1² + a22·X2² + 2·a12·X1·X2 + 2·a13·X1·X3 + 2·a23·X2·X3 + a33·X3², X = (H11, H22, H12).
struct StrainQuadratic {
  double a11, a22, a33, a12, a13, a23;

  double at(double x1, double x2, double x3) const {
    return a11 * x1 * x1 + a22 * x2 * x2 + a33 * x3 * x3 +
           2.0 * (a12 * x1 * x2 + a13 * x1 * x3 + a23 * x2 * x3);
  }
};

struct Anisotropy {
  double r0 = 1.0, r45 = 1.0, r90 = 1.0;  // > 0
  double rolling = 0.0;                   // radians, from the blank's u axis to the rolling direction
  bool planar() const { return r0 != r45 || r0 != r90; }
};

/// Along and across the rolling direction.
StrainQuadratic hillStrain(const Anisotropy& r);

/// The same quadratic in axes whose first one has the cosine c and the sine s to the axes of Q.
StrainQuadratic turned(const StrainQuadratic& Q, double c, double s);

}  // namespace tornwalzen
