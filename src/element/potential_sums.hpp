// Sums of the potential over all triangles, in order: energy, residual, tangent, and what the blank looks like.
#pragma once

#include "element/density_terms.hpp"
#include "ground/thread_pool.hpp"

namespace tornwalzen {

class ElementParts;
struct ElementLanes;

/// What stays fixed while the blank moves; views, nothing owned.
struct PotentialMesh {
  Table<const Int> INTA;                // NE × 3 incidences
  Table<const double> FRAMES;           // 4 × NE, of part_frames.hpp
  const ElementLanes* lanes = nullptr;  // take eight triangles at a time where they can; null: one by one
  ThreadPool* pool = nullptr;           // threads that help; null: none
  const ElementParts* parts = nullptr;  // the triangles shared out among them; null: not shared
};

/// The potential with its threshold.
struct ExtendedPotential {
  const DensityTerms& terms;
  double s0;     // of the extended measures (dimensionless)
  double theta;  // what negative eigenvalues of a triangle's tangent lose of themselves, 0..1
};

/// One triangle. GRADIENT: out, 6 (mm), order u1 v1 u2 v2 u3 v3, untouched with Order::value. HESSIAN: out with
/// Order::hessian, 6 × 6 column-major (dimensionless), both triangles. Returns the potential (mm²). Every blank is
/// accepted, also one with triangles that are flat or turned over.
double trianglePotential(Order order, Int e, const PotentialMesh& mesh, Vector<const double> RX,
                         const ExtendedPotential& potential, double (&GRADIENT)[6], double (&HESSIAN)[36]);

/// Energy (mm²) of the blank RX (mm).
double potentialEnergy(const PotentialMesh& mesh, Vector<const double> RX,
                       const ExtendedPotential& potential);

/// The same, and RR: out, neq, minus the gradient (mm).
double potentialResidual(const PotentialMesh& mesh, Vector<const double> RX,
                         const ExtendedPotential& potential, Vector<double> RR);

/// The same, and SYSM: out, the Hessian (dimensionless), lower triangle in the pattern COLS, ROWI of two equations
/// per node; negative eigenvalues of each triangle's part are softened by potential.theta.
double potentialTangent(const PotentialMesh& mesh, Vector<const double> RX,
                        const ExtendedPotential& potential, Vector<const Int> COLS, Vector<const Int> ROWI,
                        Vector<double> RR, Vector<double> SYSM);

struct BlankShape {
  double smallest;  // smallest singular value of all triangles, negative where one is turned over
  Int inverted;     // triangles with a singular value that is not positive
};
BlankShape blankShape(const PotentialMesh& mesh, Vector<const double> RX);

}  // namespace tornwalzen
