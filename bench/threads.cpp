// Interleaved runs with and without the second thread.
#include "threads.hpp"

#include <malloc.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "contender_tornwalzen.hpp"
#include "element/assembly.hpp"
#include "element/element_parts.hpp"
#include "host_kit/default_run.hpp"
#include "material/material_setup.hpp"
#include "phases.hpp"
#include "sample_run.hpp"
#include "shapes.hpp"
#include "tornwalzen_analysis.h"
#include "wall_times.hpp"

namespace bench {

namespace {

namespace tw = tornwalzen;

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

struct Pair {
  WallTimes one, two;
  WallTimes& of(bool both) { return both ? two : one; }
  bool enough(int repetitions) const { return std::min(one.quiet(), two.quiet()) >= repetitions; }
};

/// Calls once(both) in turns on one thread and on two, until each was undisturbed so many times, for `patience` times as
/// many turns at most.
template <class Once>
Pair inTurns(int repetitions, Once once) {
  Pair pair;
  for (int turn = 0; turn < patience * repetitions && !pair.enough(repetitions); ++turn)
    for (const bool both : {false, true}) once(both, pair.of(both));
  return pair;
}

/// prepare() goes before every timed call: what a change of threads costs once is no part of it.
template <class Call, class Prepare>
Pair inTurns(int repetitions, SecondThread& second, Prepare prepare, Call call) {
  const Pair pair = inTurns(repetitions, [&](bool both, WallTimes& times) {
    second.use(both);
    prepare();
    times.take(call);
  });
  second.use(false);
  return pair;
}

void print(const char* phase, const std::string& size, const Pair& pair, Report& report) {
  const Seconds one = pair.one.typical(), two = pair.two.typical();
  std::printf("  %-10s %6s %10.3f ms (%2d undisturbed) %10.3f ms (%2d) %8.2f %8.2f\n", phase, size.c_str(),
              1e3 * one.wall, pair.one.quiet(), 1e3 * two.wall, pair.two.quiet(), two.wall / one.wall,
              0.5 * two.cpu / one.cpu);
  std::fflush(stdout);
  report.figure("threads", size, phase, "wall 1", one.wall, "s");
  report.figure("threads", size, phase, "wall 2", two.wall, "s");
  report.figure("threads", size, phase, "cpu 1", one.cpu, "s");
  report.figure("threads", size, phase, "cpu 2", two.cpu, "s");
  report.figure("threads", size, phase, "undisturbed", std::min(pair.one.quiet(), pair.two.quiet()), "runs");
  report.ratio(phase, size + " t2", two.wall / one.wall);
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
  const Pair numeric = inTurns(
      repetitions, second, [&] { solver.factorize(); }, [&] { solver.factorize(); });
  const Pair solve = inTurns(
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
  second.use(true);
  tw::run.parts = tw::ElementParts::divide(tw::run.pool.get(), tw::run.nele, sample.nodes(), a.INTA, a.KNG);
  const Pair passes = inTurns(
      std::max(5, std::min(200, 1000000 / nodes)), second, [] {},
      [&] {
        tw::assemble(tw::run, tw::residualAndMatrix, a);
        tw::assemble(tw::run, tw::residualOnly, a);
      });
  tw::run.parts.reset();
  if (tw::failed(tw::run.ierrel)) throw std::runtime_error("a pass failed");
  print("elements", sizeName(nodes), passes, report);
}

namespace {

/// square_cup by the sure path.
class SureRun {
 public:
  explicit SureRun(std::int32_t triangles) : sheet_(sheetOf(triangles)), held_(heldRigidMotion(sheet_)) {}

  /// Throws std::runtime_error where a run differs from the first by a bit.
  TornwalzenReport on(std::int32_t threads, WallTimes& times) {
    const std::unique_ptr<TornwalzenAnalysis, Destroy> analysis(tornwalzen_analysis_create());
    TornwalzenAnalysis* const a = analysis.get();
    if (tornwalzen_analysis_set_mesh(a, sheet_.nodes(), sheet_.triangles(), sheet_.knots.data(),
                                     sheet_.inzi.data(), 1) != TORNWALZEN_OK ||
        tornwalzen_analysis_set_holds(a, held_.data()) != TORNWALZEN_OK ||
        tornwalzen_analysis_set_threads(a, threads) != TORNWALZEN_OK)
      throw std::runtime_error("the run was refused");
    tornwalzen_analysis_set_path(a, 1);
    tornwalzen_analysis_set_energy_reference(a, 1);
    tornwalzen_analysis_set_tolerance_factors(a, 0.001, 1.0);
    times.take([&] { tornwalzen_analysis_run(a); });
    const double* const found = tornwalzen_analysis_blank(a);
    const std::vector<double> now(found, found + 2 * sheet_.nodes());
    if (blank_.empty()) blank_ = now;
    if (std::memcmp(now.data(), blank_.data(), sizeof(double) * now.size()) != 0)
      throw std::runtime_error("several threads do not give the bits of one");
    TornwalzenReport report{};
    report.size = sizeof report;
    tornwalzen_analysis_report(a, &report);
    return report;
  }

 private:
  static shapes::Sheet sheetOf(std::int32_t triangles) {
    shapes::MeshChoice choice;
    choice.triangles = triangles;
    choice.seed = 1;
    return shapes::makeShape("square_cup", choice);
  }

  const shapes::Sheet sheet_;
  const std::vector<std::int32_t> held_;
  std::vector<double> blank_;
};

/// Bytes of the largest resident size since the last call, and begins anew; 0 where the system does not tell.
double peakSinceLast() {
  double peak = 0.0;
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.rfind("VmHWM:", 0) == 0) peak = 1024.0 * std::atof(line.c_str() + 6);
  malloc_trim(0);  // what earlier runs left to the heap is no part of the next peak
  std::ofstream("/proc/self/clear_refs") << 5;  // proc(5): resets the peak
  return peak;
}

}  // namespace

void threadsOfSureRun(std::int32_t triangles, Report& report) {
  const AllCores cores;
  SureRun run(triangles);
  const Pair runs = inTurns(3, [&](bool both, WallTimes& times) { run.on(both ? 2 : 1, times); });
  print("sure", sizeName(triangles), runs, report);
}

void memoryOverThreads(std::int32_t triangles, Report& report) {
  const AllCores cores;
  SureRun run(triangles);
  std::printf("\npeak memory of sure %s over threads:", sizeName(triangles).c_str());
  for (const std::int32_t threads : {1, 2, 4, 8}) {
    WallTimes times;
    peakSinceLast();
    const TornwalzenReport told = run.on(threads, times);
    const double peak = peakSinceLast();
    std::printf("  %d: %.0f MB", threads, 1e-6 * peak);
    const std::string who = std::to_string(threads);
    report.figure("thread-memory", sizeName(triangles), who, "peak", peak, "bytes");
    report.figure("thread-memory", sizeName(triangles), who, "own", static_cast<double>(told.thread_bytes),
                  "bytes");
  }
  std::printf("\n");
}

}  // namespace bench
