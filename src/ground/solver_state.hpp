// One sparse system of the solver: its lengths, and what the phases have done so far. Lives as long as the pattern;
// several may stand side by side.
#pragma once

#include <memory>

#include "ground/array_view.hpp"

namespace tornwalzen {

struct FactorTeam;

/// Brings the way to free what is not known here; asks for no memory, as a shared pointer would.
using TeamPointer = std::unique_ptr<FactorTeam, void (*)(FactorTeam*)>;

/// What the solver remembers between its phases, beside WORK itself.
struct SolverProtocol {
  Int lastPhase =
      0;  // last phase completed: 0 none, 1 ordering, 2 symbolic, 3 numeric; cleared by the sizing step
  std::uint64_t structureSum[3] = {0, 0, 0};  // checksum of the fixed part of WORK after phases 1, 2, 3
  bool factorized = false;                    // has the numeric phase run since the symbolic one?
  bool factorValid = false;                   // did the last numeric factorization end without an error?
  bool factorFailed = false;                  // did it end with one? (neither: there was none yet)
  Int supernodes = 0;                         // m: supernodes, kept between steps 12 and 13
  Int partialRequirement = 0;                 // P of step 12: integer length behind the dropped adjacency
  TeamPointer team{nullptr, nullptr};         // what threads keep for this system; null: none yet
  bool ownMemory = false;  // is WORK the library's own? Nobody else writes it: no checksums are kept

  /// As before the first phase, in the same memory.
  void restart() {
    const bool own = ownMemory;
    *this = SolverProtocol{};
    ownMemory = own;
  }
};

struct SolverState {
  Int neq = 0;     // equations
  Int mnsysm = 0;  // capacity of ROWI and SYSM; the entries used, once the structure stands
  Int nsysm = 0;   // entries of ROWI used: the stored lower triangle
  Int niwor = 0;   // length of WORK that the owner of the arrays was last told
  Int nrk = 0;     // length of RWORK that the owner of the arrays was last told
  Int niwreq = 0;  // length of WORK that the next step needs
  Int nrkreq = 0;  // length of RWORK that the next step needs
  SolverProtocol protocol;
};

}  // namespace tornwalzen
