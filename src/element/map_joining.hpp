// From one map per triangle to one blank for all: the blank whose maps J come nearest to given maps M in the sense
// of Σ A·|J - M|², A twice the area on the part (dimensionless maps, mm²).
//
// J is linear in the blank, so the minimum solves Laplace's equation on the part once for u and once for v:
//   L·Δ = Σ A·(M - J)·∇N,   L = Σ A·∇Nᵢ·∇Nⱼ,   blank + Δ.
// With M a rotation per triangle, and those taken anew from the blank, that is the local/global iteration
// (L. Liu et al., A local/global approach to mesh parameterization, 2008).
#pragma once

#include "element/potential_sums.hpp"

namespace tornwalzen {

/// SYSM: out, L in the pattern COLS, ROWI of one equation per node, lower triangle (dimensionless).
void laplacian(const PotentialMesh& mesh, Vector<const Int> COLS, Vector<const Int> ROWI,
               Vector<double> SYSM);

/// ANGLE: out, NE: the rotation closest to J of each triangle, atan2(J21 - J12, J11 + J22) (radians): from the
/// triangle's own axes, the first along its edge from corner 1 to 2, to the blank's.
void closestRotations(const PotentialMesh& mesh, Vector<const double> RX, Vector<double> ANGLE);

/// RR: out, neq: Σ A·(R - J)·∇N with the rotations ANGLE (radians), in the layout of RX (mm).
void rotationLoads(const PotentialMesh& mesh, Vector<const double> RX, Vector<const double> ANGLE,
                   Vector<double> RR);

/// The same with the rotation closest to J of each triangle, 0 in place of one that J does not have.
void closestRotationLoads(const PotentialMesh& mesh, Vector<const double> RX, Vector<double> RR);

/// Largest turn (radians, ≥ 0) of the triangles' closest rotations along RB (mm), to first order.
double largestTurn(const PotentialMesh& mesh, Vector<const double> RX, Vector<const double> RB);

/// RR: out, neq: Σ A·(M - J)·∇N where M is J after the part t of the step RB, each triangle turned exactly and
/// stretched linearly: M = exp(t·ω·X)·(J + t·(dJ - ω·X·J)), ω the turn, X the quarter turn (after J. Huang et al.,
/// Interactive shape interpolation through controllable dynamic deformation, 2011). RX, RB: in (mm).
void turnedLoads(const PotentialMesh& mesh, Vector<const double> RX, Vector<const double> RB, double t,
                 Vector<double> RR);

/// Does no singular value of a triangle differ between FROM and TO (mm) by more than `limit` of its size at FROM? What is
/// not a number does.
bool stretchesWithin(const PotentialMesh& mesh, Vector<const double> FROM, Vector<const double> TO,
                     double limit);

/// Smallest t > 0 at which a triangle that is not turned over at RX has no area at RX + t·RB (J. Smith, S. Schaefer,
/// Bijective parameterization with free boundaries, 2015); infinite where none has.
double stepToInversion(const PotentialMesh& mesh, Vector<const double> RX, Vector<const double> RB);

}  // namespace tornwalzen
