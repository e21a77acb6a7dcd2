// Whole runs on the samples, with the time of each part of them.
#pragma once

#include "machine.hpp"
#include "report.hpp"

namespace bench {

struct RunCase {
  const char* shape;
  std::int32_t triangles;
  bool run;     // give the ratio `run`: all of OSMAIN against CHOLMOD's factorizations and solves alone
  bool unfold;  // give the ratio `unfold`: the development against the Newton part
};

/// One run with the flow curve 1 on a jittered mesh. CHOLMOD is timed on the run's first matrix with its
/// diagonal raised to dominance (its cost hangs on the pattern alone), and counted as often as the run
/// factors and solves. Throws std::runtime_error if the run does not converge.
void wholeRun(const RunCase& which, const Machine& machine, Report& report);

}  // namespace bench
