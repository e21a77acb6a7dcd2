// The solve that joins one map per triangle to one blank: Laplace's equation for u and for v, with own systems of one
// equation per node beside the host's.
#pragma once

#include "element/map_joining.hpp"
#include "sparse/sparse_system.hpp"

namespace tornwalzen {

class MapJoiner {
 public:
  explicit MapJoiner(Analysis& run) : system_{SparseSystem(run), SparseSystem(run)} {}

  /// The systems to be factorized, one thread's work. COLS, ROWI: in, the host's pattern of two equations per node.
  /// FREE: in, neq, 0 for unknowns that stand still; at least one along u and one along v. Where both directions hold the
  /// same nodes, as where the blank moves freely, one factor serves both. pairs: the host's system, whose order serves;
  /// null: a new one is found. False: no memory, or the solver failed.
  bool arrange(const PotentialMesh& mesh, Vector<const Int> COLS, Vector<const Int> ROWI,
               Vector<const Int> FREE, const SparseSystem* pairs = nullptr);
  /// After arrange(), before join(). False: a pivot is zero, as where a piece of the mesh holds nothing.
  bool factorize();

  /// DX: out, neq (mm): the move that answers the LOADS of map_joining.hpp (mm), 0 for what stands still.
  void join(Vector<const double> LOADS, Vector<double> DX);

  Int factorizations() const { return factorizations_; }
  Int solves() const { return solves_; }

 private:
  SparseSystem system_[2];
  OwnArray<Int> free_[2]{OwnArray<Int>("FREE"), OwnArray<Int>("FREE")};
  OwnArray<double> load_{"LOAD"}, move_{"MOVE"};
  bool shared_ = true;
  Int factorizations_ = 0, solves_ = 0;
};

}  // namespace tornwalzen
