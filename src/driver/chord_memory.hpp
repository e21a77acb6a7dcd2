// What steps with an old factor have told about the tangent since: the quasi-Newton updates of it that keep the factor
// as it is (H. Matthies, G. Strang, The solution of nonlinear finite element equations, 1979; in the two loops of
// J. Nocedal, Updating quasi-Newton matrices with limited storage, 1980).
//
// A step s that changed the gradient by y says that the inverse tangent takes y to s. The update of Broyden, Fletcher,
// Goldfarb and Shanno with s·y > 0 keeps the inverse symmetric and positive definite.
#pragma once

#include "ground/own_array.hpp"
#include "ground/thread_pool.hpp"

namespace tornwalzen {

class ChordMemory {
 public:
  static constexpr Int mostPairs = 4;

  /// Room for unknowns of `length`. pool: threads that help; null: none. False without memory.
  [[nodiscard]] bool allocate(ThreadPool* pool, Int64 length);

  /// A new factor: all pairs are forgotten.
  void forget() { pairs_ = 0; }
  /// Keeps the blank RX (mm) and its residual RR (mm, minus the gradient) as the begin of a step.
  void begin(Vector<const double> RX, Vector<const double> RR);
  /// The step ends at RX with RR: its pair is added, where it has s·y > 0 and the memory is not full.
  void end(Vector<const double> RX, Vector<const double> RR);

  /// The step is given up: RX and RR: out, as they were at its begin.
  void putBack(Vector<double> RX, Vector<double> RR) const;

  /// Before the solve: RHS: inout, the residual.
  void before(Vector<double> RHS);
  /// After it: STEP: inout, the solution.
  void after(Vector<double> STEP) const;

 private:
  Vector<const double> move(Int pair) const;
  Vector<const double> change(Int pair) const;

  ThreadPool* pool_ = nullptr;
  Int64 length_ = 0;
  Int pairs_ = 0;
  OwnArray<double> moves_{"MOVES"}, changes_{"CHANGES"};  // one more of each: the begin of the step at work
  double product_[mostPairs] = {}, share_[mostPairs] = {};
};

}  // namespace tornwalzen
