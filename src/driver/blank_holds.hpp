// What the host's held unknowns mean to the sure path.
//
// Up to three of them that only take away the rigid motion load nothing: the blank is found free, with three
// unknowns pinned that suit the blank best, and then turned and shifted as it is into the host's holds. All others
// pin: they stay where the projection of the part has them while the blank is found, and may load it.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

class BlankHolds {
 public:
  /// ARFA: in, neq, the host's flags, 0 held. USED: in, NN, 0 for a node without a triangle: it stands still, at the
  /// projection of the part, and its holds do not count.
  BlankHolds(Vector<const Int> ARFA, Vector<const Int> USED);

  /// Does the blank move freely, to be placed afterwards?
  bool free() const { return free_; }
  /// Do the host's unknowns take away the rigid motion alone? Then equilibrium loads none of them.
  bool rigidOnly() const { return rigidOnly_; }
  /// Does at most one of them hold the shift along u (axis 0), v (axis 1)?
  bool shiftFree(Int axis) const { return rigidOnly_ || held_[axis] <= 1; }
  /// Lets the host's unknowns pin from now on.
  void pin() { free_ = false; }

  /// FREE: out, neq: 0 for what stands still while the blank is found. RX: in, a blank (mm): where it moves freely,
  /// a middle node and one direction of the node farthest from it stand still. Where the host's holds leave a shift
  /// open, the first node is held in that direction; where they leave the turn open, the farthest node too.
  void standing(Vector<const double> RX, Vector<Int> FREE) const;
  /// The same for a solve that no turn disturbs: of a blank that moves freely the middle node alone stands still.
  void standingShift(Vector<const double> RX, Vector<Int> FREE) const;

  /// Turns and shifts RX (mm) by the smallest turn that brings the held unknowns to the projection KNG (mm, NN × 3),
  /// and sets them to it exactly. False, and RX untouched: no turn does it, the two nodes lie too close in the blank.
  /// Without free() only sets them.
  bool place(Table<const double> KNG, Vector<double> RX) const;

 private:
  bool held(Int i) const { return ARFA_(i) == 0 && USED_((i + 1) / 2) != 0; }
  Int holdShift(Vector<const double> RX, Vector<Int> FREE) const;
  bool turnFor(Table<const double> KNG, Vector<const double> RX, double& turn) const;

  Vector<const Int> ARFA_, USED_;
  bool free_, rigidOnly_;
  Int held_[2] = {0, 0};               // held unknowns along u and v
  Int node_[2][2] = {{0, 0}, {0, 0}};  // the first two nodes held along u, along v
};

}  // namespace tornwalzen
