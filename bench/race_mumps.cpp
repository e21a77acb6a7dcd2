// Three rounds: MUMPS, then the library.
#include "race_mumps.hpp"

#include <cmath>
#include <stdexcept>

#include "contender_tornwalzen.hpp"

namespace bench {

#ifdef BENCH_MUMPS

namespace {

struct Times {
  std::vector<Seconds> analyse, numeric, solve;
};

void addPeer(std::int32_t nodes, Times& times) {
  FILE* const pipe = popen((std::string(BENCH_MUMPS) + " " + std::to_string(nodes)).c_str(), "r");
  Seconds analyse, numeric, solve;
  const bool read =
      pipe != nullptr && std::fscanf(pipe, "%lf %lf %lf", &analyse.cpu, &numeric.cpu, &solve.cpu) == 3;
  if (pipe == nullptr || pclose(pipe) != 0 || !read) throw std::runtime_error("solver_mumps failed");
  times.analyse.push_back(analyse);
  times.numeric.push_back(numeric);
  times.solve.push_back(solve);
}

void addOwn(const SymmetricMatrix& a, Times& times) {
  Tornwalzen solver(a);
  std::vector<double> b(static_cast<std::size_t>(a.n)), x;
  for (std::size_t i = 0; i < b.size(); ++i) b[i] = std::sin(0.1 * static_cast<double>(i));
  times.analyse.push_back(timed([&] { solver.analyse(); }));
  solver.factorize();
  solver.solve(b, x);
  times.numeric.push_back(timed([&] { solver.factorize(); }));
  times.solve.push_back(timed([&] { solver.solve(b, x); }));
}

}  // namespace

void raceMumps(std::int32_t nodes, Report& report) {
  const SymmetricMatrix a = membraneMatrix(jitteredDelaunayMesh(nodes, Numbering::mesher, 1), 2);
  Times own, peer;
  for (int round = 0; round < 3; ++round) {
    addPeer(nodes, peer);
    addOwn(a, own);
  }
  std::printf("\nMUMPS beside the library, %s nodes; median processor times in ms\n",
              sizeName(nodes).c_str());
  const auto tell = [&](const char* phase, const std::vector<Seconds>& ours,
                        const std::vector<Seconds>& theirs) {
    const double mine = median(ours).cpu, its = median(theirs).cpu;
    std::printf("  %-8s tornwalzen %9.3f, mumps %9.3f\n", phase, 1e3 * mine, 1e3 * its);
    report.time(std::string(phase) + "-mumps", sizeName(nodes), "tornwalzen", ours);
    report.time(std::string(phase) + "-mumps", sizeName(nodes), "mumps", theirs);
    report.ratio(std::string(phase) + "-mumps", sizeName(nodes), mine / its);
  };
  tell("analyse", own.analyse, peer.analyse);
  tell("numeric", own.numeric, peer.numeric);
  tell("solve", own.solve, peer.solve);
  std::fflush(stdout);
}

#else

void raceMumps(std::int32_t nodes, Report&) {
  std::printf("\nleft out: MUMPS at %s nodes (libmumps-seq-dev is missing)\n", sizeName(nodes).c_str());
}

#endif

}  // namespace bench
