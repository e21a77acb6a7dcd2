// Time split of a run by the probes.
#include "runs.hpp"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "contender.hpp"
#include "sample_run.hpp"

namespace bench {

namespace {

#ifdef BENCH_CHOLMOD
/// The tangent with a dominant diagonal: a matrix of the same pattern that L·Lᵀ can factor.
SymmetricMatrix dominant(const tornwalzen::DriverArrays& a) {
  SymmetricMatrix m;
  m.n = static_cast<std::int32_t>(a.COLS.length() - 1);
  for (tornwalzen::Int64 i = 1; i <= a.COLS.length(); ++i) m.start.push_back(a.COLS(i) - 1);
  for (tornwalzen::Int64 k = 1; k <= a.ROWI.length(); ++k) m.row.push_back(a.ROWI(k) - 1);
  m.SYSM.assign(a.SYSM.data(), a.SYSM.data() + a.SYSM.length());
  std::vector<double> sum(m.n, 1.0);
  for (std::int32_t j = 0; j < m.n; ++j)
    for (std::int32_t k = m.start[j] + 1; k < m.start[j + 1]; ++k) {
      sum[j] += std::abs(m.SYSM[k]);
      sum[m.row[k]] += std::abs(m.SYSM[k]);
    }
  for (std::int32_t j = 0; j < m.n; ++j) m.SYSM[m.start[j]] = sum[j];
  return m;
}

void timePeer(const SymmetricMatrix& m, Seconds& factorize, Seconds& solve) {
  const auto peer = makeCholmodSupernodal(m);
  peer->analyse();
  peer->factorize();
  std::vector<double> x, b(m.n, 1.0);
  peer->solve(b, x);
  if (!(m.backwardError(x, b) < 1e-13)) throw std::runtime_error("CHOLMOD: wrong solution");
  std::vector<Seconds> f, s;
  for (int k = 0; k < 3; ++k) {
    f.push_back(timed([&] { peer->factorize(); }));
    s.push_back(timed([&] { peer->solve(b, x); }));
  }
  factorize = median(f);
  solve = median(s);
}
#endif

void printSplit(const std::string& subject, const Seconds& all, Report& report) {
  const auto line = [&](const char* name, long calls, double cpu) {
    std::printf("  %-22s %9.3f s %5.1f %% %7ld calls %10.3f ms each\n", name, cpu, 100.0 * cpu / all.cpu,
                calls, calls > 0 ? 1e3 * cpu / static_cast<double>(calls) : 0.0);
    report.figure("run", subject, name, "cpu", cpu, "s");
    report.figure("run", subject, name, "calls", static_cast<double>(calls), "");
  };
  const Probes& p = probes;
  const double named = p.tangent.time.cpu + p.residual.time.cpu + p.factorize.time.cpu + p.solve.time.cpu;
  line("development", p.development.calls, p.development.time.cpu);
  line("  iterations", p.unfoldIterations, p.development.time.cpu);
  line("tangent passes", p.tangent.calls, p.tangent.time.cpu);
  line("factorizations", p.factorize.calls, p.factorize.time.cpu);
  line("solves", p.solve.calls, p.solve.time.cpu);
  line("residual passes", p.residual.calls, p.residual.time.cpu);
  line("rest of Newton steps", p.newton.calls, p.newton.time.cpu - named);
  line("other", 1, all.cpu - p.development.time.cpu - p.newton.time.cpu);
}

}  // namespace

void wholeRun(const RunCase& which, const Machine& machine, Report& report) {
  shapes::MeshChoice choice;
  choice.triangles = which.triangles;
  choice.seed = 1;
  const shapes::Sheet sheet = shapes::makeShape(which.shape, choice);
  Seconds setUp = now();
  SampleRun run(sheet);
  const Seconds ready = now();
  setUp = {ready.cpu - setUp.cpu, ready.wall - setUp.wall};

  Seconds peerFactorize, peerSolve, probing;
#ifdef BENCH_CHOLMOD
  if (which.run)
    probes.beforeFirstFactorization = [&](const tornwalzen::DriverArrays& a) {
      probing = timed([&] { timePeer(dominant(a), peerFactorize, peerSolve); });
    };
#endif
  Seconds all = timed([&] { run.analyse(1); });
  all.cpu -= probing.cpu;
  all.wall -= probing.wall;
  const std::string size = sizeName(which.triangles), subject = std::string(which.shape) + "-" + size;
  if (!run.converged()) throw std::runtime_error(subject + ": the run did not converge");

  std::printf(
      "\n%s: %d nodes, %d triangles, %ld increments, %ld Newton iterations, %ld unfolding iterations of %.1f "
      "evaluations\n",
      subject.c_str(), run.nodes(), run.triangles(), probes.increments, probes.newton.calls,
      probes.unfoldIterations,
      static_cast<double>(probes.unfoldEvaluations) / static_cast<double>(probes.unfoldIterations));
  std::printf("  %-22s %9.3f s; set-up %.3f s before it (processor times; wall %.3f s)\n", "OSMAIN", all.cpu,
              setUp.cpu, all.wall);
  printSplit(subject, all, report);
  report.figure("run", subject, "OSMAIN", "cpu", all.cpu, "s");
  report.figure("run", subject, "OSMAIN", "wall", all.wall, "s");
  report.figure("run", subject, "set-up", "cpu", setUp.cpu, "s");
  if (which.run && peerFactorize.cpu > 0.0) {
    const double peer = static_cast<double>(probes.factorize.calls) * peerFactorize.cpu +
                        static_cast<double>(probes.solve.calls) * peerSolve.cpu;
    std::printf("  CHOLMOD's factorizations and solves alone: %.3f s\n", peer);
    report.figure("run", subject, "cholmod-supernodal", "cpu", peer, "s");
    if (machine.blasFits) report.ratio("run", size, all.cpu / peer);
  }
  if (which.unfold)
    report.ratio("unfold", size, probes.development.time.cpu / (all.cpu - probes.development.time.cpu));
  std::fflush(stdout);
}

}  // namespace bench
