// The solver's phases against its peers', on one matrix at a time.
#pragma once

#include "machine.hpp"
#include "plane_mesh.hpp"
#include "report.hpp"

namespace bench {

struct RaceCase {
  std::int32_t nodes = 0;
  bool structured = false;
  Numbering numbering = Numbering::mesher;
  bool ratios = true;     // give the ratio lines: once per size
  bool slowPeers = true;  // the simplicial peers take part
};

/// Races all contenders that the build found on the matrix of this mesh, one after the other in each round,
/// prints a table and hands the figures to `report`. Every contender's solution is checked in every round;
/// its times count only if the backward error stays below 1e-13, else the race ends with std::runtime_error.
void raceSolvers(const RaceCase& which, const Machine& machine, Report& report);

}  // namespace bench
