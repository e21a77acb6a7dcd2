// What the threads of an analysis keep for one system: its schedules, and the memory that they need beyond WORK and
// RWORK.
#pragma once

#include <atomic>

#include "ground/analysis.hpp"
#include "sparse/factor_schedule.hpp"
#include "sparse/solve_schedule.hpp"

namespace tornwalzen {

struct FactorTeam {
  ThreadPool* pool = nullptr;
  std::uint64_t structure = 0;  // checksum of the structure that it was made for
  Int threads = 0;
  FactorSchedule schedule;
  SolveSchedule solve;
  OwnArray<double> DOUBLES{"DOUBLES"};    // as the schedule's places tell, from a cache line on
  OwnArray<Int> INTEGERS{"INTEGERS"};     // BIGMAP and STACK of each worker but the first
  OwnArray<double> CROSSING{"CROSSING"};  // what the forward substitution of ranges adds to CROSSROWS
  OwnArray<double> ROWS{"ROWS"};          // a supernode's rows for each worker of the solve
  OwnArray<std::atomic<Int>> ENDED{
      "ENDED"};  // by fronts of the solve's top: has the backward substitution found its rows?

  Int64 rowsOfWorker() const { return linesOf(solve.largestFront + solveMargin); }
  Int64 bytes() const;
};

/// The team of a system whose structure stands in WORK, made where there is none yet for the analysis' threads. Null
/// with one thread, where division of the fronts does not pay, and without memory: then one thread does the work.
FactorTeam* teamOf(Analysis& run, SolverProtocol& protocol, Vector<Int> WORK);

}  // namespace tornwalzen
