// The program as a process of its own; it tells its stages, and this one the whole.
#include "program_runs.hpp"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "clock.hpp"
#include "shapes.hpp"
#include "wall_times.hpp"

namespace bench {

namespace {

namespace fs = std::filesystem;

struct Folder {
  fs::path path = fs::temp_directory_path() / ("tornwalzen_bench." + std::to_string(::getpid()));
  Folder() { fs::create_directory(path); }
  ~Folder() {
    std::error_code error;
    fs::remove_all(path, error);
  }
};

struct Stages {
  double reading = 0.0, run = 0.0, results = 0.0, writing = 0.0, whole = 0.0;  // s
  double share() const { return (reading + writing) / whole; }
};

Stages runOnce(const fs::path& folder, int threads) {
  // a checkout's path may hold blanks
  const auto quoted = [](const fs::path& path) {
    return std::string(1, '\'').append(path.string()).append("'");
  };
  const std::string command = quoted(BENCH_PROGRAM) + " solve " + quoted(folder / "part.obj") +
                              " --hold x0,y0 --verbose --threads " + std::to_string(threads) + " --out " +
                              quoted(folder / "results") + " 2>&1 >/dev/null";
  Stages stages;
  int found = 0;
  const Seconds time = timed([&] {
    std::FILE* said = ::popen(command.c_str(), "r");
    if (said == nullptr) throw std::runtime_error("cannot start the program");
    char line[4096];
    while (std::fgets(line, sizeof line, said) != nullptr)
      found = std::max(
          found,
          std::sscanf(line,
                      "wall time: reading and checking %lf s, the run %lf s, its results %lf s, writing %lf",
                      &stages.reading, &stages.run, &stages.results, &stages.writing));
    if (::pclose(said) != 0 || found != 4) throw std::runtime_error("a run of the program failed");
  });
  stages.whole = time.wall;
  fs::remove_all(folder / "results");
  return stages;
}

}  // namespace

void timeProgram(std::int32_t triangles, Report& report) {
  const AllCores cores;
  const Folder folder;
  shapes::MeshChoice choice;
  choice.triangles = triangles;
  shapes::writeObj(shapes::makeShape("square_cup", choice), (folder.path / "part.obj").string(),
                   "square_cup");
  constexpr int turns = 7;
  std::array<std::vector<Stages>, 2> runs;
  for (int turn = 0; turn < turns; ++turn)
    for (const int threads : {1, 2})
      runs[static_cast<std::size_t>(threads - 1)].push_back(runOnce(folder.path, threads));
  const std::string size = sizeName(triangles);
  std::printf(
      "\nthe program on square_cup-%s, wall times of %d runs in turns, that of the median share (s)\n"
      "  threads  reading, checking   the run  its results  writing  process  reading and writing\n",
      size.c_str(), turns);
  for (const int threads : {1, 2}) {
    std::vector<Stages>& of = runs[static_cast<std::size_t>(threads - 1)];
    std::sort(of.begin(), of.end(), [](const Stages& a, const Stages& b) { return a.share() < b.share(); });
    const Stages& s = of[turns / 2];
    std::printf("  %7d %18.3f %9.3f %12.3f %8.3f %8.3f %17.1f %%\n", threads, s.reading, s.run, s.results,
                s.writing, s.whole, 100.0 * s.share());
    const std::string who = std::to_string(threads);
    report.figure("program", size, who, "reading", s.reading, "s");
    report.figure("program", size, who, "run", s.run, "s");
    report.figure("program", size, who, "results", s.results, "s");
    report.figure("program", size, who, "writing", s.writing, "s");
    report.figure("program", size, who, "whole", s.whole, "s");
    report.ratio("program-share-on-" + who, size, s.share());
  }
}

}  // namespace bench
