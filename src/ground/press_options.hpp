// What a host says about sheet and press beside the flow curve; what it does not say is not used.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

enum class Choice : Int { automatic = 0, off = 1, on = 2 };
enum class BendingChoice : Int { automatic = 0, off = 1, released = 2, kept = 3 };
enum class MeshSide : Int { middle = 0, punch = 1, die = 2 };

struct PressOptions {
  bool chosen = false;                    // the press model instead of the fixed one
  double thickness = 0.0;                 // of the blank (mm)
  double young = 206000.0;                // Young's modulus (MPa)
  Int points = 3;                         // Gauss points through the thickness, 3 or 5
  double r0 = 0.0, r45 = 0.0, r90 = 0.0;  // 0: the mean normal anisotropy in all directions
  double rolling = 0.0;                   // degrees from the blank's u axis to the rolling direction
  double frictionPunch = 0.0, frictionDie = 0.0;
  double binderForce = 0.0;  // N, on the part as meshed
  bool flangeOfRim =
      false;  // the binder presses on the largest nearly flat area at the rim, not on marked elements
  MeshSide meshSide = MeshSide::middle;
  bool punchAbove = false;  // does the punch come from the side that the mean normal points to?
  BendingChoice bending = BendingChoice::automatic;
  Choice edge = Choice::automatic;
};

/// What of the press lies on the mesh. A draw bead is a restraining force per length along a polyline of nodes.
struct PressArrays {
  Vector<const Int> FLANGE;        // in, NE: 1 under the binder, else 0; without length: none
  Vector<const Int> BEADNODES;     // in: nodes of all beads, one polyline behind the other, from 1
  Vector<const Int> BEADENDS;      // in, per bead: its last place in BEADNODES
  Vector<const double> BEADFORCE;  // in, per bead (N/mm)
  Vector<double> CONTACT,
      GRIP;  // out, NE (MPa): pressures of punch and die, of the binder; without length: unwanted
};

}  // namespace tornwalzen
