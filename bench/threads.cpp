// Interleaved runs with and without the second thread.
#include "threads.hpp"

#include <sched.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "contender_tornwalzen.hpp"
#include "element/assembly.hpp"
#include "host_kit/default_run.hpp"
#include "material/material_setup.hpp"
#include "phases.hpp"
#include "sample_run.hpp"
#include "shapes.hpp"
#include "tornwalzen_analysis.h"

namespace bench {

namespace {

namespace tw = tornwalzen;

/// While it lives the process may use every core that it is granted.
class AllCores {
 public:
  AllCores() {
    sched_getaffinity(0, sizeof before_, &before_);
    cpu_set_t all;
    CPU_ZERO(&all);
    for (int cpu = 0; cpu < CPU_SETSIZE; ++cpu) CPU_SET(cpu, &all);
    sched_setaffinity(0, sizeof all, &all);
  }
  ~AllCores() { sched_setaffinity(0, sizeof before_, &before_); }
  AllCores(const AllCores&) = delete;
  AllCores& operator=(const AllCores&) = delete;

 private:
  cpu_set_t before_;
};

/// The default analysis' second thread: there, and put aside.
class SecondThread {
 public:
  SecondThread() : pool_(tw::ThreadPool::start(2)) {
    if (!pool_) throw std::runtime_error("no second thread");
  }
  ~SecondThread() { tw::run.pool.reset(); }
  void use(bool wanted) {
    if (wanted == (tw::run.pool != nullptr)) return;
    std::swap(pool_, tw::run.pool);
  }

 private:
  std::unique_ptr<tw::ThreadPool> pool_;
};

struct Destroy {
  void operator()(TornwalzenAnalysis* a) const { tornwalzen_analysis_destroy(a); }
};

struct Least {
  double one = INFINITY, two = INFINITY;  // s of wall time
  double ratio() const { return two / one; }
};

/// prepare() goes before every timed call: what a change of threads costs once is no part of it.
template <class Call, class Prepare>
Least inTurns(int repetitions, SecondThread& second, Prepare prepare, Call call) {
  Least least;
  for (int k = 0; k < repetitions; ++k)
    for (const bool both : {false, true}) {
      second.use(both);
      prepare();
      double& time = both ? least.two : least.one;
      time = std::min(time, timed(call).wall);
    }
  second.use(false);
  return least;
}

void print(const char* phase, const std::string& size, const Least& least, Report& report) {
  std::printf("  %-10s %6s  one thread %9.3f ms, two %9.3f ms\n", phase, size.c_str(), 1e3 * least.one,
              1e3 * least.two);
  std::fflush(stdout);
  report.figure("threads", size, phase, "wall 1", least.one, "s");
  report.figure("threads", size, phase, "wall 2", least.two, "s");
  report.ratio(phase, size + " t2", least.ratio());
}

}  // namespace

void threadsOfSolver(std::int32_t nodes, Report& report) {
  const AllCores cores;
  const SymmetricMatrix a = membraneMatrix(jitteredDelaunayMesh(nodes, Numbering::mesher, 1), 2);
  Tornwalzen solver(a);
  SecondThread second;
  std::vector<double> b(static_cast<std::size_t>(a.n)), x, alone;
  for (std::size_t i = 0; i < b.size(); ++i) b[i] = std::sin(0.1 * static_cast<double>(i));
  solver.analyse();
  const int repetitions = nodes > 200000 ? 3 : nodes > 20000 ? 7 : 25;
  const Least numeric = inTurns(
      repetitions, second, [&] { solver.factorize(); }, [&] { solver.factorize(); });
  const Least solve = inTurns(
      repetitions, second,
      [&] {
        solver.factorize();
        solver.solve(b, x);
        if (alone.empty()) alone = x;
        if (x != alone) throw std::runtime_error("two threads do not give the bits of one");
      },
      [&] { solver.solve(b, x); });
  print("numeric", sizeName(nodes), numeric, report);
  print("solve", sizeName(nodes), solve, report);
}

void threadsOfElements(std::int32_t nodes, Report& report) {
  const AllCores cores;
  SampleRun sample(dome(jitteredDelaunayMesh(nodes, Numbering::mesher, 1)));
  tw::DriverArrays a = sample.arrays();
  for (std::int32_t n = 1; n <= sample.nodes(); ++n) {
    for (int c = 1; c <= 3; ++c) a.KNZ(n, c) = a.KNG(n, c);
    for (int c = 1; c <= 2; ++c) a.RX(2 * n - 2 + c) = 1.03 * a.KNG(n, c);
  }
  tw::selectMaterial(tw::run, 1);
  tw::run.ierrel = 0;
  SecondThread second;
  const Least passes = inTurns(
      std::max(5, std::min(200, 1000000 / nodes)), second, [] {},
      [&] {
        tw::assemble(tw::run, tw::residualAndMatrix, a);
        tw::assemble(tw::run, tw::residualOnly, a);
      });
  if (tw::failed(tw::run.ierrel)) throw std::runtime_error("a pass failed");
  print("elements", sizeName(nodes), passes, report);
}

void threadsOfSureRun(std::int32_t triangles, Report& report) {
  const AllCores cores;
  shapes::MeshChoice choice;
  choice.triangles = triangles;
  choice.seed = 1;
  const shapes::Sheet sheet = shapes::makeShape("square_cup", choice);
  const std::vector<std::int32_t> held = heldRigidMotion(sheet);
  std::vector<double> blank;
  Least least;
  for (int k = 0; k < 6; ++k) {
    const int threads = 1 + k % 2;
    const std::unique_ptr<TornwalzenAnalysis, Destroy> analysis(tornwalzen_analysis_create());
    TornwalzenAnalysis* const a = analysis.get();
    if (tornwalzen_analysis_set_mesh(a, sheet.nodes(), sheet.triangles(), sheet.knots.data(),
                                     sheet.inzi.data(), 1) != TORNWALZEN_OK ||
        tornwalzen_analysis_set_holds(a, held.data()) != TORNWALZEN_OK ||
        tornwalzen_analysis_set_threads(a, threads) != TORNWALZEN_OK)
      throw std::runtime_error("the run was refused");
    tornwalzen_analysis_set_path(a, 1);
    tornwalzen_analysis_set_energy_reference(a, 1);
    tornwalzen_analysis_set_tolerance_factors(a, 0.001, 1.0);
    double& time = threads == 1 ? least.one : least.two;
    time = std::min(time, timed([&] { tornwalzen_analysis_run(a); }).wall);
    const double* const found = tornwalzen_analysis_blank(a);
    const std::vector<double> now(found, found + 2 * sheet.nodes());
    if (blank.empty()) blank = now;
    if (std::memcmp(now.data(), blank.data(), sizeof(double) * now.size()) != 0)
      throw std::runtime_error("two threads do not give the bits of one");
  }
  print("sure", sizeName(triangles), least, report);
}

}  // namespace bench
