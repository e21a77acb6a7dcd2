// The run scalars that all routines share, and the material block. One instance of each lives as long as the
// loaded library; the library is not reentrant.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

constexpr int messageLength = 128;  // characters of a message buffer, blank-padded
constexpr Int curveRows = 50;       // rows of the flow-curve table FC
constexpr Int curveColumns = 7;     // strain, stress, secant slope, cubic coefficients A B C D
constexpr Int errorSet = -1;        // value of a failed error word: all bits set; bit 0 is what callers test

/// What the solver remembers between its steps, beside WORK itself.
struct SolverProtocol {
  Int lastPhase = 0;  // last phase completed: 0 none, 1 ordering, 2 symbolic, 3 numeric; cleared by step 11
  std::uint64_t structureSum[3] = {0, 0, 0};  // checksum of the fixed part of WORK after phases 1, 2, 3
  // per matrix: has the numeric phase run since the sizing step?
  bool factorized[2] = {false, false};
  bool factorValid = false;    // did the last numeric factorization end without an error?
  bool factorFailed = false;   // did it end with one? (neither: there was none yet)
  Int supernodes = 0;          // m: supernodes, kept between steps 12 and 13
  Int partialRequirement = 0;  // P of step 12: integer length behind the dropped adjacency
};

struct RunState {
  Int maxkno = 0;        // declared node dimension: rows of KNG, KNZ, KNA
  Int maxele = 0;        // declared element dimension: rows of INTA, ELG
  Int maxsys = 0;        // the host's NEQ: declared length of COLS less one
  Int mnsysm = 0;        // capacity of ROWI and SYSM; the entries used, once the structure stands
  Int niwor = 0;         // length of WORK that the host was last told
  Int nrk = 0;           // length of RWORK that the host was last told
  Int ncolp = 0;         // length of COLS: neq + 1
  Int nkno = 0;          // nodes
  Int nele = 0;          // elements
  Int nnzl = 0;          // stored entries of the lower triangle
  Int nsysm = 0;         // entries of ROWI used
  Int niwreq = 0;        // length of WORK that the next solver step needs
  Int nrkreq = 0;        // length of RWORK that the next solver step needs
  Int neq = 0;           // equations: two per node
  double maxgrad = 0.0;  // largest free residual component of the last assembly
  Int lunout = 6;        // message unit: standard output
  Int ierrel = 0;        // element, development and driver error word
  Int ierrso = 0;        // structure and solver error word
  char MSGSTR_solver[messageLength] = {};  // fatal text of structure builder and solver: kept, not printed
  char MSGSTR[messageLength] = {};         // message of all other routines
  Int nwsol = 0;                           // length of the solve work vector: neq
  Int npkt = 0;                            // points of the current flow curve, at most 50
  double lsfak = 1.0;                      // accepted fraction of the last Newton correction
  Int istat = 0;  // run status: 1 plastic work and coarse tolerance, 0 geometric density and fine tolerance
  double atot = 0.0;  // total area of the formed part (mm²), set by the development
  double qmax = 0.0;  // worst unfolding measure of the last objective (dimensionless)
  SolverProtocol solver;
};

/// The flow curve of the sheet, dimensionless after the set-up (stress over the curve's smallest stress).
struct MaterialBlock {
  double FC[curveRows * curveColumns] = {};
};

extern RunState run;
extern MaterialBlock material;

/// The flow-curve table as a 50 × 7 view of the material block.
Table<double> flowCurve();

inline bool failed(Int errorWord) {
  return (errorWord & 1) != 0;
}

}  // namespace tornwalzen
