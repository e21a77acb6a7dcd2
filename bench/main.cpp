// The benchmarks' program: solver phases against peers, the other phases per element and node, whole runs.
// usage: tornwalzen_bench [--quick | --huge] [--csv FILE] [kernels] [solver] [peers] [phases] [runs] [sure]
//        [threads] [program] [flatten]
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <stdexcept>

#include "flatteners.hpp"
#include "kernels.hpp"
#include "machine.hpp"
#include "phases.hpp"
#include "program_runs.hpp"
#include "race.hpp"
#include "race_mumps.hpp"
#include "race_threaded.hpp"
#include "report.hpp"
#include "runs.hpp"
#include "sure_runs.hpp"
#include "threads.hpp"

namespace {

struct Options {
  bool quick = false, huge = false;
  std::int32_t threadedBlasNodes = 0;  // not 0: this process is the one of race_threaded.hpp
  std::string csv = "bench.csv";
  std::set<std::string> parts;
};

Options readOptions(int argc, char** argv) {
  Options o;
  for (int k = 1; k < argc; ++k) {
    const std::string word = argv[k];
    if (word == "--quick")
      o.quick = true;
    else if (word == "--huge")
      o.huge = true;
    else if (word == "--threaded-blas" && k + 1 < argc)
      o.threadedBlasNodes = std::atoi(argv[++k]);
    else if (word == "--csv" && k + 1 < argc)
      o.csv = argv[++k];
    else if (word == "kernels" || word == "solver" || word == "peers" || word == "phases" || word == "runs" ||
             word == "sure" || word == "threads" || word == "program" || word == "flatten")
      o.parts.insert(word);
    else
      throw std::invalid_argument(
          "usage: tornwalzen_bench [--quick | --huge] [--csv FILE] [kernels] [solver] [peers] [phases] "
          "[runs] "
          "[sure] [threads] [program] [flatten]");
  }
  if (o.parts.empty())
    o.parts = {"kernels", "solver", "peers", "phases", "runs", "sure", "threads", "program", "flatten"};
  return o;
}

void printMachine(const bench::Machine& m) {
  std::printf("%s\nFMA peak %.1f GFLOP/s, read bandwidth %.1f GB/s", m.processor.c_str(), m.fmaPeak,
              m.readBandwidth);
  if (m.blasCore.empty())
    std::printf("; no OpenBLAS\n");
  else
    std::printf(", DGEMM %.1f GFLOP/s with OpenBLAS' kernels for %s%s\n", m.dgemmPeak, m.blasCore.c_str(),
                m.blasFits ? "" : ": NOT THIS PROCESSOR'S, no ratios to CHOLMOD");
#ifndef BENCH_CHOLMOD
  std::printf("left out: CHOLMOD (libsuitesparse-dev or OpenBLAS is missing)\n");
#endif
#ifndef BENCH_EIGEN
  std::printf("left out: Eigen (libeigen3-dev is missing)\n");
#endif
}

void runSolver(const Options& o, const bench::Machine& machine, bench::Report& report) {
  using bench::Numbering;
  for (std::int32_t nodes : {1000, 10000, 100000}) bench::raceSolvers({nodes}, machine, report);
  if (o.quick) return;
  for (std::int32_t nodes : {1000, 10000, 100000})
    bench::raceSolvers({nodes, true, Numbering::rows, false, true}, machine, report);
  bench::raceSolvers({100000, false, Numbering::random, false, false}, machine, report);
  bench::raceSolvers({500000}, machine, report);
  bench::raceSolvers({500000, true, Numbering::rows, false, false}, machine, report);
  if (o.huge) bench::raceSolvers({1000000, false, Numbering::mesher, true, false}, machine, report);
}

void runPhases(const Options& o, bench::Report& report) {
  for (std::int32_t nodes : {1000, 10000, 100000}) bench::timePhases(nodes, report);
  bench::timePattern(100000, report);
  if (o.quick) return;
  bench::timePhases(500000, report);
  bench::timePattern(1000000, report);
}

void runSure(const Options& o, bench::Report& report) {
  bench::sureRun({"square_cup", 50000, 0.0, true, false}, report);
  bench::sureRun({"square_cup", 200000, 0.0, true, !o.quick}, report);
  if (o.quick) return;
  bench::sureRun({"s_rail", 200000, 0.0, false, true}, report);
  bench::sureRun({"box", 200000, 0.0, false, true}, report);
  bench::sureRun({"l_bend", 200000, 80.0, false, true}, report);
}

void runThreads(const Options& o, bench::Report& report) {
  bench::memoryOverThreads(200000, report);  // first: what other parts leave to the heap would count
  std::printf(
      "\nwall times on one thread and on two in turns, medians of those that no other work disturbed, their "
      "ratio, and "
      "half the\nratio of the processor times: what it were with both threads always at work\n");
  for (std::int32_t nodes : {10000, 100000}) bench::threadsOfSolver(nodes, report);
  if (!o.quick) bench::threadsOfSolver(500000, report);
  bench::raceThreadedBlas(100000, report);
  bench::threadsOfElements(100000, report);
  bench::threadsOfSureRun(200000, report);
}

void runPeers(const Options& o, bench::Report& report) {
  for (std::int32_t nodes : {10000, 100000}) bench::raceMumps(nodes, report);
  if (!o.quick) bench::raceMumps(500000, report);
}

void runSamples(const Options& o, const bench::Machine& machine, bench::Report& report) {
  bench::wholeRun({"square_cup", 50000, true, false}, machine, report);
  bench::wholeRun({"box", 50000, false, true}, machine, report);
  if (o.quick) return;
  for (const char* shape : {"square_cup", "box", "s_rail", "flanged_hole"})
    bench::wholeRun({shape, 5000, false, false}, machine, report);
  bench::wholeRun({"square_cup", 200000, true, false}, machine, report);
  bench::wholeRun({"box", 180000, false, true}, machine, report);
}

}  // namespace

int main(int argc, char** argv) try {
  const Options options = readOptions(argc, argv);
  if (options.threadedBlasNodes > 0) return bench::raceInThreadedBlas(options.threadedBlasNodes);
  bench::Report report(options.csv);
  const bench::Machine machine = bench::measureMachine();
  printMachine(machine);
  if (options.parts.count("kernels")) bench::timeKernels(machine, report);
  if (options.parts.count("solver")) runSolver(options, machine, report);
  if (options.parts.count("peers")) runPeers(options, report);
  if (options.parts.count("phases")) runPhases(options, report);
  if (options.parts.count("runs")) runSamples(options, machine, report);
  if (options.parts.count("sure")) runSure(options, report);
  if (options.parts.count("threads")) runThreads(options, report);
  if (options.parts.count("program")) bench::timeProgram(200000, report);
  if (options.parts.count("flatten")) bench::raceFlatteners("../shared/parts", report);
  std::printf("\n");
  report.printRatios();
  return 0;
} catch (const std::exception& e) {
  std::fprintf(stderr, "%s\n", e.what());
  return 1;
}
