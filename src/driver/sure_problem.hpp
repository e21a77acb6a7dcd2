// What the steps of the sure path share: the mesh, the potential, the blank, two systems of equations.
#pragma once

#include "driver/chord_memory.hpp"
#include "driver/map_joiner.hpp"
#include "element/potential_sums.hpp"
#include "sparse/sparse_system.hpp"

namespace tornwalzen {

/// What the path has cost.
struct SureCounts {
  Int factorizations = 0;  // of the tangent
  Int solves = 0;          // with them
  Int iterations = 0, trials = 0;
  double assembly = 0.0, factorization = 0.0, solve = 0.0, search = 0.0;  // processor seconds
};

/// Views, references and borrowed objects; nothing is owned.
struct SureProblem {
  Analysis& run;  // for what is told on the way
  PotentialMesh mesh;
  const DensityTerms* terms;  // what is minimised
  double s0;                  // threshold of the extended measures (dimensionless)
  Vector<const Int> FREE;     // neq: 0 for unknowns that stand still
  SparseSystem& tangent;
  MapJoiner& joiner;
  Vector<double> RX;        // neq (mm): the blank
  Vector<double> RR;        // neq (mm): minus the gradient, 0 for what stands still
  Vector<double> RB;        // neq (mm): the step
  Vector<double> TRIAL;     // neq (mm): scratch, the blank before a trial
  Vector<double> LOADS;     // neq (mm): scratch of the joining
  Vector<double> FACTORED;  // neq (mm): the blank of the last exact tangent
  ChordMemory& memory;
  SureCounts& counts;
  bool guarded = false;  // may no step thin a triangle of the blank out? For energies without a barrier there
  Vector<const double> LOAD{};    // neq (mm): loads that stand while the blank moves; without length: none
  Vector<const double> ORIGIN{};  // neq (mm): the blank at which they do no work

  ExtendedPotential potential(double theta) const { return {*terms, s0, theta}; }
};

struct SureValue {
  double energy;    // mm²
  double gradient;  // largest free component (mm); not a number if one is not
};

/// Σ LOAD·(RX - ORIGIN) (mm²), which the energy falls by.
double loadWork(const SureProblem& problem);

/// Energy and residual at RX; RR: out. What stands still has no residual.
SureValue evaluateBlank(const SureProblem& problem);

/// Σ RR·RB: by how much the energy falls along RB to first order (mm²).
double descentAlong(const SureProblem& problem);

}  // namespace tornwalzen
