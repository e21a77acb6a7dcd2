// MUMPS on the membrane matrix of so many nodes: symmetric positive definite, its own choice of the ordering, no processes
// beside it. A program apart: its licence and its BLAS stay its own.
// usage: solver_mumps NODES: processor seconds of analysis, repeated factorization and solve on one line; status 1
// where the backward error is not below 1e-13.
#include <dmumps_c.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "clock.hpp"
#include "membrane_matrix.hpp"

namespace {

constexpr int positiveDefinite = 1, start = -1, end = -2, analysis = 1, factorization = 2, solution = 3;
constexpr int worldCommunicator = -987654;  // what MUMPS takes for all processes

int run(DMUMPS_STRUC_C& solver, int job) {
  solver.job = job;
  dmumps_c(&solver);
  return solver.infog[0];
}

}  // namespace

int main(int argc, char** argv) {
  const int nodes = argc == 2 ? std::atoi(argv[1]) : 0;
  if (nodes < 1) return 1;
  const bench::SymmetricMatrix a =
      bench::membraneMatrix(bench::jitteredDelaunayMesh(nodes, bench::Numbering::mesher, 1), 2);
  std::vector<int> row, column;  // from 1
  for (int j = 0; j < a.n; ++j)
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) {
      row.push_back(a.row[k] + 1);
      column.push_back(j + 1);
    }
  std::vector<double> values = a.SYSM, b(a.n), x;
  for (int i = 0; i < a.n; ++i) b[i] = std::sin(0.1 * i);

  DMUMPS_STRUC_C solver{};
  solver.par = 1;
  solver.sym = positiveDefinite;
  solver.comm_fortran = worldCommunicator;
  if (run(solver, start) < 0) return 1;
  for (int control = 0; control < 4; ++control) solver.icntl[control] = control < 3 ? -1 : 0;  // no messages
  solver.n = a.n;
  solver.nnz = static_cast<MUMPS_INT8>(row.size());
  solver.irn = row.data();
  solver.jcn = column.data();
  solver.a = values.data();
  x = b;
  solver.rhs = x.data();
  int failed = 0;
  const auto timedJob = [&](int job) {
    return bench::timed([&] { failed = std::min(failed, run(solver, job)); }).cpu;
  };
  const double analyse = timedJob(analysis);
  timedJob(factorization);
  const double numeric = timedJob(factorization), solve = timedJob(solution);
  run(solver, end);
  if (failed < 0 || !(a.backwardError(x, b) < 1e-13)) return 1;
  std::printf("%.9g %.9g %.9g\n", analyse, numeric, solve);
  return 0;
}
