// One system of equations over the solver's phases: the host's own, or one of one equation per node that owns its
// arrays and stands beside it.
#pragma once

#include "ground/analysis.hpp"
#include "ground/own_array.hpp"
#include "sparse/phases.hpp"

namespace tornwalzen {

class SparseSystem {
 public:
  /// A system of its own, empty. analysis: its messages and error word.
  explicit SparseSystem(Analysis& analysis) : run_(analysis), state_(&ownState_) {}
  /// The host's system, ordered and laid out; its state is run.solver. Nothing is owned.
  SparseSystem(Analysis& run, Vector<const Int> COLS, Vector<const Int> ROWI, Vector<Int> WORK,
               Vector<double> RWORK, Vector<double> SYSM, Vector<double> WRHS);
  SparseSystem(const SparseSystem&) = delete;
  SparseSystem& operator=(const SparseSystem&) = delete;

  /// Takes the pattern of one equation per node from that of two, COLS and ROWI; orders it and lays out its factor
  /// in memory of its own. pairs: the system with that pattern, whose order and layout are halved; null, or where its
  /// structure does not stand: they are found anew. False: no memory, or the solver failed; a fatal text is kept.
  bool prepareNodes(Vector<const Int> COLS, Vector<const Int> ROWI, const SparseSystem* pairs = nullptr);

  Vector<const Int> COLS() const { return COLS_; }
  Vector<const Int> ROWI() const { return ROWI_; }
  /// The values of the lower triangle, to be filled before factorize().
  Vector<double> SYSM() const { return SYSM_; }

  /// Decouples the equations whose flag is 0: unit diagonal, zeros in their rows and columns. FREE: in, neq.
  void hold(Vector<const Int> FREE) const;
  /// A = L·D·Lᵀ. False: a pivot is exactly zero, or the solver refused; no factor stands then. The error word of the
  /// solver is left as it was: whoever asks decides what a failure means.
  bool factorize();
  /// SOLUTION = A⁻¹·RHS with the factor that stands; zero without one. Both neq.
  void solve(Vector<const double> RHS, Vector<double> SOLUTION);
  /// Pivots below zero of the factor that stands: 0 means positive definite.
  Int negativePivots() const;

 private:
  bool step(SolverStep step, Vector<const double> RHS, Vector<double> SOLUTION);
  bool enlarge();
  bool halve(const SparseSystem& pairs);

  Analysis& run_;
  SolverState ownState_, *state_;
  Vector<const Int> COLS_, ROWI_;
  Vector<Int> WORK_;
  Vector<double> RWORK_, SYSM_, WRHS_;
  OwnArray<Int> cols_{"COLS"}, rowi_{"ROWI"}, work_{"WORK"};
  OwnArray<double> rwork_{"RWORK"}, sysm_{"SYSM"}, wrhs_{"WRHS"};
};

}  // namespace tornwalzen
