// Rounds of analysis, first factorization, repeated factorizations and solves, all contenders alternating.
#include "race.hpp"

#include <algorithm>
#include <cmath>
#include <memory>

#include "contender.hpp"
#include "surface_mesh.hpp"  // shapes::Random

namespace bench {

namespace {

constexpr double backwardErrorLimit = 1e-13;  // some hundred roundings
constexpr int rounds = 3;
constexpr std::int32_t slowPeersOnce = 40000;  // equations from which a slow peer repeats once in a round

struct Entrant {
  const char* name;
  MakeContender make;
  bool slow;
  std::vector<Seconds> analyse, first, repeat, solve;
  Fill fill;
  double stored = 0.0, bytes = 0.0, worstError = 0.0;
};

std::vector<Entrant> entrants(bool slowPeers) {
  std::vector<Entrant> all{
      {"tornwalzen", makeTornwalzen, false, {}, {}, {}, {}, {}},
#ifdef BENCH_CHOLMOD
      {"cholmod-supernodal", makeCholmodSupernodal, false, {}, {}, {}, {}, {}},
      {"cholmod-metis", makeCholmodMetis, false, {}, {}, {}, {}, {}},
      {"cholmod-simplicial", makeCholmodSimplicial, true, {}, {}, {}, {}, {}},
#endif
#ifdef BENCH_EIGEN
      {"eigen-simplicial", makeEigenSimplicial, true, {}, {}, {}, {}, {}},
#endif
  };
  if (!slowPeers) std::erase_if(all, [](const Entrant& e) { return e.slow; });
  return all;
}

/// Repetitions within a round: small matrices are over before the clock ticks often.
int repetitions(std::int32_t nodes) {
  return nodes <= 2000 ? 20 : nodes <= 20000 ? 7 : nodes <= 200000 ? 2 : 1;
}

void check(Entrant& e, Contender& c, const SymmetricMatrix& a, const std::vector<double>& b) {
  std::vector<double> x;
  c.solve(b, x);
  const double error = a.backwardError(x, b);
  e.worstError = std::max(e.worstError, error);
  if (!(error < backwardErrorLimit))
    throw std::runtime_error(std::string(e.name) + ": backward error " + std::to_string(error));
}

void runRound(std::vector<Entrant>& all, const SymmetricMatrix& a, const std::vector<double>& b,
              int repeats) {
  std::vector<std::unique_ptr<Contender>> live;
  for (Entrant& e : all) {
    live.push_back(e.make(a));
    e.analyse.push_back(timed([&] { live.back()->analyse(); }));
  }
  const auto each = [&](auto use) {
    for (std::size_t k = 0; k < all.size(); ++k) use(all[k], *live[k]);
  };
  each([&](Entrant& e, Contender& c) {
    e.first.push_back(timed([&] { c.factorize(); }));
    check(e, c, a, b);
  });
  for (int r = 0; r < repeats; ++r)
    each([&](Entrant& e, Contender& c) {
      if (e.slow && r > 0 && a.n > slowPeersOnce) return;
      e.repeat.push_back(timed([&] { c.factorize(); }));
    });
  std::vector<double> x;
  for (int r = 0; r < 2 * repeats + 1; ++r)
    each([&](Entrant& e, Contender& c) { e.solve.push_back(timed([&] { c.solve(b, x); })); });
  each([&](Entrant& e, Contender& c) {
    check(e, c, a, b);
    e.bytes = std::max(e.bytes, c.peakBytes());
    e.stored = c.storedEntries();
    if (e.fill.entries == 0.0) e.fill = c.fill();
  });
}

void print(const std::string& subject, const SymmetricMatrix& a, const std::vector<Entrant>& all,
           const Machine& machine, Report& report) {
  std::printf("\n%s: %d equations, %zu entries; median processor times in ms\n", subject.c_str(), a.n,
              a.row.size());
  std::printf("%-19s %9s %9s %9s %9s %8s %9s %9s %8s %7s %7s %9s %8s\n", "", "analyse", "first", "repeat",
              "solve", "MB", "nnz(L)/1k", "stored", "Gflop", "GFLOP/s", "of FMA", "of DGEMM", "error");
  for (const Entrant& e : all) {
    const double rate = 1e-9 * e.fill.flops / median(e.repeat).cpu;
    const auto ms = [](const std::vector<Seconds>& s) { return 1e3 * median(s).cpu; };
    std::printf("%-19s %9.3f %9.3f %9.3f %9.3f %8.1f %9.0f %9.0f %8.3f %7.2f %6.0f%% %8.0f%% %8.1e\n", e.name,
                ms(e.analyse), ms(e.first), ms(e.repeat), ms(e.solve), 1e-6 * e.bytes, 1e-3 * e.fill.entries,
                1e-3 * e.stored, 1e-9 * e.fill.flops, rate, 100.0 * rate / machine.fmaPeak,
                machine.dgemmPeak > 0.0 ? 100.0 * rate / machine.dgemmPeak : 0.0, e.worstError);
    report.time("analyse", subject, e.name, e.analyse);
    report.time("numeric-first", subject, e.name, e.first);
    report.time("numeric", subject, e.name, e.repeat);
    report.time("solve", subject, e.name, e.solve);
    report.figure("memory", subject, e.name, "peak", e.bytes, "bytes");
    report.figure("fill", subject, e.name, "nnz(L)", e.fill.entries, "");
    report.figure("fill", subject, e.name, "stored", e.stored, "");
    report.figure("fill", subject, e.name, "flops", e.fill.flops, "");
    report.figure("numeric", subject, e.name, "rate", rate, "GFLOP/s");
    report.figure("solve", subject, e.name, "rate", 2e-9 * 8.0 * e.stored / median(e.solve).cpu, "GB/s");
  }
  std::fflush(stdout);
}

void giveRatios(const std::string& size, const std::vector<Entrant>& all, const Machine& machine,
                Report& report) {
  const Entrant& own = all.front();
  const auto against = [&](const char* name) {
    return std::find_if(all.begin(), all.end(),
                        [&](const Entrant& e) { return std::string(name) == e.name; });
  };
  const auto times = [](const std::vector<Seconds>& ours, const std::vector<Seconds>& theirs) {
    return median(ours).cpu / median(theirs).cpu;
  };
  if (const auto peer = against("cholmod-supernodal"); peer != all.end() && machine.blasFits) {
    report.ratio("numeric", size, times(own.repeat, peer->repeat));
    report.ratio("analyse", size, times(own.analyse, peer->analyse));
    report.ratio("solve", size, times(own.solve, peer->solve));
    report.ratio("memory", size, own.bytes / peer->bytes);
  }
  if (const auto peer = against("cholmod-metis"); peer != all.end() && machine.blasFits) {
    report.ratio("numeric-metis", size, times(own.repeat, peer->repeat));
    report.ratio("analyse-metis", size, times(own.analyse, peer->analyse));
  }
  if (const auto peer = against("eigen-simplicial"); peer != all.end())
    report.ratio("numeric-eigen", size, times(own.repeat, peer->repeat));
}

}  // namespace

void raceSolvers(const RaceCase& which, const Machine& machine, Report& report) {
  const PlaneMesh mesh = which.structured ? structuredMesh(which.nodes, which.numbering, 1)
                                          : jitteredDelaunayMesh(which.nodes, which.numbering, 1);
  const SymmetricMatrix a = membraneMatrix(mesh, 2);
  shapes::Random random(3);
  std::vector<double> b(a.n);
  for (double& v : b) v = random.within(1.0);

  std::vector<Entrant> all = entrants(which.slowPeers);
  for (int r = 0; r < rounds; ++r) runRound(all, a, b, repetitions(which.nodes));
  const char* numbering[] = {"rows", "mesher", "random"};
  const std::string subject = std::string(which.structured ? "structured-" : "jittered-") +
                              sizeName(which.nodes) + "-" + numbering[static_cast<int>(which.numbering)];
  print(subject, a, all, machine, report);
  if (which.ratios) giveRatios(sizeName(which.nodes), all, machine, report);
}

}  // namespace bench
