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
  /// strains: out, nele. Cannot fail.
  void strains(TornwalzenElementStrain* strains);

 private:
  bool setUp();
  bool supplyWork();
  bool supplyRunArrays();
  bool goesOn(RunPhase phase);
  void publish();
  DriverArrays arrays();

  OwnArray<Int> INTA_{"INTA"}, ARFA_{"ARFA"}, COLS_{"COLS"}, ROWI_{"ROWI"}, WORK_{"WORK"},
      TRIANGLES_{"TRIANGLES"};
  OwnArray<double> RWORK_{"RWORK"}, RR_{"RR"}, RB_{"RB"}, RX_{"RX"}, TEMP_{"TEMP"}, KNG_{"KNG"}, KNZ_{"KNZ"},
      KNA_{"KNA"}, ELG_{"ELG"}, SYSM_{"SYSM"}, RXA_{"RXA"}, WRHS_{"WRHS"}, EVAL_{"EVAL"}, START_{"START"};
  bool structureStands_ = false, hasRun_ = false;
};

}  // namespace tornwalzen
