// The start of the sure path: attitude, one rotation per triangle, one Poisson solve.
#pragma once

#include "driver/map_joiner.hpp"

namespace tornwalzen {

/// Where the rotations of the triangles come from.
enum class StartKind : Int {
  projection = 0,  // seen along the mean normal, hinges for what is steep
  flatPatch = 1    // the largest flat patch alone, hinges for all else
};

struct StartOutcome {
  bool memory;     // false: none could be had, and nothing else is told
  bool flatPatch;  // seen along the normal of a patch
  Int hinged;      // triangles whose rotation came over hinges
};

/// The sheet's attitude and the rotations of its triangles.
class SureStart {
 public:
  /// Neighbours, normals and attitude. kind: in. INTA: inout, columns 2 and 3 are exchanged where the part is meshed clockwise
  /// seen from +z. KNG: in (mm). TWIN: in, of mesh_edges.hpp for INTA as it comes in, which outlives this object unless
  /// turnedOver(); without length: it is found here. False: no memory.
  bool look(StartKind kind, Table<Int> INTA, Table<const double> KNG, Vector<Int> TWIN = {});
  /// Did look() exchange the columns?
  bool turnedOver() const { return turnedOver_; }

  /// RX: out (mm): the part seen along its mean normal. The rotations of the triangles: from there,
  void project(const PotentialMesh& mesh, Table<const double> KNG, Vector<double> RX);
  /// and over hinges where that tells little: one thread's work.
  StartOutcome hinge(const PotentialMesh& mesh, Table<const double> KNG);

  /// Rows x, y, z: the axes in which the part is seen.
  const double (&axes() const)[3][3] { return axes_; }
  /// TWIN, 3 × NE: the half edge across the side k of triangle e in (k, e), of mesh_edges.hpp; from look() on.
  Table<Int> twins(Int elements) { return {"TWIN", TWIN_.data(), 3, elements}; }

  /// RX: inout (mm): joins the rotations to a blank, then five times anew with the rotations closest to it; more often
  /// while triangles are thin and the blank still moves (O. Sorkine, M. Alexa, As-rigid-as-possible surface modeling, 2007).
  /// LOADS: scratch, neq.
  void join(const PotentialMesh& mesh, MapJoiner& joiner, Vector<double> RX, Vector<double> LOADS);

  /// Gives back what only project(), hinge() and join() read.
  void forgetRotations();

 private:
  StartKind kind_ = StartKind::projection;
  double axes_[3][3] = {};
  bool flatPatch_ = false, turnedOver_ = false;
  Vector<Int> TWIN_;
  Int seed_ = 0;
  OwnArray<Int> twin_{"TWIN"}, known_{"KNOWN"};
  OwnArray<double> normals_{"NORMALS"}, angle_{"ANGLE"};
};

}  // namespace tornwalzen
