// Repeated factorizations in turns, both on two threads.
#include "race_threaded.hpp"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "contender_tornwalzen.hpp"
#include "wall_times.hpp"
#ifdef BENCH_CHOLMOD
#include "contender_cholmod.hpp"
#include "host_kit/default_run.hpp"
extern "C" char* openblas_get_corename(void);
extern "C" int openblas_get_num_threads(void);
#endif

namespace bench {

namespace {

constexpr int threads = 2, repetitions = 5;

/// What the command prints. Throws std::runtime_error where it fails.
std::string outputOf(const std::string& command) {
  FILE* const pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("no second process");
  std::string text;
  for (int c; (c = std::fgetc(pipe)) != EOF;) text += static_cast<char>(c);
  if (pclose(pipe) != 0) throw std::runtime_error("the second process failed");
  return text;
}

}  // namespace

#ifdef BENCH_CHOLMOD

void raceThreadedBlas(std::int32_t nodes, Report& report) {
  namespace fs = std::filesystem;
  if (!fs::exists(fs::path(BENCH_THREADED_BLAS) / "libopenblas.so.0")) {
    std::printf("  left out: CHOLMOD on OpenBLAS with threads (libopenblas0-pthread is missing)\n");
    return;
  }
  const AllCores cores;  // the second process counts them when it begins
  const std::string count = std::to_string(threads), self = fs::read_symlink("/proc/self/exe").string();
  std::istringstream told(outputOf("LD_LIBRARY_PATH=" BENCH_THREADED_BLAS " OPENBLAS_NUM_THREADS=" + count +
                                   " OMP_NUM_THREADS=" + count + " '" + self + "' --threaded-blas " +
                                   std::to_string(nodes)));
  const std::string size = sizeName(nodes);
  std::string who, core;
  double own = 0.0, wall;
  int quiet;
  told >> who >> core;
  while (told >> who >> wall >> quiet) {
    std::printf("  numeric    %6s %-19s %10.3f ms on two threads (%2d undisturbed)%s%s\n", size.c_str(),
                who.c_str(), 1e3 * wall, quiet, own > 0.0 ? ", BLAS kernels for " : "",
                own > 0.0 ? core.c_str() : "");
    report.figure("threads", size, who, "wall 2", wall, "s");
    if (who == "tornwalzen")
      own = wall;
    else
      report.ratio("numeric-" + who, size + " t2", own / wall);
  }
  std::fflush(stdout);
}

int raceInThreadedBlas(std::int32_t nodes) {
  const AllCores cores;
  if (openblas_get_num_threads() != threads) throw std::runtime_error("this OpenBLAS has no threads");
  const SymmetricMatrix a = membraneMatrix(jitteredDelaunayMesh(nodes, Numbering::mesher, 1), 2);
  tornwalzen::run.pool = tornwalzen::ThreadPool::start(threads);
  if (!tornwalzen::run.pool) throw std::runtime_error("no second thread");
  struct Entrant {
    const char* name;
    std::unique_ptr<Contender> contender;
    WallTimes times;
  };
  Entrant all[] = {
      {"tornwalzen", std::make_unique<Tornwalzen>(a), {}},
      {"cholmod", std::make_unique<Cholmod>(a, CHOLMOD_SUPERNODAL, CHOLMOD_AMD, threads), {}},
      {"cholmod-metis", std::make_unique<Cholmod>(a, CHOLMOD_SUPERNODAL, CHOLMOD_METIS, threads), {}}};
  for (Entrant& e : all) {
    e.contender->analyse();
    e.contender->factorize();
  }
  const auto enough = [&] {
    return std::all_of(std::begin(all), std::end(all),
                       [](const Entrant& e) { return e.times.quiet() >= repetitions; });
  };
  for (int turn = 0; turn < patience * repetitions && !enough(); ++turn)
    for (Entrant& e : all) e.times.take([&] { e.contender->factorize(); });
  std::printf("blas %s\n", openblas_get_corename());
  for (const Entrant& e : all) std::printf("%s %.9g %d\n", e.name, e.times.typical().wall, e.times.quiet());
  tornwalzen::run.pool.reset();
  return 0;
}

#else

void raceThreadedBlas(std::int32_t, Report&) {}

int raceInThreadedBlas(std::int32_t) {
  return 1;
}

#endif

}  // namespace bench
