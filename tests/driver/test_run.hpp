// Set-up that the tests of the driver need beyond a part's own arrays: the matrix pattern, written down
// independently of the library's builder, and the solver's three preparing steps.
#pragma once

#include <algorithm>
#include <cstddef>
#include <set>
#include <vector>

#include "develop/test_part.hpp"
#include "material/material_setup.hpp"
#include "sparse/phases.hpp"

namespace tornwalzen::test {

/// Fills COLS, ROWI and SYSM: the lower triangle by columns, every unknown of a node against every unknown of
/// itself and of its neighbours.
inline void buildPattern(TestPart& part) {
  std::vector<std::set<Int>> rows(static_cast<std::size_t>(part.neq));
  const DriverArrays a = part.arrays();
  for (Int i = 1; i <= part.neq; ++i)
    for (Int j = i; j <= 2 * ((i + 1) / 2); ++j) rows[static_cast<std::size_t>(i - 1)].insert(j);
  for (Int e = 1; e <= part.nele; ++e)
    for (int c = 1; c <= 3; ++c)
      for (int d = 1; d <= 3; ++d)
        for (Int i = 2 * a.INTA(e, c) - 1; i <= 2 * a.INTA(e, c); ++i)
          for (Int j = 2 * a.INTA(e, d) - 1; j <= 2 * a.INTA(e, d); ++j)
            if (j >= i) rows[static_cast<std::size_t>(i - 1)].insert(j);
  part.ROWI.clear();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    part.COLS[i] = static_cast<Int>(part.ROWI.size()) + 1;
    part.ROWI.insert(part.ROWI.end(), rows[i].begin(), rows[i].end());
  }
  part.COLS[rows.size()] = static_cast<Int>(part.ROWI.size()) + 1;
  part.SYSM.assign(part.ROWI.size(), 0.0);
  run.solver.mnsysm = run.solver.nsysm = static_cast<Int>(part.ROWI.size());
}

/// Pattern and preparing steps; WORK and RWORK as long as the solver asks for.
inline void prepareSolver(TestPart& part) {
  part.bind();
  buildPattern(part);
  for (const Int step : {11, 12, 13}) {
    const DriverArrays a = part.arrays();
    solverStep(run, run.solver, static_cast<SolverStep>(step), a.COLS, a.ROWI, a.WORK, a.RWORK, a.RR, a.RB,
               a.SYSM, a.WRHS);
    run.solver.niwor = run.solver.niwreq;
    if (step != 11) run.solver.nrk = run.solver.nrkreq;
    part.WORK.resize(static_cast<std::size_t>(run.solver.niwor));
    part.RWORK.resize(static_cast<std::size_t>(run.solver.nrk));
  }
}

/// Material and run status as the host's selector sets them.
inline void selectMaterial(Int ICTRL) {
  tornwalzen::selectMaterial(run, ICTRL);
}

/// RX from the plane coordinates of KNG, and KNZ = KNG: a flat part then stands in equilibrium exactly.
inline void startAtTheTarget(TestPart& part) {
  part.KNZ = part.KNG;
  const std::size_t nodes = static_cast<std::size_t>(part.nkno);
  for (std::size_t n = 0; n < nodes; ++n) {
    part.RX[2 * n] = part.KNG[n];
    part.RX[2 * n + 1] = part.KNG[nodes + n];
  }
}

}  // namespace tornwalzen::test
