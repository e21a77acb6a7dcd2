// An analysis with the memory of its arrays: what stands behind a handle.
#pragma once

#include "ground/driver_arrays.hpp"
#include "ground/own_array.hpp"
#include "interface/results.hpp"

namespace tornwalzen {

/// A host's mesh, checked.
struct GivenMesh {
  Int nn, ne;
  const double* points;  // 3·nn, mm, node by node
  const Int* triangles;  // 3·ne, triangle by triangle
  Int firstIndex;        // 0 or 1
};

/// The arrays of tornwalzen.h under their names, owned. What is needed for a run alone is had when it begins and kept
/// for the next.
class OwnAnalysis {
 public:
  Analysis run;
  Int selector = 1;  // flow curve, as ICTRL
  Int firstIndex = 1;

  /// Takes a mesh in place of the one before. Returns 0 or TORNWALZEN_NO_MEMORY; then the one before stays.
  Int takeMesh(const GivenMesh& mesh);
  /// held: in, 2·nkno flags, 1 held.
  void hold(const Int* held);
  /// The press: marks of the flange, nele of 1 or 0 or null for none; draw beads, checked. Returns 0 or
  /// TORNWALZEN_NO_MEMORY, then nothing was changed.
  Int takeFlange(const Int* marks);
  Int takeBeads(Int count, const Int* lengths, const Int* nodes, const double* force);
  bool hasFlange() const { return FLANGE_.length() > 0; }
  bool hasMesh() const { return run.nkno > 0; }
  bool hasRun() const { return hasRun_; }

  /// Set-up where the mesh is new, development, increments. Returns 0, TORNWALZEN_NO_MEMORY or
  /// TORNWALZEN_SETUP_FAILED.
  Int analyse();

  /// Results of the last run.
  const double* blank() const { return RX_.data(); }
  const double* startingBlank() const { return START_.data(); }
  const double* elementTable() const { return EVAL_.data(); }
  const Int* orientedTriangles() const { return TRIANGLES_.data(); }
  /// Of a run of the press model with tools, per triangle (MPa).
  bool hasPressures() const { return hasRun_ && CONTACT_.length() > 0; }
  const double* contactPressure() const { return CONTACT_.data(); }
  const double* binderPressure() const { return GRIP_.data(); }
  Table<const Int> triangles() { return INTA_.table(3); }
  /// strains: out, nele. Cannot fail.
  void strains(TornwalzenElementStrain* strains);

 private:
  bool setUp();
  bool supplyWork();
  bool supplyRunArrays();
  bool goesOn(RunPhase phase);
  void publish();
  DriverArrays arrays();
  PressArrays pressArrays();

  OwnArray<Int> INTA_{"INTA"}, ARFA_{"ARFA"}, COLS_{"COLS"}, ROWI_{"ROWI"}, WORK_{"WORK"},
      TRIANGLES_{"TRIANGLES"}, FLANGE_{"FLANGE"}, BEADNODES_{"BEADNODES"}, BEADENDS_{"BEADENDS"};
  OwnArray<double> RWORK_{"RWORK"}, RR_{"RR"}, RB_{"RB"}, RX_{"RX"}, TEMP_{"TEMP"}, KNG_{"KNG"}, KNZ_{"KNZ"},
      KNA_{"KNA"}, ELG_{"ELG"}, SYSM_{"SYSM"}, RXA_{"RXA"}, WRHS_{"WRHS"}, EVAL_{"EVAL"}, START_{"START"},
      BEADFORCE_{"BEADFORCE"}, CONTACT_{"CONTACT"}, GRIP_{"GRIP"};
  bool structureStands_ = false, hasRun_ = false;
};

}  // namespace tornwalzen
